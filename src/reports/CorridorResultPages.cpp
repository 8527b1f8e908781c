#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/Text.h"
#include "core/Units.h"
#include "corridor/CorridorPlots.h"
#include "corridor/CorridorReportTables.h"
#include "corridor/SignalArrivals.h"
#include "reports/CorridorReport.h"
#include "reports/ReportParts.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

/// The columns that name a row stay with each part of a wide table.
constexpr std::size_t WayAndSection = 2;
/// The column that says what is compared.
constexpr std::size_t What = 1;

/// "All runs", "Period AM"; empty where all are the only part.
std::string HeadingOf(const CorridorReportData& data, const PartOfFindings& part) {
    if (data.Findings.size() == 1) return {};
    if (&part == &data.Findings.front()) return "All periods";
    return part.Filter.Period->empty() ? "Runs without a period" : "Period " + *part.Filter.Period;
}

/// What the report is on.
std::string SubjectText(const CorridorReportData& data) {
    const ReportedCorridor& corridor = *data.Of;
    const Units units = UnitsOf(data.Settings);
    const double length = corridor.Of.Nodes.empty() ? 0 : corridor.Of.Nodes.back().DistanceFt;
    std::string text = Counted(corridor.Of.Nodes.size(), "node") + " on " +
                       ShownNumber(length, FigureUnit::Feet, 0, units) + " " + units.LengthLabel() + ", " +
                       corridor.Of.Of(Way::Forward).Name + " and " + corridor.Of.Of(Way::Back).Name + ". ";
    std::size_t runs = 0;
    for (const WayFigures& way : data.All().All.Ways) runs += way.Runs.size();
    text += Counted(runs, "run") + " of " + std::to_string(corridor.Of.Runs.size());
    if (corridor.Filter.Period)
        text += ", those " +
                (corridor.Filter.Period->empty() ? "without a period" : "of the period " + *corridor.Filter.Period);
    if (corridor.Filter.Of == CorridorFilter::Condition::Before) text += ", those before";
    if (corridor.Filter.Of == CorridorFilter::Condition::After) text += ", those after";
    return text + ".";
}

/// "NB before, Oak St: B, 10.9 to 20.5 s, A to C when they are moved".
std::vector<std::string> GradesThatHang(const Corridor& corridor, const CorridorFindings& findings) {
    std::vector<std::string> lines;
    for (const FindingsRow& row : RowsOf(corridor, findings))
        for (const NodeFigures& node : row.Results->Of(row.Along).Nodes)
            if (node.Moved && node.Moved->ChangesGrade())
                lines.push_back(row.Name + ", " + corridor.Nodes[node.Node].Name + ": " +
                                node.AsStudy.LOSGrade.value_or("") + "; " + OneDecimal(node.Moved->Least) + " to " +
                                OneDecimal(node.Moved->Most) + " s, " + node.Moved->GradeOfLeast + " to " +
                                node.Moved->GradeOfMost);
    return lines;
}

/// They stand below the table.
StatisticsTable WithoutRemarks(StatisticsTable table) {
    table.LastIsText = false;
    table.Heads.pop_back();
    for (auto& row : table.Rows) row.pop_back();
    return table;
}

/// Gathers what weakens figures, so that each warning is said once with all its places: those of a row are told by its
/// name where it holds for all of them.
class Warnings {
public:
    void Add(const std::string& row, const std::string& place, const std::vector<std::string>& warnings) {
        ++counts_[row];
        for (const std::string& warning : warnings) {
            auto there = std::ranges::find(said_, warning, &Said::Warning);
            if (there == said_.end()) there = said_.insert(said_.end(), Said{warning, {}});
            auto& rows = there->Rows;
            if (rows.empty() || rows.back().first != row) rows.push_back({row, {}});
            rows.back().second.push_back(place);
        }
    }
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        for (const Said& said : said_) {
            std::vector<std::string> places;
            for (const auto& [row, of] : said.Rows)
                places.push_back(of.size() == counts_.at(row) ? row : row + " (" + Joined(of, ", ") + ")");
            lines.push_back(said.Warning + ": " + Joined(places, ", "));
        }
        return lines;
    }

private:
    struct Said {
        std::string Warning;
        std::vector<std::pair<std::string, std::vector<std::string>>> Rows;  ///< with the places
    };
    std::vector<Said> said_;
    std::map<std::string, std::size_t> counts_;  ///< places of a row
};

