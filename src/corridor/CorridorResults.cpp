#include "corridor/CorridorResults.h"

#include <algorithm>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/StudyRecords.h"

namespace vantor {
namespace {

using Indexes = std::vector<std::size_t>;

/// What a run tells of itself beside its figures.
MeasuredRun Light(const MeasuredRun& run) {
    MeasuredRun light;
    light.Entry = run.Entry;
    light.Name = run.Name;
    light.RunDate = run.RunDate;
    light.RunTime = run.RunTime;
    light.IsBefore = run.IsBefore;
    light.Period = run.Period;
    light.Direction = run.Direction;
    return light;
}

/// Which of the run's own nodes, from 0, a node of the corridor is.
std::size_t OwnNumber(const MatchedRun& run, const Corridor& corridor, std::size_t node) {
    std::size_t number = 0;
    for (std::size_t passed = 0; NodeAlong(corridor, run.Match.Along, passed) != node; ++passed)
        number += run.Match.Nodes[NodeAlong(corridor, run.Match.Along, passed)].IsKnown() ? 1 : 0;
    return number;
}

/// What a run measures from one node to another that it passes later.
PieceMeasures Between(const MatchedRun& run, const Corridor& corridor, std::size_t from, std::size_t to) {
    PieceMeasures sum;
    const std::size_t last = OwnNumber(run, corridor, to);
    for (std::size_t section = OwnNumber(run, corridor, from) + 1; section <= last; ++section) {
        const PieceMeasures& piece = run.Measured.Measures.Sections.at(section);
        sum.TravelTime += piece.TravelTime;
        sum.Distance += piece.Distance;
        sum.StoppedTime += piece.StoppedTime;
        sum.Stops += piece.Stops;
    }
    return sum;
}

ChosenRuns PointersTo(const std::vector<MeasuredRun>& runs) {
    ChosenRuns pointers;
    for (const MeasuredRun& run : runs) pointers.push_back(&run);
    return pointers;
}

/// Before with after; nothing where one of them is empty.
std::optional<ByMeasure<Comparison>> CompareAll(const std::vector<MeasuredRun>& runs,
                                                const StatisticsOptions& options) {
    ChosenRuns before;
    ChosenRuns after;
    for (const MeasuredRun& run : runs) (run.IsBefore ? before : after).push_back(&run);
    if (before.empty() || after.empty()) return std::nullopt;
    return CompareGroups(before, after, std::nullopt, options);
}

/// Computes the figures of one way.
class WayMaker {
public:
    WayMaker(const Corridor& corridor, const std::vector<MatchedRun>& runs, Way way, const CorridorFilter& filter)
        : corridor_(corridor), runs_(runs) {
        figures_.Along = way;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            if (!filter.Takes(runs[i]) || runs[i].Match.Along != way || IsSetAside(runs[i])) continue;
            figures_.Runs.push_back(i);
            (runs[i].Measured.IsBefore ? figures_.Before : figures_.After).push_back(i);
        }
    }

    WayFigures Make() {
        const std::size_t count = corridor_.Nodes.size();
        for (std::size_t passed = 0; passed < count; ++passed) {
            const std::size_t node = NodeAlong(corridor_, figures_.Along, passed);
            figures_.Nodes.push_back(FiguresAt(node));
            if (passed > 0)
                figures_.Sections.push_back(FiguresOver(NodeAlong(corridor_, figures_.Along, passed - 1), node));
        }
        if (count > 0)
            figures_.Total =
                FiguresOver(NodeAlong(corridor_, figures_.Along, 0), NodeAlong(corridor_, figures_.Along, count - 1));
        return std::move(figures_);
    }

private:
    bool IsSetAside(const MatchedRun& run) const { return !corridor_.Runs[run.Index].SetAside.empty(); }

    NodeFigures FiguresAt(std::size_t node) const {
        NodeFigures figures;
        figures.Node = node;
        std::vector<MeasuredRun> counted;
        std::vector<RunListRow> rows;
        std::vector<double> stopDelays;
        for (const std::size_t index : figures_.Runs) {
            const MatchedRun& run = runs_[index];
            const NodeDelay& delay = run.Delays.at(node);
            (delay.HasFigure() ? figures.Runs : figures.Without).push_back(index);
            if (!delay.HasFigure()) continue;
            MeasuredRun& light = counted.emplace_back(Light(run.Measured));
            light.IsCounted = true;
            light.ControlDelay = delay.Row.Entry.ControlDelay;
            stopDelays.push_back(delay.Row.Entry.StopDelay);
            rows.push_back(delay.Row);
        }
        figures.Figures = GroupOver(PointersTo(counted), std::nullopt, corridor_.Options);
        figures.StopDelay = Summarise(stopDelays, corridor_.Options.Confidence);
        Study asStudy;
        ComputeStudyResults(asStudy, rows, figures.AsStudy);
        figures.Moved = SensitivityOf(node, figures.Runs);
        if (auto compared = CompareAll(counted, corridor_.Options))
            figures.Compared = (*compared)[Measure::ControlDelay];
        return figures;
    }

