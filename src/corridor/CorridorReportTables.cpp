#include "corridor/CorridorReportTables.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "core/ContentHash.h"
#include "core/Counted.h"
#include "core/JsonFacts.h"
#include "core/Text.h"
#include "corridor/CorridorWords.h"
#include "statistics/Figure.h"
#include "statistics/StatisticsCells.h"

namespace vantor {
namespace {

/// The figures of each way and condition at each node in turn.
template <class Add>
void ForEachNode(const Corridor& corridor, const CorridorFindings& findings, Add add) {
    for (const FindingsRow& row : RowsOf(corridor, findings))
        for (const NodeFigures& node : row.Results->Of(row.Along).Nodes) add(row, node);
}

StatisticsCell SecondsCell(std::optional<double> seconds, const Units& units) {
    return ValueCell(seconds, FigureUnit::Seconds, 1, units);
}

StatisticsCell NeededCell(const RunsNeeded& needed) {
    return needed.StillNeeded ? CountCell(*needed.StillNeeded) : TextCell(NoValueText);
}

/// A whole number that a study's label has.
StatisticsCell LabelCell(const std::optional<std::string>& label, const Units& units) {
    if (!label || label->empty()) return TextCell(NoValueText);
    return ValueCell(std::stod(*label), FigureUnit::Seconds, 0, units);
}

std::string TimeText(Date time) {
    return IsValidDate(time) && time.Days > 0 ? ShortDate(time) + " " + ShortTime(time) : std::string(NoValueText);
}

/// "Distance (ft)".
StatisticsCell FeetCell(std::optional<double> feet, const Units& units) {
    return ValueCell(feet, FigureUnit::Feet, 0, units);
}

std::vector<StatisticsCell> SectionCells(const std::string& way, const std::string& name, const GroupStatistics& group,
                                         const Units& units) {
    const Summary& time = group.Of[Measure::TravelTime];
    const auto plain = [&](std::optional<double> value) { return ValueCell(value, FigureUnit::None, 2, units); };
    const auto speed = [&](std::optional<double> value) {
        return ValueCell(value, FigureUnit::MilesPerHour, 1, units);
    };
    return {TextCell(way),
            TextCell(name),
            CountCell(group.N),
            FeetCell(group.MeanLength, units),
            SecondsCell(time.Mean, units),
            SecondsCell(time.Low, units),
            SecondsCell(time.High, units),
            SecondsCell(group.Of[Measure::RunningTime].Mean, units),
            SecondsCell(group.Of[Measure::StoppedTime].Mean, units),
            plain(group.Of[Measure::Stops].Mean),
            speed(group.AverageTravelSpeed),
            speed(group.AverageRunningSpeed),
            SecondsCell(group.Times.P50, units),
            SecondsCell(group.Times.P85, units),
            plain(group.Times.TravelTimeIndex),
            NeededCell(group.Needed[Measure::TravelTime]),
            TextCell(Joined(group.Warnings, "; "))};
}

std::vector<StatisticsCell> ComparedCells(const std::string& way, const std::string& measure, const std::string& where,
                                          const Comparison& of, const Units& units) {
    const WelchTest& welch = of.Welch;
    const auto plain = [&](std::optional<double> value) { return ValueCell(value, FigureUnit::None, 4, units); };
    return {TextCell(way),
            TextCell(measure),
            TextCell(where),
            CountCell(welch.NBefore),
            CountCell(welch.NAfter),
            SecondsCell(welch.MeanBefore, units),
            SecondsCell(welch.MeanAfter, units),
            SecondsCell(welch.Difference, units),
            plain(welch.Percent),
            SecondsCell(welch.Low, units),
            SecondsCell(welch.High, units),
            plain(welch.P),
            plain(of.HolmP),
            plain(of.Ranks.P)};
}

std::vector<std::string> RemarksOf(const ReportedCorridor& corridor, const MatchedRun& run) {
    const CorridorRun& as = corridor.Of.Runs[run.Index];
    if (!run.IsThere()) return {run.Problem};
    std::vector<std::string> remarks;
    if (!as.SetAside.empty()) remarks.push_back("set aside: " + as.SetAside);
    remarks.insert(remarks.end(), run.Remarks.begin(), run.Remarks.end());
    return remarks;
}

std::vector<StatisticsCell> NodeOfRunCells(const ReportedCorridor& corridor, const MatchedRun& run, std::size_t node,
                                           const Units& units) {
    const CorridorRun& as = corridor.Of.Runs[run.Index];
    const NodePassage& passage = run.Match.Nodes[node];
    const NodeDelay& delay = run.Delays[node];
    const bool isKnown = passage.IsKnown();
    const bool hasFigure = delay.HasFigure();
    const auto feet = [&](double value, bool isThere) {
        return FeetCell(isThere ? std::optional(value) : std::nullopt, units);
    };
    const auto seconds = [&](std::int32_t value) {
        return ValueCell(hasFigure ? std::optional<double>(value) : std::nullopt, FigureUnit::Seconds, 0, units);
    };
    const std::vector<std::string> remarks = RemarksOf(delay);
    return {TextCell(as.Name),
            TextCell(as.Group),
            TextCell(corridor.Of.Of(run.Match.Along).Name),
            TextCell(as.IsBefore ? "before" : "after"),
            TextCell(corridor.Of.Nodes[node].Name),
            TextCell(WordOf(passage.Source)),
            isKnown ? CountCell(passage.Sample) : TextCell(NoValueText),
            feet(passage.Feet, isKnown),
            FeetCell(passage.Residual, units),
            feet(delay.Measured.StartFt, isKnown),
            feet(delay.Measured.EndFt, isKnown),
            seconds(delay.Row.Entry.ControlDelay),
            TextCell(hasFigure ? delay.Row.Entry.LOSGrade : NoValueText),
            seconds(delay.Row.Entry.StopDelay),
            TextCell(Joined(remarks, "; "))};
}

}  // namespace

StatisticsTable NodeDelaysTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units) {
    StatisticsTable table;
    table.LastIsText = true;
    table.Heads = {"Way",
                   "Node",
                   "Runs",
                   "Control delay (s)",
                   "Interval from (s)",
                   "Interval to (s)",
                   "Whole (s)",
                   "Grade",
                   "Stop delay (s)",
                   "More runs",
                   "Remarks"};
    ForEachNode(corridor, findings, [&](const FindingsRow& row, const NodeFigures& node) {
        const Summary& delay = node.Figures.Of[Measure::ControlDelay];
        std::vector<std::string> remarks = node.Figures.Warnings;
        if (!node.Without.empty()) remarks.push_back(Counted(node.Without.size(), "run") + " without a figure");
        table.Rows.push_back({TextCell(row.Name), TextCell(corridor.Nodes[node.Node].Name), CountCell(delay.N),
                              SecondsCell(delay.Mean, units), SecondsCell(delay.Low, units),
                              SecondsCell(delay.High, units), LabelCell(node.AsStudy.AvgControlDelay, units),
                              TextCell(node.AsStudy.LOSGrade.value_or(NoValueText)),
                              SecondsCell(node.StopDelay.Mean, units),
                              NeededCell(node.Figures.Needed[Measure::ControlDelay]), TextCell(Joined(remarks, "; "))});
    });
    return table;
}

