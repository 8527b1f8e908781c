#include "gpsobd/LogKinds.h"

#include <algorithm>
#include <array>

#include "core/Paths.h"

namespace vantor {
namespace {

constexpr LogColumnHead FileName{"File Name", LogColumn::FileName};
constexpr LogColumnHead StudyDate{"Date", LogColumn::StudyDate};
constexpr LogColumnHead StartTime{"Start Time", LogColumn::StartTime};
constexpr LogColumnHead EndTime{"End Time", LogColumn::EndTime};
constexpr LogColumnHead Runs{"# Runs", LogColumn::Runs};

constexpr std::array LaptopColumns = {FileName,
                                      StudyDate,
                                      StartTime,
                                      EndTime,
                                      Runs,
                                      LogColumnHead{"Format", LogColumn::FileType},
                                      LogColumnHead{"Extension", LogColumn::Extension}};
constexpr std::array HandheldColumns = {FileName, StartTime, EndTime, Runs, LogColumnHead{"Type", LogColumn::FileType}};
constexpr std::array CombinedColumns = {FileName, StartTime, EndTime, Runs};
constexpr std::array BattelleColumns = {FileName, StudyDate, LogColumnHead{"Start", LogColumn::StartTime}, Runs};

// The extension, not the format number in the file, is marked: the mark leads back to the file.
constexpr std::array GpsLaptopFiles = {LogFileType{".gd2", "2"}, LogFileType{".gdf", "1"}};
constexpr std::array ObdLaptopFiles = {LogFileType{".od2", "2"}, LogFileType{".odf", "1"}};
constexpr std::array HandheldFiles = {LogFileType{".mdb", "MDB"}, LogFileType{".pdb", "PDB"}};
constexpr std::array CombinedFiles = {LogFileType{".ddf", ""}};
constexpr std::array BattelleFiles = {LogFileType{".txt", ""}};

constexpr LogDevice Roampad{"Roampad", "GPSData.pdb"};
constexpr LogDevice Revpad{"Revpad", "OBDData.pdb"};

constexpr std::array Screens = {
    LogScreen{LogKind::GpsLaptop, "frmGPSLaptopSelect", "Select GPS Data", "treGPSPath", "vaSelGPSFile", LaptopColumns,
              true, GpsLaptopFiles, LogTimeLook::SecondsOfADay, "laptop GPS logs (.gdf, .gd2)", nullptr},
    LogScreen{LogKind::ObdLaptop, "frmOBDLaptopSelect", "Select OBD Data", "treOBDPath", "vaSelOBDFile", LaptopColumns,
              true, ObdLaptopFiles, LogTimeLook::SecondsOfADay, "laptop OBD logs (.odf, .od2)", nullptr},
    LogScreen{LogKind::GpsHandheld, "frmGPSPDASelect", "Select GPS Database to Process", "treGPSPath", "vaSelGPSFile",
              HandheldColumns, false, HandheldFiles, LogTimeLook::DateAndSeconds, "handheld GPS databases (.mdb, .pdb)",
              &Roampad},
    LogScreen{LogKind::ObdHandheld, "frmOBDPDASelect", "Select OBD Database to Process", "treOBDPath", "vaSelOBDFile",
              HandheldColumns, false, HandheldFiles, LogTimeLook::Seconds, "handheld OBD databases (.mdb, .pdb)",
              &Revpad},
    LogScreen{LogKind::GpsObd, "frmGPSOBDSelect", "Select GPS-Revlap Study", "treGPSOBDPath", "vaSelGPSOBDFile",
              CombinedColumns, false, CombinedFiles, LogTimeLook::DateAndSeconds, "combined GPS and OBD logs (.ddf)",
              nullptr},
    LogScreen{LogKind::Battelle, "frmBatelleGPSSelect", "Select Batelle GPS File", "treBatelleGPSPath",
              "vaBatelleGPSFile", BattelleColumns, false, BattelleFiles, LogTimeLook::Minutes,
              "Battelle GPS files (.txt)", nullptr},
};

}  // namespace

const LogScreen& ScreenOf(LogKind kind) {
    return *std::find_if(Screens.begin(), Screens.end(), [&](const LogScreen& screen) { return screen.Kind == kind; });
}

const LogFileType& FileTypeOf(const LogScreen& screen, const std::string& fileName) {
    for (const LogFileType& type : screen.FileTypes)
        if (HasExtension(fileName, type.Extension)) return type;
    return screen.FileTypes.front();
}

std::vector<std::string> LogFilesIn(const FileSystem& files, const std::string& folder, const LogScreen& screen) {
    std::vector<std::string> names;
    for (const FileInfo& info : files.List(folder))
        if (!info.IsFolder && HasExtension(info.Name, FileTypeOf(screen, info.Name).Extension))
            names.push_back(info.Name);
    return names;
}

std::string TimeText(LogTimeLook look, Date time, bool isOverDays) {
    const std::string iso = IsoDateTime(time);
    if (iso.empty()) return {};
    const std::string clock = iso.substr(iso.find('T') + 1);
    switch (look) {
        case LogTimeLook::Minutes: return clock.substr(0, 5);
        case LogTimeLook::Seconds: return clock;
        case LogTimeLook::SecondsOfADay:
            if (!isOverDays) return clock;
            break;
        case LogTimeLook::DateAndSeconds: break;
    }
    return ShortDate(time) + " " + clock;
}

}  // namespace vantor
