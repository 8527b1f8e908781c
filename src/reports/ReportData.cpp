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

void AddToMap(MapContents& map, const RunRecord& run, const std::string& name) {
    if (!HasPositions(run)) return;
    map.Tracks.push_back(TrackOf(run, name));
    std::vector<MapNode> nodes = NodesOf(run);
    if (nodes.size() > map.Nodes.size()) map.Nodes = std::move(nodes);
}

ReportRun LoadRun(ReportData& data, int number, const FileSystem& files, const std::string& folder) {
    const StudyRunEntry& entry = data.Contents.Entries[number];
    const std::string name = RunFileName(entry);
    const RunReading reading = ReadRun(files, folder, name, RunPart::Whole);
    ReportRun run;
    run.Number = number;
    run.Row = MakeRunListRow(entry, FactsOf(reading, entry, data.Settings), data.Settings);
    run.Problem = ProblemTitle(reading.Outcome);
    try {
        if (reading) {
            AddToMap(data.Map, reading.Run, name);
            run.Statistics = ComputeRunStatistics(reading.Run, data.Settings);
            run.Profile = std::make_shared<const ReportProfile>(MakeReportProfile(reading.Run, data.Settings));
        }
    } catch (const RunTimeError& error) {
        run.Problem = "Run without Statistics";
        run.Row.Facts.Problem = error.Message();
    }
    if (run.Problem.empty()) return run;
    const bool isMissing = reading.Outcome == RunOutcome::Missing;
    data.Problems.push_back(run.Problem + ": " + name + (isMissing ? std::string() : "\n" + run.Row.Facts.Problem));
    return run;
}

void ComputeStatistics(ReportData& data) {
    const StatisticsOptions& options = data.Contents.Options;
    const std::vector<MeasuredRun>& runs = data.Measured.Read.Runs;
    data.Statistics = ComputeStatistics(runs, options);
    const std::vector<MeasuredRun> kept = WithoutSetAside(runs);
    if (kept.size() != runs.size()) data.WithoutSetAside = ComputeStatistics(kept, options);
    if (data.Statistics.NodeCounts.empty()) return;
    ChosenRuns ofMostNodes;
    for (const std::size_t run : data.Statistics.NodeCounts.front().Runs) ofMostNodes.push_back(&runs[run]);
    data.OfMostNodes = GroupOver(ofMostNodes, std::nullopt, options);
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
    data.Map.Shown = UnitsOf(settings);
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        if (!progress(static_cast<std::uint64_t>(i - 1), static_cast<std::uint64_t>(study.Record.RunCount))) {
            data.Runs.clear();
            data.Map = {};
            return data;
        }
        data.Runs.push_back(LoadRun(data, i, files, folder));
    }
    const std::vector<RunListRow> rows = data.Rows();
    ComputeStudyResults(data.Contents, rows, data.Labels);
    data.WithoutWarned = AverageWithoutWarned(rows);
    data.OtherThresholds = OtherThresholds(rows);
    data.StopDelayNow = AverageStopDelayNow(rows);
    data.Measured = ReadTracedRuns(study, files, folder, settings);
    for (const MeasuredRun& run : data.Measured.Read.Runs)
        for (MapTrack& track : data.Map.Tracks)
            if (track.Name == run.Name) track.IsSetAside = !run.SetAside.empty();
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
