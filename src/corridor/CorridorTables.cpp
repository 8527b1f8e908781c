#include "corridor/CorridorTables.h"

#include <algorithm>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/Text.h"
#include "corridor/CorridorWords.h"
#include "corridor/SignalArrivals.h"
#include "statistics/Figure.h"
#include "statistics/StatisticsCells.h"

namespace vantor {
namespace {

std::string SecondsText(double seconds) { return OneDecimal(seconds); }

/// What qualifies the delay of a node, part by part.
std::string NoteOf(const Corridor& corridor, const NodeFigures& figures) {
    const Summary& delay = figures.Figures.Of[Measure::ControlDelay];
    std::vector<std::string> parts = {Counted(delay.N, "run")};
    if (delay.Low)
        parts.push_back("mean " + SecondsText(*delay.Mean) + " s, " + ConfidenceText(corridor.Options.Confidence) +
                        " interval " + SecondsText(*delay.Low) + " to " + SecondsText(*delay.High) + " s");
    if (figures.Moved) {
        std::string moved = "bands moved by 100 ft and ideal speeds by 2 mph: " + SecondsText(figures.Moved->Least) +
                            " to " + SecondsText(figures.Moved->Most) + " s";
        if (figures.Moved->ChangesGrade())
            moved += std::string(", ") + figures.Moved->GradeOfLeast + " to " + figures.Moved->GradeOfMost;
        parts.push_back(moved);
    }
    for (const std::string& warning : figures.Figures.Warnings) parts.push_back(warning);
    if (!figures.Without.empty()) parts.push_back(Counted(figures.Without.size(), "run") + " without a figure");
    return Joined(parts, "; ");
}

StatisticsCell DelayCell(const Corridor& corridor, const NodeFigures& figures) {
    const Summary& delay = figures.Figures.Of[Measure::ControlDelay];
    if (!delay.Mean) return {NoValueText, {}, false, figures.Without.empty() ? "" : "no run has a figure here"};
    StatisticsCell cell;
    cell.Text =
        std::string(Trim(figures.AsStudy.AvgControlDelay.value_or(""))) + " " + figures.AsStudy.LOSGrade.value_or("");
    if (delay.HalfWidth) cell.Text += " ±" + std::to_string(Round32(*delay.HalfWidth));
    cell.IsWeak = figures.Moved && figures.Moved->ChangesGrade();
    cell.Note = NoteOf(corridor, figures);
    return cell;
}

StatisticsCell MeanCell(const Summary& summary, FigureUnit unit, const Units& units) {
    StatisticsCell cell = ValueCell(summary.Mean, unit, 1, units);
    if (summary.HalfWidth) {
        cell.Text += " ± " + ShownNumber(*summary.HalfWidth, unit, 1, units);
        cell.Number.reset();
    }
    return cell;
}

StatisticsCell NeededCell(const RunsNeeded& needed) {
    if (!needed.StillNeeded) return TextCell(NoValueText);
    if (needed.Enough) return TextCell("enough");
    if (*needed.StillNeeded == 0) return TextCell("few runs");
    return TextCell("+" + std::to_string(*needed.StillNeeded));
}

const NodeFigures& FiguresOf(const WayFigures& way, std::size_t node) {
    return *std::ranges::find(way.Nodes, node, &NodeFigures::Node);
}

void AddSectionRow(StatisticsTable& table, const std::string& way, const std::string& name,
                   const SectionFigures& section, const Units& units) {
    const GroupStatistics& group = section.Figures;
    const Reliability& times = group.Times;
    const auto seconds = [&](std::optional<double> value) { return ValueCell(value, FigureUnit::Seconds, 1, units); };
    const auto index = [&](std::optional<double> value) { return ValueCell(value, FigureUnit::None, 2, units); };
    table.Rows.push_back(
        {TextCell(way), TextCell(name), CountCell(group.N), ValueCell(group.MeanLength, FigureUnit::Feet, 0, units),
         MeanCell(group.Of[Measure::TravelTime], FigureUnit::Seconds, units),
         seconds(group.Of[Measure::RunningTime].Mean), seconds(group.Of[Measure::StoppedTime].Mean),
         index(group.Of[Measure::Stops].Mean), ValueCell(group.AverageTravelSpeed, FigureUnit::MilesPerHour, 1, units),
         ValueCell(group.AverageRunningSpeed, FigureUnit::MilesPerHour, 1, units), seconds(times.P50),
         seconds(times.P85), index(times.TravelTimeIndex), NeededCell(group.Needed[Measure::TravelTime]),
         TextCell(Joined(group.Warnings, "; "))});
}

void AddComparedRow(StatisticsTable& table, const std::string& way, const std::string& what, const Comparison& each,
                    const Units& units) {
    const auto seconds = [&](std::optional<double> value) { return ValueCell(value, FigureUnit::Seconds, 1, units); };
    const WelchTest& welch = each.Welch;
    StatisticsCell interval = TextCell(NoValueText);
    if (welch.Low) interval = TextCell(SecondsText(*welch.Low) + " to " + SecondsText(*welch.High));
    table.Rows.push_back({TextCell(way), TextCell(what), CountCell(welch.NBefore), CountCell(welch.NAfter),
                          seconds(welch.MeanBefore), seconds(welch.MeanAfter), seconds(welch.Difference),
                          ValueCell(welch.Percent, FigureUnit::Percent, 1, units), interval, ProbabilityCell(welch.P),
                          ProbabilityCell(each.HolmP), ProbabilityCell(each.Ranks.P)});
}

}  // namespace

CorridorFindings FindingsOf(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                            const CorridorFilter& filter) {
    CorridorFindings findings{ComputeCorridor(corridor, runs, filter), {}, {}};
    const auto hasBoth = [](const WayFigures& way) { return !way.Before.empty() && !way.After.empty(); };
    if (std::ranges::none_of(findings.All.Ways, hasBoth)) return findings;
    findings.Before = ComputeCorridor(corridor, runs, {filter.Period, CorridorFilter::Condition::Before});
    findings.After = ComputeCorridor(corridor, runs, {filter.Period, CorridorFilter::Condition::After});
    return findings;
}

std::vector<FindingsRow> RowsOf(const Corridor& corridor, const CorridorFindings& findings) {
    std::vector<FindingsRow> rows;
    const auto add = [&](const CorridorResults& results, Way way, const char* condition) {
        if (!results.Of(way).Runs.empty()) rows.push_back({corridor.Of(way).Name + condition, &results, way});
    };
    for (const Way way : BothWays) {
        if (findings.Before && findings.After) {
            add(*findings.Before, way, " before");
            add(*findings.After, way, " after");
        } else {
            add(findings.All, way, "");
        }
    }
    return rows;
}

StatisticsTable DelayTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units) {
    StatisticsTable table;
    table.Heads = {"Control delay (s)", "Runs"};
    for (const CorridorNode& node : corridor.Nodes) table.Heads.push_back(node.Name);
    table.Heads.insert(table.Heads.end(),
                       {"Travel time (s)", WithUnit("Speed", FigureUnit::MilesPerHour, units), "More runs"});
    for (const FindingsRow& row : RowsOf(corridor, findings)) {
        const WayFigures& way = row.Results->Of(row.Along);
        auto& cells = table.Rows.emplace_back();
        cells.push_back(TextCell(row.Name));
        cells.push_back(CountCell(static_cast<int>(way.Runs.size())));
        for (std::size_t node = 0; node < corridor.Nodes.size(); ++node)
            cells.push_back(DelayCell(corridor, FiguresOf(way, node)));
        const GroupStatistics& total = way.Total.Figures;
        cells.push_back(MeanCell(total.Of[Measure::TravelTime], FigureUnit::Seconds, units));
        cells.push_back(ValueCell(total.AverageTravelSpeed, FigureUnit::MilesPerHour, 1, units));
        cells.push_back(NeededCell(total.Needed[Measure::TravelTime]));
    }
    return table;
}

