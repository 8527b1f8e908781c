#include "workspace/StudyCertainty.h"

#include "core/Text.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

/// The counted runs as far as their delays go.
std::vector<MeasuredRun> DelaysOf(const std::vector<RunListRow>& rows) {
    std::vector<MeasuredRun> runs;
    for (const RunListRow& row : rows) {
        if (row.State != RunState::Counted) continue;
        MeasuredRun& run = runs.emplace_back();
        run.Name = std::string(Trim(row.RunName));
        run.RunDate = row.Facts.RunDate;
        run.RunTime = row.Facts.RunTime;
        run.Period = row.Entry.Period;
        run.SetAside = row.Entry.SetAside;
        run.IsCounted = true;
        run.ControlDelay = row.Entry.ControlDelay;
    }
    return runs;
}

GroupStatistics GroupOf(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options) {
    ChosenRuns all;
    for (const MeasuredRun& run : runs) all.push_back(&run);
    return GroupOver(all, std::nullopt, options);
}

}  // namespace

StudyCertainty CertaintyOf(const std::vector<RunListRow>& rows, const StatisticsOptions& options, const Units& units) {
    const std::vector<MeasuredRun> runs = DelaysOf(rows);
    if (runs.empty()) return {};
    const GroupStatistics group = GroupOf(runs, options);
    const Figure delay = DelayFigure(group, options);
    StudyCertainty certainty;
    certainty.Interval = delay.WithInterval(units);
    if (const auto grades = GradesOf(group.Of[Measure::ControlDelay], StudyGrade); grades && delay.HalfWidth)
        certainty.Interval += ", " + grades->Text();
    certainty.Interval += "; " + delay.Remarks();
    certainty.RunsNeeded = RunsNeededText(group, Measure::ControlDelay, options, units);

    const std::vector<MeasuredRun> kept = WithoutSetAside(runs);
    if (kept.size() != runs.size())
        certainty.WithoutSetAside = delay.NumberBeside(DelayFigure(GroupOf(kept, options), options), units);
    return certainty;
}

}  // namespace vantor