std::vector<std::string> WarningsOfDelays(const CorridorReportData& data) {
    const Corridor& corridor = data.Of->Of;
    Warnings warnings;
    for (const FindingsRow& row : RowsOf(corridor, data.All())) {
        for (const NodeFigures& node : row.Results->Of(row.Along).Nodes) {
            std::vector<std::string> of = node.Figures.Warnings;
            if (!node.Without.empty()) of.push_back(Counted(node.Without.size(), "run") + " without a figure");
            warnings.Add(row.Name, corridor.Nodes[node.Node].Name, of);
        }
        warnings.Add(row.Name, "travel time", row.Results->Of(row.Along).Total.Figures.Warnings);
    }
    std::vector<std::string> lines = data.All().All.Warnings;
    for (const std::string& line : warnings.Lines()) lines.push_back(line);
    return lines;
}

std::vector<std::string> WarningsOfSections(const Corridor& corridor, const CorridorFindings& findings) {
    Warnings warnings;
    for (const FindingsRow& row : RowsOf(corridor, findings)) {
        const WayFigures& way = row.Results->Of(row.Along);
        for (const SectionFigures& section : way.Sections)
            warnings.Add(row.Name, corridor.Nodes[section.From].Name + " to " + corridor.Nodes[section.To].Name,
                         section.Figures.Warnings);
        warnings.Add(row.Name, "whole way", way.Total.Figures.Warnings);
    }
    return warnings.Lines();
}

/// The rows of one measure, which then need not say it: "Travel time, Oak St to Elm Ave".
StatisticsTable OfMeasure(const StatisticsTable& compared, const std::string& measure) {
    const std::string begin = measure + ", ";
    StatisticsTable part = compared;
    part.Heads[What] = measure + " (s)";
    std::erase_if(part.Rows, [&](const auto& row) { return !row[What].Text.starts_with(begin); });
    for (auto& row : part.Rows) row[What].Text.erase(0, begin.size());
    return part;
}

/// Heads of several lines, and the rows that stay with them.
double HeightOfStart(const ReportPages& pages) { return 9 * pages.Measure().LineHeight(CellStyle) + SectionGap; }

void AddWayPlots(ReportPages& pages, const CorridorReportData& data, Way way, double height) {
    const ReportedCorridor& of = *data.Of;
    CorridorLook look;
    look.Shown = UnitsOf(data.Settings);
    AddPlot(pages, CorridorTimeSpacePlot(of.Of, of.Runs, of.Filter, way, TimeSpaceClock::FromStart, look), height);
    pages.Skip(SectionGap);
    AddPlot(pages, CorridorProfilePlot(of.Of, of.Runs, of.Filter, way, look), height);
}

}  // namespace

void AddCorridorDelays(ReportPages& pages, const CorridorReportData& data) {
    const Corridor& corridor = data.Of->Of;
    const Units units = UnitsOf(data.Settings);
    pages.AddText(SubjectText(data), BodyStyle);
    pages.Skip(SectionGap / 2);
    if (RowsOf(corridor, data.All()).empty())
        return pages.AddText("None of these runs can be read: there are no figures.", BodyStyle);
    for (const PartOfFindings& part : data.Findings) {
        const StatisticsTable table = DelayTable(corridor, part.Findings, units);
        if (table.Rows.empty()) continue;
        if (const std::string heading = HeadingOf(data, part); !heading.empty())
            pages.AddHeading(heading, HeightOfStart(pages));
        AddTable(pages, OnPaper(table));
        pages.Skip(SectionGap / 2);
    }
    pages.AddText("Below each node: the mean control delay in seconds, its grade, and ± half of its " +
                      ConfidenceText(corridor.Options.Confidence) +
                      " interval. In brackets: the grade is another one where the boundaries are moved by 100 ft or "
                      "the ideal speed by 2 mph. More runs: what the permitted error of the travel time takes.",
                  CaptionStyle);
    pages.Skip(SectionGap / 2);
    if (data.All().Before) AddLines(pages, "Before and after", ComparedSentences(corridor, data.All().All, units));
    AddLines(pages, "Grades that hang on the boundaries", GradesThatHang(corridor, data.All()));
    AddLines(pages, "Warnings", WarningsOfDelays(data));
    if (const std::size_t out = data.All().All.LeftOut.size(); out > 0)
        pages.AddText(
            Counted(out, "run") + (out == 1 ? " is" : " are") + " left out or set aside; the list of runs says why.",
            BodyStyle);
}