StatisticsTable CorridorSectionsTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units) {
    StatisticsTable table;
    table.TextColumns = 2;
    table.LastIsText = true;
    table.Heads = {"Way",
                   "Section",
                   "Runs",
                   WithUnit("Length", FigureUnit::Feet, units),
                   "Travel time (s)",
                   "Running (s)",
                   "Stopped (s)",
                   "Stops",
                   WithUnit("Travel speed", FigureUnit::MilesPerHour, units),
                   WithUnit("Running speed", FigureUnit::MilesPerHour, units),
                   "Median (s)",
                   "P85 (s)",
                   "Travel time index",
                   "More runs",
                   "Remarks"};
    for (const FindingsRow& row : RowsOf(corridor, findings)) {
        const WayFigures& way = row.Results->Of(row.Along);
        for (const SectionFigures& section : way.Sections)
            AddSectionRow(table, row.Name, SectionName(corridor, section), section, units);
        AddSectionRow(table, row.Name, "Whole way", way.Total, units);
    }
    return table;
}

StatisticsTable CorridorComparedTable(const Corridor& corridor, const CorridorResults& results, const Units& units) {
    StatisticsTable table;
    table.TextColumns = 2;
    table.Heads = {"Way",        "Measure (s)", "Runs before", "Runs after", "Before",   "After",
                   "Difference", "Percent",     "Interval",    "p (Welch)",  "p (Holm)", "p (ranks)"};
    for (const WayFigures& way : results.Ways) {
        const std::string& name = corridor.Of(way.Along).Name;
        for (const NodeFigures& node : way.Nodes)
            if (node.Compared)
                AddComparedRow(table, name, "Control delay, " + corridor.Nodes[node.Node].Name, *node.Compared, units);
        for (const SectionFigures& section : way.Sections)
            if (section.Compared)
                AddComparedRow(table, name, "Travel time, " + SectionName(corridor, section),
                               (*section.Compared)[Measure::TravelTime], units);
        if (way.Total.Compared)
            AddComparedRow(table, name, "Travel time, whole way", (*way.Total.Compared)[Measure::TravelTime], units);
    }
    return table;
}

