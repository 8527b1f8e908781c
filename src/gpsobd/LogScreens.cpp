#include "gpsobd/LogScreens.h"

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

constexpr LogDevice Roampad{"Roampad", "GPSData.pdb"};
constexpr LogDevice Revpad{"Revpad", "OBDData.pdb"};

constexpr std::array Screens = {
    LogScreen{LogKind::GpsLaptop, "frmGPSLaptopSelect", "Select GPS Data", "treGPSPath", "vaSelGPSFile", LaptopColumns,
              true, LogTimeLook::SecondsOfADay, "laptop GPS logs (.gdf, .gd2)", nullptr},
    LogScreen{LogKind::ObdLaptop, "frmOBDLaptopSelect", "Select OBD Data", "treOBDPath", "vaSelOBDFile", LaptopColumns,
              true, LogTimeLook::SecondsOfADay, "laptop OBD logs (.odf, .od2)", nullptr},
    LogScreen{LogKind::GpsHandheld, "frmGPSPDASelect", "Select GPS Database to Process", "treGPSPath", "vaSelGPSFile",
              HandheldColumns, false, LogTimeLook::DateAndSeconds, "handheld GPS databases (.mdb, .pdb)", &Roampad},
    LogScreen{LogKind::ObdHandheld, "frmOBDPDASelect", "Select OBD Database to Process", "treOBDPath", "vaSelOBDFile",
              HandheldColumns, false, LogTimeLook::Seconds, "handheld OBD databases (.mdb, .pdb)", &Revpad},
    LogScreen{LogKind::GpsObd, "frmGPSOBDSelect", "Select GPS-Revlap Study", "treGPSOBDPath", "vaSelGPSOBDFile",
              CombinedColumns, false, LogTimeLook::DateAndSeconds, "combined GPS and OBD logs (.ddf)", nullptr},
    LogScreen{LogKind::Battelle, "frmBatelleGPSSelect", "Select Batelle GPS File", "treBatelleGPSPath",
              "vaBatelleGPSFile", BattelleColumns, false, LogTimeLook::Minutes, "Battelle GPS files (.txt)", nullptr},
};

}  // namespace

const LogScreen& ScreenOf(LogKind kind) {
    return *std::find_if(Screens.begin(), Screens.end(), [&](const LogScreen& screen) { return screen.Kind == kind; });
}

const ReviewScreen& ReviewScreenOf(bool hasGps, bool hasObd) {
    static constexpr ReviewScreen gps{"frmGPSViewData", "GPS Data", "vaGPSData",
                                      "Export gps data to Excel spreadsheet"};
    static constexpr ReviewScreen obd{"frmOBDViewData", "OBD Data", "vaOBDData",
                                      "Export obd data to Excel spreadsheet"};
    static constexpr ReviewScreen combined{"frmGPSOBDViewData", "GPS and OBD Data", "vaGPSOBDData",
                                           "Export gps and obd data to Excel spreadsheet"};
    if (!hasObd) return gps;
    return hasGps ? combined : obd;
}

std::vector<std::string> LogFilesIn(const FileSystem& files, const std::string& folder, const LogFormat& format) {
    std::vector<std::string> names;
    for (const FileInfo& info : files.List(folder))
        if (!info.IsFolder && IsNamedAs(format, info.Name)) names.push_back(info.Name);
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
