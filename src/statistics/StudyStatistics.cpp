#include "statistics/StudyStatistics.h"

#include <algorithm>

#include "core/Counted.h"
#include "core/Text.h"

namespace vantor {
namespace {

struct Parted {
    ChosenRuns All, Before, After;
};

Parted Part(const ChosenRuns& runs) {
    Parted parted{runs, {}, {}};
    for (const MeasuredRun* run : runs) (run->IsBefore ? parted.Before : parted.After).push_back(run);
    return parted;
}

void Compute(GroupedStatistics& grouped, const Parted& runs, std::optional<std::size_t> section, bool compares,
             const StatisticsOptions& options) {
    grouped.All = GroupOver(runs.All, section, options);
    grouped.Before = GroupOver(runs.Before, section, options);
    grouped.After = GroupOver(runs.After, section, options);
    if (!compares) return;
    grouped.Compared = CompareGroups(runs.Before, runs.After, section, options);
    grouped.Warnings = Unlike(grouped.Before, grouped.After);
}

std::vector<NodeCount> NodeCountsOf(const std::vector<MeasuredRun>& runs) {
    std::vector<NodeCount> counts;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        auto found = std::ranges::find(counts, runs[i].Nodes(), &NodeCount::Nodes);
        if (found == counts.end()) found = counts.insert(counts.end(), {runs[i].Nodes(), {}});
        found->Runs.push_back(i);
    }
    std::ranges::sort(counts, [](const NodeCount& left, const NodeCount& right) {
        if (left.Runs.size() != right.Runs.size()) return left.Runs.size() > right.Runs.size();
        return left.Nodes > right.Nodes;
    });
    return counts;
}

void Name(SectionOverRuns& section, std::size_t index, const std::vector<std::string>& nodes) {
    if (index + 1 >= nodes.size()) return;
    section.From = nodes[index];
    section.To = nodes[index + 1];
}

/// Holm's p of travel time over the sections.
void Adjust(std::vector<SectionOverRuns>& sections) {
    std::vector<std::optional<double>> p;
    p.reserve(sections.size());
    for (const SectionOverRuns& section : sections) p.push_back(section.Compared[Measure::TravelTime].Welch.P);
    const auto adjusted = HolmAdjusted(p);
    for (std::size_t i = 0; i < sections.size(); ++i) sections[i].Compared[Measure::TravelTime].HolmP = adjusted[i];
}

std::vector<SectionOverRuns> SectionsOf(const Parted& runs, bool compares, const StatisticsOptions& options) {
    const MeasuredRun& first = *runs.All.front();
    std::vector<SectionOverRuns> sections(first.Measures.Sections.size());
    for (std::size_t i = 0; i < sections.size(); ++i) {
        Compute(sections[i], runs, i, compares, options);
        Name(sections[i], i, first.NodeNames);
    }
    Adjust(sections);
    return sections;
}

/// The names of runs, not too many.
std::string NamesOf(const std::vector<std::size_t>& indexes, const std::vector<MeasuredRun>& runs) {
    std::vector<std::string> names;
    names.reserve(indexes.size());
    for (const std::size_t index : indexes) names.push_back(runs[index].Name);
    return FirstOf(names, 5);
}

void WarnOfNodes(StudyStatistics& statistics) {
    const std::string counts = statistics.NodeCountText();
    if (!counts.empty())
        statistics.Warnings.push_back(counts +
                                      ": the sections are of these alone, and Before and After are not "
                                      "compared by section.");
    else if (statistics.NodeCounts.front().Nodes == 0)
        statistics.Warnings.emplace_back(
            "No run has nodes, so there is one section. Set nodes in the speed profile to see where the time is lost.");
}

void Warn(StudyStatistics& statistics, const std::vector<MeasuredRun>& runs) {
    auto& warnings = statistics.Warnings;
    const GroupStatistics& all = statistics.Whole.All;
    if (runs.empty()) {
        warnings.emplace_back("There are no runs to make statistics of.");
        return;
    }
    if (all.N == 1) warnings.emplace_back("There is one run: it has no scatter, no interval and no test.");
    const Summary& times = all.Of[Measure::TravelTime];
    if (times.Sd == 0.0)
        warnings.emplace_back("All travel times are equal: without scatter there is neither an interval nor a test.");
    if (const auto& flags = statistics.ContradictoryFlags; !flags.empty())
        warnings.push_back("Before and After contradict each other in " + Counted(flags.size(), "run") + " (" +
                           NamesOf(flags, runs) +
                           "): both are set, or neither. What has Before set is taken as Before. Choose one in Run "
                           "Details.");
    if (all.Of[Measure::ControlDelay].N == 0)
        warnings.emplace_back("No run has both boundaries set, so there is no control delay.");
    WarnOfNodes(statistics);
}

ChosenRuns PointersTo(const std::vector<MeasuredRun>& runs) {
    ChosenRuns pointers;
    pointers.reserve(runs.size());
    for (const MeasuredRun& run : runs) pointers.push_back(&run);
    return pointers;
}

}  // namespace

std::string StudyStatistics::NodeCountText() const {
    if (NodeCounts.size() < 2) return {};
    const int nodes = NodeCounts.front().Nodes;
    const std::size_t runs = NodeCounts.front().Runs.size();
    return std::to_string(runs) + " of " + Counted(Whole.All.N, "run") + (runs == 1 ? " has " : " have ") +
           (nodes == 0 ? "no nodes" : Counted(nodes, "node"));
}

