#include "statistics/DetailedStatistics.h"

#include <algorithm>

#include "core/Counted.h"
#include "core/Text.h"
#include "statistics/Figure.h"
#include "statistics/OverlayPlot.h"

namespace vantor {
namespace {

constexpr std::size_t MostNames = 5;

std::vector<MeasuredRun> RunsAt(const std::vector<MeasuredRun>& runs, const std::vector<std::size_t>& indexes) {
    std::vector<MeasuredRun> at;
    at.reserve(indexes.size());
    for (const std::size_t index : indexes) at.push_back(runs[index]);
    return at;
}

/// The warnings of a group that are not those of all runs.
std::string OwnWarnings(const char* name, const GroupStatistics& group, const GroupStatistics& all) {
    std::string text;
    for (const std::string& warning : group.Warnings)
        if (std::ranges::find(all.Warnings, warning) == all.Warnings.end())
            text += std::string("; ") + name + ": " + warning;
    return text;
}

std::string BasisText(const std::vector<MeasuredRun>& runs, const GroupedStatistics& whole) {
    const GroupStatistics& all = whole.All;
    const auto aside = std::ranges::count_if(runs, [](const MeasuredRun& run) { return !run.SetAside.empty(); });
    std::string text = all.RestsOn.Text();
    if (aside > 0) text += "; " + std::to_string(aside) + " of them set aside";
    if (all.N > 1)
        for (const std::string& warning : all.Warnings) text += "; " + warning;
    if (whole.HasBoth()) text += OwnWarnings("before", whole.Before, all) + OwnWarnings("after", whole.After, all);
    return text;
}

std::string NothingTaken(const TracedRuns& runs, const Study& study) {
    if (study.Record.RunCount == 0) return "The study has no runs. Add runs to see their statistics.";
    if (runs.Read.Runs.empty()) return "No run of the study can be read.";
    return "No run is of this choice. Choose another period, or all runs.";
}

std::vector<std::string> WarningsOf(const DetailedStatistics& detailed, const TracedRuns& runs, const Study& study) {
    std::vector<std::string> warnings;
    if (detailed.Runs.empty())
        warnings.push_back(NothingTaken(runs, study));
    else
        warnings = detailed.Figures.Warnings;
    std::vector<std::string> problems;
    for (const RunLeftOut& run : runs.Read.LeftOut) problems.push_back(run.Problem);
    if (!problems.empty())
        warnings.push_back(Counted(problems.size(), "run") + " left out: " + FirstOf(problems, MostNames, " "));
    return warnings;
}

std::string NodesText(int nodes) { return nodes == 0 ? "no nodes" : Counted(nodes, "node"); }

std::string ApartText(const StudyStatistics& figures, const std::vector<MeasuredRun>& taken) {
    std::vector<std::string> runs;
    for (std::size_t i = 1; i < figures.NodeCounts.size(); ++i)
        for (const std::size_t run : figures.NodeCounts[i].Runs)
            runs.push_back(taken[run].Name + " (" + NodesText(figures.NodeCounts[i].Nodes) + ", " +
                           std::to_string(taken[run].Measures.Whole.TravelTime) + " s)");
    return runs.empty() ? std::string() : "Apart, with another number of nodes: " + FirstOf(runs, 2 * MostNames) + ".";
}

std::vector<std::string> SentencesOf(const StudyStatistics& figures, const RunFilter& filter, const Units& units) {
    const GroupedStatistics& whole = figures.Whole;
    if (!whole.HasBoth()) {
        if (filter.Of != RunFilter::Group::All) return {"Choose all runs above to compare before with after."};
        if (whole.All.N == 0) return {"There are no runs to compare."};
        const bool isBefore = whole.Before.N > 0;
        return {std::string("All runs were driven ") + (isBefore ? "before" : "after") +
                " the change that is studied. To compare, set those of the other kind in the main window: Run, " +
                (isBefore ? "Set After." : "Set Before.")};
    }
    std::vector<std::string> sentences{"Before: " + whole.Before.RestsOn.Text() +
                                       ". After: " + whole.After.RestsOn.Text() + "."};
    for (const Measure measure : AllMeasures)
        if (whole.Compared[measure].Welch.NBefore + whole.Compared[measure].Welch.NAfter > 0)
            sentences.push_back(ComparisonText(whole.Compared[measure], measure, figures.Options, units));
    sentences.insert(sentences.end(), whole.Warnings.begin(), whole.Warnings.end());
    if (!figures.SectionsComparable) sentences.push_back(figures.NodeCountText() + ": sections are not compared.");
    return sentences;
}

void Compare(DetailedStatistics& detailed, const RunFilter& filter, const Units& units) {
    const StudyStatistics& figures = detailed.Figures;
    detailed.Sentences = SentencesOf(figures, filter, units);
    detailed.Compared = ComparedTable(figures.Whole, figures.Options, units);
    const bool bySection = figures.Whole.HasBoth() && figures.SectionsComparable && figures.Sections.size() > 1;
    detailed.ComparedSections =
        ComparedSectionsTable(bySection ? figures.Sections : std::vector<SectionOverRuns>(), figures.Options, units);
}

/// The runs that are in neither plot.
std::vector<std::string> NotDrawn(const StudyStatistics& figures) {
    std::vector<std::string> notes = figures.NotPlotted();
    if (std::ssize(figures.RunsToPlot()) < figures.OfMostNodes.N) notes.emplace_back("Choose a period to see others.");
    return notes;
}

std::string TimeSpaceNoteOf(const StudyStatistics& figures, const PlottedRuns& runs, TimeSpaceClock clock) {
    std::vector<std::string> notes = NotDrawn(figures);
    std::vector<std::string> without;
    for (const PlottedRun& run : runs)
        if (!IsDrawn(*run.Run, clock)) without.push_back(run.Run->Name);
    if (!without.empty()) notes.push_back("Not drawn, without a time of day: " + FirstOf(without, MostNames) + ".");
    return Joined(notes, " ");
}

std::string OverlayNoteOf(const StudyStatistics& figures, const PlottedRuns& runs) {
    std::vector<std::string> notes = NotDrawn(figures);
    if (std::ssize(runs) > MostSingleProfiles)
        notes.push_back("Single profiles are those of the first " + std::to_string(MostSingleProfiles) + " runs.");
    const auto isSmall = [](const RunsAlike& group) { return std::ssize(group.Runs) < LeastForPercentiles; };
    if (!runs.empty() && std::ranges::any_of(GroupsOf(runs), isSmall))
        notes.push_back("The median and its band take " + std::to_string(LeastForPercentiles) + " runs or more.");
    return Joined(notes, " ");
}

StatisticsCell Number(double value, FigureUnit unit, int decimals, const Units& units) {
    return {ShownNumber(value, unit, decimals, units), value};
}

std::string LengthHead(const char* what, const Units& units) {
    return std::string(what) + " (" + units.LengthLabel() + ")";
}

StatisticsTable NodeTimesTable(const PlottedRuns& runs, const Units& units) {
    StatisticsTable table;
    table.Heads = {"Node", LengthHead("Mean distance", units), "Mean time (s)"};
    for (const PlottedRun& run : runs) table.Heads.push_back(run.Run->Name + " (s)");
    const MeanPlaces places = MeanPlacesOf(runs);
    for (std::size_t i = 0; i < places.Feet.size(); ++i) {
        auto& row = table.Rows.emplace_back();
        row.push_back({i < runs.front().Run->NodeNames.size() ? runs.front().Run->NodeNames[i] : std::string()});
        row.push_back(Number(places.Feet[i], FigureUnit::Feet, 0, units));
        row.push_back(Number(places.Seconds[i], FigureUnit::Seconds, 1, units));
        for (const PlottedRun& run : runs) {
            const RunMeasures& measures = run.Run->Measures;
            const int second = i == 0                           ? 0
                               : i <= measures.NodeTimes.size() ? measures.NodeTimes[i - 1]
                                                                : measures.Whole.TravelTime;
            row.push_back(Number(second, FigureUnit::Seconds, 0, units));
        }
    }
    return table;
}

StatisticsTable SpeedsTable(const PlottedRuns& runs, const Units& units) {
    StatisticsTable table;
    table.Heads = {LengthHead("From", units), LengthHead("To", units)};
    const auto groups = GroupsOf(runs);
    const MeanPlaces places = MeanPlacesOf(runs);
    for (const RunsAlike& group : groups) {
        for (const char* part : {"P15", "P50", "P85"})
            table.Heads.push_back(std::string(group.Look.Caption) + " " + part + " (" + units.SpeedLabel() + ")");
        const auto pieces = SpeedBand(group.Runs, places);
        table.Rows.resize(pieces.size());
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            auto& row = table.Rows[i];
            if (row.empty())
                row = {Number(pieces[i].From, FigureUnit::Feet, 0, units),
                       Number(pieces[i].To, FigureUnit::Feet, 0, units)};
            for (const auto& speed : {pieces[i].P15, pieces[i].P50, pieces[i].P85})
                row.push_back(speed ? Number(*speed, FigureUnit::MilesPerHour, 1, units) : StatisticsCell{NoValueText});
        }
    }
    return table;
}

void Draw(DetailedStatistics& detailed, const TracedRuns& runs, const Study& study, const PlotChoices& choices,
          const Units& units) {
    for (const std::size_t index : detailed.Figures.RunsToPlot()) detailed.Plotted.push_back(detailed.Runs[index]);
    const PlottedRuns plotted = PlottedRunsAt(runs, detailed.Plotted);
    const std::string name(Trim(study.Record.StudyName));
    const auto title = [&](const char* what) { return name.empty() ? what : name + ": " + what; };
    detailed.TimeSpace = TimeSpacePlot(plotted, choices.Clock, title("time and space"), units);
    detailed.Overlay = OverlayPlot(plotted, choices.ShowsRuns, title("speeds"), units);
    detailed.NodeTimes = NodeTimesTable(plotted, units);
    detailed.Speeds = SpeedsTable(plotted, units);
    detailed.TimeSpaceNote = TimeSpaceNoteOf(detailed.Figures, plotted, choices.Clock);
    detailed.OverlayNote = OverlayNoteOf(detailed.Figures, plotted);
    const std::string nothing = detailed.Runs.empty() ? detailed.Warnings.front() : std::string();
    detailed.TimeSpace.EmptyText = detailed.Overlay.EmptyText = nothing;
}

}  // namespace