StatisticsTable SectionFiguresTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units) {
    StatisticsTable table;
    table.LastIsText = true;
    table.Heads = {"Way",
                   "Section",
                   "Runs",
                   WithUnit("Length", FigureUnit::Feet, units),
                   "Travel time (s)",
                   "Interval from (s)",
                   "Interval to (s)",
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
            table.Rows.push_back(SectionCells(row.Name, SectionName(corridor, section), section.Figures, units));
        table.Rows.push_back(SectionCells(row.Name, "Whole way", way.Total.Figures, units));
    }
    return table;
}

StatisticsTable ComparedFiguresTable(const Corridor& corridor, const CorridorResults& results, const Units& units) {
    StatisticsTable table;
    table.Heads = {"Way",        "Measure", "Where",    "Runs before", "Runs after", "Before (s)", "After (s)",
                   "Difference", "Percent", "From (s)", "To (s)",      "p (Welch)",  "p (Holm)",   "p (ranks)"};
    for (const WayFigures& way : results.Ways) {
        const auto add = [&](const char* measure, const std::string& where, const Comparison& of) {
            table.Rows.push_back(ComparedCells(corridor.Of(way.Along).Name, measure, where, of, units));
        };
        for (const NodeFigures& node : way.Nodes)
            if (node.Compared) add("Control delay", corridor.Nodes[node.Node].Name, *node.Compared);
        for (const SectionFigures& section : way.Sections)
            if (section.Compared)
                add("Travel time", SectionName(corridor, section), (*section.Compared)[Measure::TravelTime]);
        if (way.Total.Compared) add("Travel time", "Whole way", (*way.Total.Compared)[Measure::TravelTime]);
    }
    return table;
}

