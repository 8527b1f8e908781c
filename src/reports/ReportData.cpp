#include "reports/ReportData.h"

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/Units.h"
#include "map/MapFromRun.h"

namespace vantor {
namespace {

const char* ProblemTitle(RunOutcome outcome) {
    switch (outcome) {
        case RunOutcome::Missing: return "Missing Run File";
        case RunOutcome::Unreadable: return "Unreadable Run File";
        case RunOutcome::Damaged: return "Damaged Run File";
        case RunOutcome::Run: break;
    }
    return "";
}

/// What a run gives to the map.
struct RunOnMap {
    std::optional<MapTrack> Track;
    std::vector<MapNode> Nodes;
};

RunOnMap OnMap(const RunRecord& run, const std::string& name) {
    if (!HasPositions(run)) return {};
    return {TrackOf(run, name), NodesOf(run)};
}

void AddToMap(MapContents& map, RunOnMap run, bool isSetAside) {
    if (!run.Track) return;
    run.Track->IsSetAside = isSetAside;
    map.Tracks.push_back(std::move(*run.Track));
    if (run.Nodes.size() > map.Nodes.size()) map.Nodes = std::move(run.Nodes);
}

ReportRun MakeReportRun(const ReportData& data, int number, const RunReading& reading) {
    const StudyRunEntry& entry = data.Contents.Entries[number];
    ReportRun run;
    run.Number = number;
    run.Row = MakeRunListRow(entry, FactsOf(reading, entry, data.Settings), data.Settings);
    run.Problem = ProblemTitle(reading.Outcome);
    try {
        if (reading) {
            run.Statistics = ComputeRunStatistics(reading.Run, data.Settings);
            run.Profile = std::make_shared<const ReportProfile>(MakeReportProfile(reading.Run, data.Settings));
        }
    } catch (const RunTimeError& error) {
        run.Problem = "Run without Statistics";
        run.Row.Facts.Problem = error.Message();
    }
    return run;
}

void NoteProblems(ReportData& data) {
    const std::string missing = ProblemTitle(RunOutcome::Missing);
    for (const ReportRun& run : data.Runs) {
        if (run.Problem.empty()) continue;
        const std::string reason = run.Problem == missing ? std::string() : "\n" + run.Row.Facts.Problem;
        data.Problems.push_back(run.Problem + ": " + RunFileName(data.Contents.Entries[run.Number]) + reason);
    }
}

void ComputeStatistics(ReportData& data) {
    const StatisticsOptions& options = data.Contents.Options;
    const std::vector<MeasuredRun>& runs = data.Measured.Read.Runs;
    data.Statistics = ComputeStatistics(runs, options);
    const std::vector<MeasuredRun> kept = WithoutSetAside(runs);
    if (kept.size() != runs.size()) data.WithoutSetAside = ComputeStatistics(kept, options);
}

}  // namespace

std::vector<RunListRow> ReportData::Rows() const {
    std::vector<RunListRow> rows;
    for (const ReportRun& run : Runs) rows.push_back(run.Row);
    return rows;
}

ReportData LoadReportData(const Study& study, const AppSettings& settings, const FileSystem& files,
                          const std::string& folder, Date printed, const Progress& progress) {
    ReportData data;
    data.Contents = study;
    data.StudyGroup = LastComponent(WholePath(files, folder));
    data.Settings = settings;
    data.Printed = printed;
    data.Runs.resize(static_cast<std::size_t>(study.Record.RunCount));
    std::vector<RunOnMap> onMap(data.Runs.size());
    const auto take = [&](int number, const RunReading& reading) {
        const auto at = static_cast<std::size_t>(number - 1);
        data.Runs[at] = MakeReportRun(data, number, reading);
        if (reading) onMap[at] = OnMap(reading.Run, RunFileName(study.Entries[number]));
    };
    data.Measured = ReadTracedRuns(study, files, folder, settings, progress, take, RunPart::Whole);
    if (!data.Measured.Read.IsWhole) {
        data.Runs.clear();
        return data;
    }
    NoteProblems(data);
    const std::vector<RunListRow> rows = data.Rows();
    ComputeStudyResults(data.Contents, rows, data.Labels);
    data.WithoutWarned = AverageWithoutWarned(rows);
    data.OtherThresholds = OtherThresholds(rows);
    data.StopDelayNow = AverageStopDelayNow(rows);
    data.Map.Shown = UnitsOf(settings);
    for (std::size_t i = 0; i < onMap.size(); ++i)
        AddToMap(data.Map, std::move(onMap[i]), !study.Entries[static_cast<int>(i) + 1].SetAside.empty());
    ComputeStatistics(data);
    return data;
}

std::string RunTitle(const ReportData& data, const ReportRun& run, bool withName) {
    std::string title = "Run " + std::to_string(run.Number);
    if (withName) title += "   " + std::string(Trim(data.Contents.Entries[run.Number].EntryRunName));
    return title;
}

std::string RunSummary(const ReportData& data, const ReportRun& run) {
    if (!IsThere(run.Row.State)) return {};
    std::string text = run.Row.RunDate + " " + run.Row.RunTime;
    if (run.Row.State != RunState::Counted) return text + ", not counted";
    const StudyRunEntry& entry = data.Contents.Entries[run.Number];
    const std::int32_t ideal = entry.IdealSpeedUser != 0 ? entry.IdealSpeedUser : entry.IdealSpeedCalc;
    text += ", ideal speed " + UnitsOf(data.Settings).SpeedText(ideal);
    text += ", control delay " + std::to_string(entry.ControlDelay) + " s";
    const std::string grade(Trim(entry.LOSGrade));
    return grade.empty() ? text : text + ", LOS " + grade;
}

}  // namespace vantor