void AddCorridorSections(ReportPages& pages, const CorridorReportData& data) {
    pages.AddText("Means over the runs that pass both ends, with the " +
                      ConfidenceText(data.Of->Of.Options.Confidence) +
                      " interval of the travel time; speeds are the sum of the distances over the sum of the times.",
                  BodyStyle);
    pages.Skip(SectionGap / 2);
    for (const PartOfFindings& part : data.Findings) {
        const StatisticsTable table =
            WithoutRemarks(CorridorSectionsTable(data.Of->Of, part.Findings, UnitsOf(data.Settings)));
        if (table.Rows.empty()) continue;
        if (const std::string heading = HeadingOf(data, part); !heading.empty())
            pages.AddHeading(heading, HeightOfStart(pages));
        AddTable(pages, WithTexts(WithoutEmpty(OnPaper(table, "Running (s)")), {"Section"}), WayAndSection);
        pages.Skip(SectionGap / 2);
        for (const std::string& line : WarningsOfSections(data.Of->Of, part.Findings))
            pages.AddText(line, CaptionStyle);
        pages.Skip(SectionGap / 2);
    }
    const StatisticsTable arrivals = ArrivalsTable(data.Of->Of, data.Of->Runs, data.All());
    if (arrivals.Rows.empty()) return;
    pages.AddHeading("Arrivals on green", HeightOfStart(pages));
    AddTable(pages, WithTexts(OnPaper(arrivals), {"Node"}), WayAndSection);
    pages.AddText(
        "By the clock of the runs and the timings that were entered: a vehicle arrives where it begins to stand "
        "in the band, else where it passes the signal.",
        CaptionStyle);
}

void AddCorridorBeforeAfter(ReportPages& pages, const CorridorReportData& data) {
    const Corridor& corridor = data.Of->Of;
    const Units units = UnitsOf(data.Settings);
    if (!data.All().Before)
        return pages.AddText("The runs were driven all before the change that is studied, or all after it.", BodyStyle);
    for (const PartOfFindings& part : data.Findings) {
        const StatisticsTable table = CorridorComparedTable(corridor, part.Findings.All, units);
        if (table.Rows.empty()) continue;
        if (const std::string heading = HeadingOf(data, part); !heading.empty())
            pages.AddHeading(heading, HeightOfStart(pages));
        for (const std::string& sentence : ComparedSentences(corridor, part.Findings.All, units))
            pages.AddText(sentence, BodyStyle);
        pages.Skip(SectionGap / 2);
        for (const char* measure : {"Control delay", "Travel time"}) {
            const StatisticsTable of = OfMeasure(table, measure);
            AddTable(pages, WithTexts(OnPaper(of), {of.Heads[What]}), WayAndSection);
            pages.Skip(SectionGap / 2);
        }
    }
    pages.AddText(
        "Means in seconds; the difference is after less before, with its interval and Welch's p. p (Holm) is adjusted "
        "for the number of nodes or sections; p (ranks) is that of Mann and Whitney.",
        CaptionStyle);
}

void AddCorridorTimeSpace(ReportPages& pages, const CorridorReportData& data) {
    const ReportedCorridor& of = *data.Of;
    const double note = 3 * pages.Measure().LineHeight(CaptionStyle) + pages.Measure().LineHeight(SectionStyle);
    bool isFirst = true;
    for (const Way way : BothWays) {
        if (PlottedRunsOf(of.Of, of.Runs, of.Filter, way).empty()) continue;
        if (!isFirst) pages.Need(pages.WholePage());
        isFirst = false;
        pages.AddText(of.Of.Of(way).Name, SectionStyle);
        AddWayPlots(pages, data, way, (pages.Room() - note - 2 * SectionGap) / 2);
        pages.AddText(
            "Distances are stretched from node to node, so that the nodes of all runs lie at one place. Runs that are "
            "set aside are not drawn.",
            CaptionStyle);
    }
    if (isFirst) pages.AddText("No run of this corridor can be read: there is nothing to draw.", BodyStyle);
}

void AddCorridorMap(ReportPages& pages, const CorridorReportData& data) {
    if (data.Map.Tracks.empty())
        return pages.AddText("No run of this corridor has positions, as runs of counters have none.", BodyStyle);
    const auto runs =
        std::ranges::count_if(data.Of->Runs, [&](const MatchedRun& run) { return data.Of->Filter.Takes(run); });
    AddMapPicture(pages, data.Map, data.UnderMap, static_cast<std::size_t>(runs));
}

void AddCorridorSensitivity(ReportPages& pages, const CorridorReportData& data) {
    pages.AddText(
        "Each delay is computed again with its boundaries moved outwards and inwards by 100 ft, and with ideal speeds "
        "2 mph higher and lower: the least and the most of these means, and the grades that they would have. A run "
        "whose boundary cannot be moved so stays as it is.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    for (const PartOfFindings& part : data.Findings) {
        const StatisticsTable table = SensitivityTable(data.Of->Of, part.Findings, UnitsOf(data.Settings));
        if (table.Rows.empty()) continue;
        if (const std::string heading = HeadingOf(data, part); !heading.empty())
            pages.AddHeading(heading, HeightOfStart(pages));
        AddTable(pages, WithTexts(WithoutEmpty(OnPaper(table)), {"Node"}), WayAndSection);
        pages.Skip(SectionGap / 2);
    }
}

}  // namespace vantor