StatisticsTable SensitivityTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units) {
    StatisticsTable table;
    table.LastIsText = true;
    table.Heads = {"Way",       "Node",     "Runs",           "Control delay (s)", "Grade",
                   "Least (s)", "Most (s)", "Grade of least", "Grade of most",     "Remarks"};
    ForEachNode(corridor, findings, [&](const FindingsRow& row, const NodeFigures& node) {
        if (!node.Moved) return;
        const Summary& delay = node.Figures.Of[Measure::ControlDelay];
        table.Rows.push_back({TextCell(row.Name), TextCell(corridor.Nodes[node.Node].Name), CountCell(delay.N),
                              SecondsCell(delay.Mean, units), TextCell(node.AsStudy.LOSGrade.value_or(NoValueText)),
                              SecondsCell(node.Moved->Least, units), SecondsCell(node.Moved->Most, units),
                              TextCell(std::string(1, node.Moved->GradeOfLeast)),
                              TextCell(std::string(1, node.Moved->GradeOfMost)),
                              TextCell(node.Moved->ChangesGrade() ? "the grade changes" : "")});
    });
    return table;
}

StatisticsTable RunsTable(const ReportedCorridor& corridor) {
    StatisticsTable table;
    table.LastIsText = true;
    table.Heads = {"Run", "Group", "Way", "Condition", "Period", "Start", "Nodes", "Movement", "Track", "Remarks"};
    for (const MatchedRun& run : corridor.Runs) {
        const CorridorRun& as = corridor.Of.Runs[run.Index];
        const bool isThere = run.IsThere();
        const std::string period = run.Period.empty() ? NoValueText : run.Period;
        const std::string start =
            isThere ? ShortDate(run.Measured.RunDate) + " " + ShortTime(run.Measured.RunTime) : NoValueText;
        table.Rows.push_back(
            {TextCell(as.Name), TextCell(as.Group), TextCell(corridor.Of.Of(isThere ? run.Match.Along : as.Along).Name),
             TextCell(as.IsBefore ? "before" : "after"), TextCell(period), TextCell(start),
             isThere ? CountCell(static_cast<int>(KnownNodes(run.Match.Nodes))) : TextCell(NoValueText),
             TextCell(isThere ? HashText(MovementHash(run.Read->Run)) : NoValueText),
             TextCell(as.Source ? as.Source->File : NoValueText), TextCell(Joined(RemarksOf(corridor, run), "; "))});
    }
    return table;
}

StatisticsTable NodesOfRunsTable(const ReportedCorridor& corridor, const Units& units) {
    StatisticsTable table;
    table.LastIsText = true;
    table.Heads = {"Run",
                   "Group",
                   "Way",
                   "Condition",
                   "Node",
                   "By",
                   "Second",
                   WithUnit("Distance", FigureUnit::Feet, units),
                   WithUnit("Beside", FigureUnit::Feet, units),
                   WithUnit("Band from", FigureUnit::Feet, units),
                   WithUnit("Band to", FigureUnit::Feet, units),
                   "Control delay (s)",
                   "Grade",
                   "Stop delay (s)",
                   "Remarks"};
    for (const MatchedRun& run : corridor.Runs) {
        if (!run.IsThere()) continue;
        for (std::size_t passed = 0; passed < corridor.Of.Nodes.size(); ++passed)
            table.Rows.push_back(NodeOfRunCells(corridor, run, NodeAlong(corridor.Of, run.Match.Along, passed), units));
    }
    return table;
}