std::vector<std::string> ComparedSentences(const Corridor& corridor, const CorridorResults& results,
                                           const Units& units) {
    std::vector<std::string> sentences;
    for (const WayFigures& way : results.Ways) {
        if (!way.Total.Compared) continue;
        const std::string& name = corridor.Of(way.Along).Name;
        const Comparison& times = (*way.Total.Compared)[Measure::TravelTime];
        sentences.push_back(name + ": " + ComparisonText(times, Measure::TravelTime, corridor.Options, units));
        constexpr double Part = 0.05;
        if (times.Welch.MeanBefore && *times.Welch.MeanBefore > 0) {
            const double seconds = Part * *times.Welch.MeanBefore;
            sentences.push_back(name + ": a difference of " + SecondsText(seconds) + " s (5 %) " +
                                RunsForDifferenceText(times.Sd, seconds, corridor.Options.Confidence) + ".");
        }
    }
    return sentences;
}

StatisticsTable NodeRunsTable(const Corridor& corridor, const std::vector<MatchedRun>& runs, const NodeFigures& figures,
                              const Units& units) {
    StatisticsTable table;
    table.TextColumns = 3;
    table.LastIsText = true;
    table.Heads = {"Run",
                   "Start",
                   "Condition",
                   "Control delay (s)",
                   "Grade",
                   "Stop delay (s)",
                   WithUnit("Band from", FigureUnit::Feet, units),
                   WithUnit("Band to", FigureUnit::Feet, units),
                   "Arrival in cycle (s)",
                   "On green",
                   "Node by",
                   "Remarks"};
    std::vector<std::size_t> all = figures.Runs;
    all.insert(all.end(), figures.Without.begin(), figures.Without.end());
    std::ranges::sort(all);
    for (const std::size_t index : all) {
        const MatchedRun& run = runs[index];
        const NodeDelay& delay = run.Delays[figures.Node];
        const StudyRunEntry& entry = delay.Row.Entry;
        const auto seconds = [&](std::int32_t value) {
            return delay.HasFigure() ? CountCell(value) : TextCell(NoValueText);
        };
        const auto feet = [&](std::int32_t value) {
            return delay.HasFigure() ? ValueCell(value, FigureUnit::Feet, 0, units) : TextCell(NoValueText);
        };
        const auto arrival = ArrivalAt(corridor, runs, index, figures.Node);
        const std::vector<std::string> remarks = RemarksOf(delay);
        table.Rows.push_back({TextCell(run.Measured.Name),
                              TextCell(ShortDate(run.Measured.RunDate) + " " + ShortTime(run.Measured.RunTime)),
                              TextCell(corridor.Runs[run.Index].IsBefore ? "before" : "after"),
                              seconds(entry.ControlDelay), TextCell(delay.HasFigure() ? entry.LOSGrade : NoValueText),
                              seconds(entry.StopDelay), feet(entry.CDStartDist), feet(entry.CDEndDist),
                              arrival ? CountCell(static_cast<int>(arrival->ArrivalInCycle)) : TextCell(NoValueText),
                              TextCell(!arrival             ? NoValueText
                                       : arrival->IsOnGreen ? "yes"
                                                            : "no"),
                              TextCell(WordOf(run.Match.Nodes[figures.Node].Source)), TextCell(Joined(remarks, "; "))});
    }
    return table;
}

StatisticsTable MatchTable(const Corridor& corridor, const MatchedRun& run, const Units& units) {
    StatisticsTable table;
    table.TextColumns = 2;
    table.LastIsText = true;
    table.Heads = {"Node",
                   "By",
                   "Second",
                   WithUnit("Distance", FigureUnit::Feet, units),
                   WithUnit("Beside", FigureUnit::Feet, units),
                   "Control delay (s)",
                   "Grade",
                   "Remarks"};
    if (!run.IsThere()) return table;
    for (std::size_t passed = 0; passed < corridor.Nodes.size(); ++passed) {
        const std::size_t node = NodeAlong(corridor, run.Match.Along, passed);
        const NodePassage& passage = run.Match.Nodes[node];
        const NodeDelay& delay = run.Delays[node];
        const bool isKnown = passage.IsKnown();
        table.Rows.push_back(
            {TextCell(corridor.Nodes[node].Name), TextCell(WordOf(passage.Source)),
             isKnown ? CountCell(passage.Sample) : TextCell(NoValueText),
             ValueCell(isKnown ? std::optional(passage.Feet) : std::nullopt, FigureUnit::Feet, 0, units),
             ValueCell(passage.Residual, FigureUnit::Feet, 0, units),
             delay.HasFigure() ? CountCell(delay.Row.Entry.ControlDelay) : TextCell(NoValueText),
             TextCell(delay.HasFigure() ? delay.Row.Entry.LOSGrade : NoValueText),
             TextCell(delay.HasFigure() ? Joined(delay.Row.Warnings, "; ") : delay.Problem)});
    }
    return table;
}

}  // namespace vantor
