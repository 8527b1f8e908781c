#include "workspace/SampleStudy.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/StudyEdits.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/StudyCompanion.h"
#include "core/StudyFile.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr const char* GroupName = "Sample";
constexpr const char* StudyName = "Sample - Main Street";

/// One pulse is a foot.
constexpr std::int16_t CalConstant = 1000;
constexpr double SignalFeet = 2640;
constexpr double RunFeet = 5280;
constexpr std::int32_t StartFeet = 1300;
constexpr std::int32_t EndFeet = 3900;

struct Drive {
    const char* Name;
    int Hour;
    int Minute;
    double Cruise;  ///< feet a second
    int Red;        ///< seconds of standing at the signal
    double Queue;   ///< feet between its place in the queue and the signal
    bool IsBefore;
};
constexpr std::array Drives = {
    Drive{"MAIN-NB-001", 7, 5, 51, 38, 90, true},   Drive{"MAIN-NB-002", 7, 21, 50, 24, 25, true},
    Drive{"MAIN-NB-003", 7, 38, 52, 46, 160, true}, Drive{"MAIN-NB-004", 7, 52, 49, 6, 0, true},
    Drive{"MAIN-NB-005", 7, 4, 51, 17, 50, false},  Drive{"MAIN-NB-006", 7, 19, 51, 2, 0, false},
    Drive{"MAIN-NB-007", 7, 36, 50, 9, 0, false},   Drive{"MAIN-NB-008", 7, 50, 52, 21, 75, false},
};

/// Feet driven in each second: up to cruising speed, braking to the place in the queue, waiting, and on.
std::vector<int> FeetOf(const Drive& drive) {
    constexpr double Acceleration = 4;  // feet a second, each second
    constexpr double Braking = 7;
    std::vector<int> feet;
    const double stop = SignalFeet - drive.Queue;
    int waits = drive.Red;
    double speed = 0;
    for (double place = 0; place < RunFeet; place += feet.back()) {
        speed = std::min(speed + Acceleration, drive.Cruise);
        const double left = stop - place;
        if (waits > 0) speed = std::min(speed, std::sqrt(2 * Braking * std::max(left, 0.0)));
        if (waits > 0 && left < Braking) {
            speed = 0;
            --waits;
        }
        feet.push_back(Round32(speed));
    }
    return feet;
}

RunRecord RunOf(const Drive& drive) {
    RunRecord run;
    RunHeader& header = run.Header;
    header.RunDate = drive.IsBefore ? DateOf(2026, 5, 12) : DateOf(2026, 6, 16);
    header.RunTime = TimeOf(drive.Hour, drive.Minute);
    header.SiteCode = "MAIN";
    header.CalConstant = CalConstant;
    header.Notes = "Sample: reckoned, not driven";
    double place = 0;
    for (const int feet : FeetOf(drive)) {
        const bool passes = place < SignalFeet && place + feet >= SignalFeet;
        place += feet;
        run.SampleValues.Append(static_cast<std::int16_t>(feet | (passes ? NodeFlag : 0)));
    }
    header.SampleCount = run.SampleValues.LastIndex();
    run.RunSamples.ResizeTo(header.SampleCount);
    DecodeNewRun(run);
    header.SectionName[0] = "First Ave";
    header.SectionName[1] = "Main St signal";
    header.SectionName[2] = "Third Ave";
    header.Before = drive.IsBefore ? -1 : 0;
    header.After = drive.IsBefore ? 0 : -1;
    return run;
}

Study StudyOf(const AppSettings& settings) {
    Study study;
    study.Record.StudyName = StudyName;
    study.Record.StreetName = "Main Street";
    study.Record.StudyNotes = "Eight reckoned drives, before and after a change of the timing";
    study.Record.StudyDate = DateOf(2026, 6, 16);
    study.Record.Direction = 0;
    study.Record.CritLane = 0;
    for (const Drive& drive : Drives) {
        AppendRun(study, drive.Name);
        StudyRunEntry& entry = study.Entries[study.Record.RunCount];
        entry.CDStartDist = StartFeet;
        entry.CDEndDist = EndFeet;
        entry.Period = "AM peak";
        const RunRecord run = RunOf(drive);
        PlotState plot = PlacedBoundaries(run, entry);
        ComputeEntry(run, settings, plot, entry);
    }
    return study;
}

}  // namespace

std::optional<SampleStudy> FindSample(const FileSystem& files, const std::string& root) {
    const std::string folder = AsFolder(AsFolder(root) + GroupName);
    if (!FileExists(files, folder + StudyName + StudyExtension)) return std::nullopt;
    return SampleStudy{folder, StudyName};
}

SampleStudy MakeSample(FileSystem& files, const std::string& root, const AppSettings& settings) {
    const SampleStudy sample{AsFolder(AsFolder(root) + GroupName), StudyName};
    files.CreateFolder(sample.Folder);
    const auto batch = files.BeginWrites();
    for (const Drive& drive : Drives) {
        RunRecord run = RunOf(drive);
        AddRunFile(*batch, run, sample.Folder, drive.Name, Expected::Nothing());
    }
    batch->Commit();
    try {
        Study study = StudyOf(settings);
        WriteStudyFile(files, study, sample.Folder, sample.Name, Replacing::OwnFile);
    } catch (const RunTimeError&) {
        DeleteSample(files, sample);
        throw;
    }
    return sample;
}

void DeleteSample(FileSystem& files, const SampleStudy& sample) {
    std::vector<std::string> names = {sample.Name + StudyExtension, sample.Name + CompanionExtension};
    names.reserve(names.size() + Drives.size());
    for (const Drive& drive : Drives) names.push_back(std::string(drive.Name) + RunExtension);
    for (const std::string& name : names)
        if (FileExists(files, sample.Folder + name)) files.Delete(sample.Folder + name);
    if (files.List(sample.Folder).empty()) files.Delete(sample.Folder);
}

}  // namespace vantor