StatisticsTable MatchSourcesTable(const ReportedCorridor& corridor) {
    constexpr std::array Sources = {MatchSource::Position, MatchSource::Mark, MatchSource::Distance, MatchSource::User,
                                    MatchSource::None};
    StatisticsTable table;
    table.Heads = {"Way", "Runs", "By position", "By mark", "By distance", "By user", "Not passed"};
    for (const Way way : BothWays) {
        int runs = 0;
        std::array<int, Sources.size()> counts{};
        for (const MatchedRun& run : corridor.Runs) {
            if (!corridor.Filter.Takes(run) || run.Match.Along != way) continue;
            if (!corridor.Of.Runs[run.Index].SetAside.empty()) continue;
            ++runs;
            for (std::size_t i = 0; i < Sources.size(); ++i)
                counts[i] += static_cast<int>(std::ranges::count(run.Match.Nodes, Sources[i], &NodePassage::Source));
        }
        if (runs == 0) continue;
        auto& row = table.Rows.emplace_back();
        row.push_back(TextCell(corridor.Of.Of(way).Name));
        row.push_back(CountCell(runs));
        for (const int count : counts) row.push_back(CountCell(count));
    }
    return table;
}

StatisticsTable BandsTable(const Corridor& corridor, const Units& units) {
    StatisticsTable table;
    table.LastIsText = true;
    table.Heads = {"Node",
                   WithUnit("Distance", FigureUnit::Feet, units),
                   WithUnit("Band before", FigureUnit::Feet, units),
                   WithUnit("Band behind", FigureUnit::Feet, units),
                   "Runs with their own band",
                   "Control"};
    for (std::size_t node = 0; node < corridor.Nodes.size(); ++node) {
        const CorridorNode& at = corridor.Nodes[node];
        const auto own = std::ranges::count_if(corridor.Runs, [&](const CorridorRun& run) {
            return std::ranges::find(run.OwnBands, node, &OwnBand::Node) != run.OwnBands.end();
        });
        table.Rows.push_back({TextCell(at.Name), FeetCell(at.DistanceFt, units), FeetCell(at.Around.UpstreamFt, units),
                              FeetCell(at.Around.DownstreamFt, units), CountCell(static_cast<int>(own)),
                              TextCell(WordOf(at.Control))});
    }
    return table;
}

StatisticsTable TracksTable(const Corridor& corridor) {
    struct Track {
        TrackSource Of;
        int Runs = 0;
    };
    std::vector<Track> tracks;
    for (const CorridorRun& run : corridor.Runs) {
        if (!run.Source) continue;
        const auto isOf = [&](const Track& track) {
            return track.Of.File == run.Source->File && track.Of.Hash == run.Source->Hash;
        };
        auto there = std::ranges::find_if(tracks, isOf);
        if (there == tracks.end()) there = tracks.insert(tracks.end(), {*run.Source, 0});
        ++there->Runs;
        there->Of.From.Days = std::min(there->Of.From.Days, run.Source->From.Days);
        there->Of.To.Days = std::max(there->Of.To.Days, run.Source->To.Days);
    }
    StatisticsTable table;
    table.Heads = {"Track file", "Hash", "Runs", "From", "To"};
    for (const Track& track : tracks)
        table.Rows.push_back({TextCell(track.Of.File), TextCell(HashText(track.Of.Hash)), CountCell(track.Runs),
                              TextCell(TimeText(track.Of.From)), TextCell(TimeText(track.Of.To))});
    return table;
}

}  // namespace vantor