    /// A run that cannot be moved so stays as it is.
    std::optional<Sensitivity> SensitivityOf(std::size_t node, const Indexes& runs) const {
        if (runs.empty()) return std::nullopt;
        Sensitivity moved;
        for (std::size_t shift = 0; shift < BandShifts.size(); ++shift) {
            double sum = 0;
            for (const std::size_t index : runs) {
                const NodeDelay& delay = runs_[index].Delays.at(node);
                sum += delay.Shifted.at(shift).value_or(delay.Row.Entry.ControlDelay);
            }
            const double mean = sum / static_cast<double>(runs.size());
            moved.Least = shift == 0 ? mean : std::min(moved.Least, mean);
            moved.Most = shift == 0 ? mean : std::max(moved.Most, mean);
        }
        // Grades are those of whole seconds, as the study's is.
        moved.GradeOfLeast = StudyGrade(Round32(moved.Least));
        moved.GradeOfMost = StudyGrade(Round32(moved.Most));
        return moved;
    }

    SectionFigures FiguresOver(std::size_t from, std::size_t to) const {
        SectionFigures figures;
        figures.From = from;
        figures.To = to;
        std::vector<MeasuredRun> passing;
        for (const std::size_t index : figures_.Runs) {
            const MatchedRun& run = runs_[index];
            if (!run.Match.Nodes[from].IsKnown() || !run.Match.Nodes[to].IsKnown()) continue;
            figures.Runs.push_back(index);
            passing.emplace_back(Light(run.Measured)).Measures.Whole = Between(run, corridor_, from, to);
        }
        figures.Figures = GroupOver(PointersTo(passing), std::nullopt, corridor_.Options);
        figures.Compared = CompareAll(passing, corridor_.Options);
        return figures;
    }

    const Corridor& corridor_;
    const std::vector<MatchedRun>& runs_;
    WayFigures figures_;
};

/// Holm's p over the nodes and over the sections of a way.
void AdjustProbabilities(WayFigures& way) {
    std::vector<std::optional<double>> delays;
    std::vector<std::optional<double>> times;
    for (const NodeFigures& node : way.Nodes) delays.push_back(node.Compared ? node.Compared->Welch.P : std::nullopt);
    for (const SectionFigures& section : way.Sections)
        times.push_back(section.Compared ? (*section.Compared)[Measure::TravelTime].Welch.P : std::nullopt);
    const auto ofDelays = HolmAdjusted(delays);
    const auto ofTimes = HolmAdjusted(times);
    for (std::size_t i = 0; i < way.Nodes.size(); ++i)
        if (way.Nodes[i].Compared) way.Nodes[i].Compared->HolmP = ofDelays[i];
    for (std::size_t i = 0; i < way.Sections.size(); ++i)
        if (way.Sections[i].Compared) (*way.Sections[i].Compared)[Measure::TravelTime].HolmP = ofTimes[i];
}

std::vector<std::string> LeftOutOf(const Corridor& corridor, const std::vector<MatchedRun>& runs) {
    std::vector<std::string> leftOut;
    for (const MatchedRun& run : runs) {
        const CorridorRun& as = corridor.Runs[run.Index];
        if (!run.IsThere())
            leftOut.push_back(run.Problem);
        else if (!as.SetAside.empty())
            leftOut.push_back(as.Name + ": set aside: " + as.SetAside);
        else if (KnownNodes(run.Match.Nodes) < 2)
            leftOut.push_back(as.Name + ": it passes " + Counted(KnownNodes(run.Match.Nodes), "node") + ".");
    }
    return leftOut;
}

}  // namespace

bool CorridorFilter::Takes(const MatchedRun& run) const {
    if (!run.IsThere()) return false;
    if (Period && run.Period != *Period) return false;
    return Of == Condition::Both || (Of == Condition::Before) == run.Measured.IsBefore;
}

CorridorResults ComputeCorridor(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                const CorridorFilter& filter) {
    CorridorResults results;
    for (const Way way : BothWays) {
        WayFigures& figures = results.Ways[static_cast<std::size_t>(way)];
        figures = WayMaker(corridor, runs, way, filter).Make();
        AdjustProbabilities(figures);
    }
    results.LeftOut = LeftOutOf(corridor, runs);
    for (const Way way : BothWays)
        if (!corridor.Of(way).IdealSpeedMph && !results.Of(way).Runs.empty())
            results.Warnings.push_back(corridor.Of(way).Name +
                                       ": each run's ideal speed is that at its boundaries, which is none where the "
                                       "vehicle queues. Set one for the direction.");
    return results;
}

std::vector<std::string> PeriodsOf(const std::vector<MatchedRun>& runs) {
    std::vector<MeasuredRun> there;
    for (const MatchedRun& run : runs)
        if (run.IsThere()) there.push_back(Light(run.Measured));
    std::ranges::stable_sort(there, {}, [](const MeasuredRun& run) { return run.RunTime.Days; });
    std::vector<std::string> periods;
    bool hasNone = false;
    for (const MeasuredRun& run : there) {
        hasNone = hasNone || run.Period.empty();
        if (!run.Period.empty() && std::ranges::find(periods, run.Period) == periods.end())
            periods.push_back(run.Period);
    }
    if (hasNone) periods.emplace_back();
    return periods;
}

}  // namespace vantor