bool RunFilter::Takes(const MeasuredRun& run) const {
    if (Period && run.Period != *Period) return false;
    if (Direction && run.Direction != *Direction) return false;
    if (WithoutSetAside && !run.SetAside.empty()) return false;
    return Of == Group::All || run.IsBefore == (Of == Group::Before);
}

std::vector<std::string> DifferentOf(const std::vector<MeasuredRun>& runs, std::string MeasuredRun::*what) {
    std::vector<std::string> different;
    for (const MeasuredRun& run : runs)
        if (std::ranges::find(different, run.*what) == different.end()) different.push_back(run.*what);
    if (const auto none = std::ranges::find(different, std::string()); none != different.end())
        std::rotate(none, none + 1, different.end());
    return different;
}

int DetailedStatistics::ItemOf(std::size_t run) const {
    const auto found = std::ranges::find(Plotted, run);
    return found == Plotted.end() ? 0 : static_cast<int>(found - Plotted.begin()) + 1;
}

DetailedStatistics MakeDetailedStatistics(const TracedRuns& runs, const Study& study, const RunFilter& filter,
                                          const PlotChoices& choices, const Units& units) {
    DetailedStatistics detailed;
    for (std::size_t i = 0; i < runs.Read.Runs.size(); ++i)
        if (filter.Takes(runs.Read.Runs[i])) detailed.Runs.push_back(i);
    const std::vector<MeasuredRun> taken = RunsAt(runs.Read.Runs, detailed.Runs);
    detailed.Figures = ComputeStatistics(taken, study.Options);
    const GroupedStatistics& whole = detailed.Figures.Whole;
    detailed.RestsOn = BasisText(taken, whole);
    detailed.Warnings = WarningsOf(detailed, runs, study);
    const char* const what = filter.Of == RunFilter::Group::All      ? "All"
                             : filter.Of == RunFilter::Group::Before ? "Before"
                                                                     : "After";
    detailed.Summary = SummaryTable(whole, study.Options, what, units);
    AddRunsSoFar(detailed.Summary, taken, study.Options, units);
    detailed.Sections = SectionsTable(detailed.Figures, units);
    detailed.Apart = ApartText(detailed.Figures, taken);
    Compare(detailed, filter, units);
    Draw(detailed, runs, study, choices, units);
    return detailed;
}

}  // namespace vantor