std::vector<std::size_t> StudyStatistics::RunsToPlot() const {
    if (NodeCounts.empty()) return {};
    std::vector<std::size_t> runs = NodeCounts.front().Runs;
    runs.resize(std::min(runs.size(), MostPlottedRuns));
    return runs;
}

std::vector<std::string> StudyStatistics::NotPlotted() const {
    std::vector<std::string> notes;
    if (NodeCounts.empty()) return notes;
    if (NodeCounts.size() > 1) notes.push_back(NodeCountText() + "; only these are drawn.");
    if (const std::size_t alike = NodeCounts.front().Runs.size(); alike > MostPlottedRuns)
        notes.push_back("The first " + std::to_string(MostPlottedRuns) + " of " + Counted(alike, "run") +
                        " are drawn.");
    return notes;
}

StudyStatistics ComputeStatistics(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options) {
    StudyStatistics statistics;
    statistics.Options = options;
    statistics.NodeCounts = NodeCountsOf(runs);
    statistics.SectionsComparable = statistics.NodeCounts.size() == 1;
    for (std::size_t i = 0; i < runs.size(); ++i)
        if (runs[i].HasContradictoryFlags) statistics.ContradictoryFlags.push_back(i);
    Compute(statistics.Whole, Part(PointersTo(runs)), {}, true, options);
    if (!runs.empty()) {
        ChosenRuns alike;
        for (const std::size_t index : statistics.NodeCounts.front().Runs) alike.push_back(&runs[index]);
        statistics.Sections = SectionsOf(Part(alike), statistics.SectionsComparable, options);
        statistics.OfMostNodes = statistics.SectionsComparable ? statistics.Whole.All : GroupOver(alike, {}, options);
    }
    Warn(statistics, runs);
    return statistics;
}

std::vector<RunsSoFar> TravelTimesSoFar(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options) {
    std::vector<double> times;
    times.reserve(runs.size());
    for (const MeasuredRun& run : runs) times.push_back(run.Measures.Whole.TravelTime);
    return AfterEachRun(times, options.Error, options.Confidence);
}

std::vector<MeasuredRun> WithoutSetAside(const std::vector<MeasuredRun>& runs) {
    std::vector<MeasuredRun> rest;
    std::ranges::copy_if(runs, std::back_inserter(rest), [](const MeasuredRun& run) { return run.SetAside.empty(); });
    return rest;
}

namespace {

bool HaveAsManyNodes(const std::vector<Condition>& conditions) {
    const MeasuredRun& first = conditions.front().Runs.front();
    return std::ranges::all_of(conditions, [&](const Condition& condition) {
        return std::ranges::all_of(condition.Runs,
                                   [&](const MeasuredRun& run) { return run.Nodes() == first.Nodes(); });
    });
}

/// A condition against the first: the first is Before, it is After.
std::vector<SectionOverRuns> SectionsBetween(const ChosenRuns& first, const ChosenRuns& other,
                                             const StatisticsOptions& options) {
    Parted runs{first, first, other};
    runs.All.insert(runs.All.end(), other.begin(), other.end());
    return SectionsOf(runs, true, options);
}

/// Holm's p of each measure over the conditions.
void Adjust(std::vector<ConditionStatistics>& conditions) {
    for (const Measure measure : AllMeasures) {
        std::vector<std::optional<double>> p;
        p.reserve(conditions.size());
        for (const ConditionStatistics& each : conditions) p.push_back(each.Compared[measure].Welch.P);
        const auto adjusted = HolmAdjusted(p);
        for (std::size_t i = 0; i < conditions.size(); ++i) conditions[i].Compared[measure].HolmP = adjusted[i];
    }
}

}  // namespace

std::vector<ConditionStatistics> CompareConditions(const std::vector<Condition>& conditions,
                                                   const StatisticsOptions& options) {
    std::vector<ConditionStatistics> result;
    const bool hasRuns = std::ranges::none_of(conditions, [](const Condition& each) { return each.Runs.empty(); });
    const bool bySection = !conditions.empty() && hasRuns && HaveAsManyNodes(conditions);
    for (const Condition& condition : conditions) {
        const ChosenRuns runs = PointersTo(condition.Runs);
        ConditionStatistics& each = result.emplace_back();
        each.Name = condition.Name;
        each.Remarks = condition.Remarks;
        each.Figures = GroupOver(runs, {}, options);
        if (!condition.Direction.empty()) each.Figures.RestsOn.Directions = {condition.Direction};
        if (result.size() == 1) continue;
        const ChosenRuns first = PointersTo(conditions.front().Runs);
        each.Compared = CompareGroups(first, runs, {}, options);
        each.Warnings = Unlike(result.front().Figures, each.Figures);
        if (bySection) each.Sections = SectionsBetween(first, runs, options);
    }
    if (result.size() > 2) Adjust(result);
    return result;
}

GroupedStatistics AgainstFirst(const std::vector<ConditionStatistics>& conditions, std::size_t index) {
    GroupedStatistics against;
    against.Before = conditions.front().Figures;
    against.After = conditions[index].Figures;
    against.Compared = conditions[index].Compared;
    against.Warnings = conditions[index].Warnings;
    return against;
}

}  // namespace vantor
