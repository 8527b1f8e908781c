#include "statistics/StatisticsTables.h"

#include <algorithm>

#include "core/Numeric.h"
#include "core/Text.h"
#include "statistics/Figure.h"
#include "statistics/StatisticsCells.h"

namespace vantor {
namespace {

/// The value with its interval, without the unit, which the row's name has: "203.0 ± 16.3", "26.7 (24.7 to 29.0)".
StatisticsCell FigureCell(const Figure& figure, const Units& units) {
    StatisticsCell cell = ValueCell(figure.Value, figure.Unit, figure.Decimals, units);
    cell.IsWeak = figure.Value && figure.IsWeak;
    cell.Note = figure.Remarks();
    if (!figure.Value || !figure.Low) return cell;
    const auto number = [&](double value) { return ShownNumber(value, figure.Unit, figure.Decimals, units); };
    cell.Number.reset();
    if (figure.HalfWidth)
        cell.Text += " ± " + number(*figure.HalfWidth);
    else
        cell.Text += " (" + number(*figure.Low) + " to " + number(*figure.High) + ")";
    cell.Note = "interval " + figure.Interval(units) + "; " + cell.Note;
    return cell;
}

/// What stands in the last column: what qualifies the figure, but for what all figures rest on.
std::string RemarksOf(const Figure& figure) {
    std::vector<std::string> remarks = figure.Conditions;
    remarks.insert(remarks.end(), figure.Warnings.begin(), figure.Warnings.end());
    return Joined(remarks, "; ");
}

struct Column {
    std::string Head;
    const GroupStatistics* Group;
};

/// Rows of the same figure of each group.
class SummaryRows {
public:
    SummaryRows(StatisticsTable& table, std::vector<Column> columns, const Units& units)
        : table_(table), columns_(std::move(columns)), units_(units) {
        table_.Heads = {"Figure"};
        for (const Column& column : columns_) table_.Heads.push_back(column.Head);
        table_.Heads.emplace_back("Remarks");
        table_.LastIsText = true;
    }

    template <class Make>
    void AddFigure(Make make) {
        const Figure first = make(*columns_.front().Group);
        auto& row = Begin(WithUnit(first.Name, first.Unit, units_));
        for (const Column& column : columns_) row.push_back(FigureCell(make(*column.Group), units_));
        row.push_back({RemarksOf(first)});
    }
    template <class Make>
    void AddFigures(Make make) {
        const std::size_t count = make(*columns_.front().Group).size();
        for (std::size_t i = 0; i < count; ++i) AddFigure([&](const GroupStatistics& group) { return make(group)[i]; });
    }
    template <class Text>
    void AddText(const std::string& name, Text text, const std::string& remark = {}) {
        auto& row = Begin(name);
        for (const Column& column : columns_) row.push_back(text(*column.Group));
        row.push_back({remark});
    }

private:
    std::vector<StatisticsCell>& Begin(const std::string& name) { return table_.Rows.emplace_back(1, TextCell(name)); }

    StatisticsTable& table_;
    std::vector<Column> columns_;
    const Units& units_;
};

StatisticsCell NeededCell(const GroupStatistics& group, Measure measure, const StatisticsOptions& options,
                          const Units& units) {
    const RunsNeeded& needed = group.Needed[measure];
    const std::string sentence = RunsNeededText(group, measure, options, units);
    if (!needed.Needed) return TextCell(NoValueText, sentence);
    const std::string count = std::to_string(*needed.Needed) + ", ";
    if (*needed.StillNeeded > 0) return TextCell(count + std::to_string(*needed.StillNeeded) + " more", sentence);
    return TextCell(count + (needed.Enough ? "enough" : "0 more"), sentence);
}

void AddNeeded(SummaryRows& rows, const GroupStatistics& all, const StatisticsOptions& options, const Units& units) {
    const std::string remark =
        all.N < FewRuns ? "fewer than " + std::to_string(FewRuns) + " runs are never called enough" : std::string();
    for (const Measure measure : {Measure::TravelTime, Measure::ControlDelay, Measure::TravelSpeed}) {
        const std::string name = "Runs for ±" + PermittedErrorText(ErrorOf(measure, options), measure, units) + " of " +
                                 FoldCase(KindOf(measure).Name);
        rows.AddText(
            name, [&](const GroupStatistics& group) { return NeededCell(group, measure, options, units); }, remark);
    }
}

/// "E (E to F)", "F" where the interval is all of that grade.
std::string LettersOf(const GradeSpan& grades) {
    const std::string mean(1, grades.OfMean);
    return grades.Text() == mean ? mean : mean + " (" + grades.Text() + ")";
}

StatisticsCell GradeCell(const GroupStatistics& group, const GradeScale& scale) {
    const Summary& delay = group.Of[Measure::ControlDelay];
    const auto grades = GradesOf(delay, scale);
    if (!grades) return {NoValueText};
    const std::string mean(1, grades->OfMean);
    const std::string value = FixedDecimals(*delay.Mean, DecimalsBesideGrade(*delay.Mean, 1, scale)) + " s is " + mean;
    if (!delay.HalfWidth) return TextCell(mean, value);
    return TextCell(LettersOf(*grades), value + "; over its interval " + grades->Text());
}

StatisticsCell StreetCell(const GroupStatistics& group, const StatisticsOptions& options) {
    if (!group.AverageTravelSpeed || !options.FreeFlowSpeed) return {NoValueText};
    const auto grade = UrbanStreetGrade(*group.AverageTravelSpeed, *options.FreeFlowSpeed);
    if (!grade) return {NoValueText};
    const std::string mean(1, *grade);
    if (!group.SpeedLow) return TextCell(mean);
    const auto slow = UrbanStreetGrade(*group.SpeedLow, *options.FreeFlowSpeed);
    const auto fast = UrbanStreetGrade(*group.SpeedHigh, *options.FreeFlowSpeed);
    const GradeSpan span{*grade, *fast, *slow};
    return TextCell(LettersOf(span));
}

void AddGrades(SummaryRows& rows, const GroupStatistics& all, const StatisticsOptions& options, const Units& units) {
    const auto& delay = all.Of[Measure::ControlDelay].Mean;
    const auto add = [&](const char* name, const GradeScale& scale, const std::string& remark) {
        rows.AddText(
            name, [&](const GroupStatistics& group) { return GradeCell(group, scale); }, remark);
    };
    add("Grade of the study's scale", StudyGrade, delay ? GradeFootnote(*delay) : std::string());
    add("Grade, signals (HCM 6, 7)", SignalGrade, "of the mean of these runs; the manual grades all vehicles");
    add("Grade, stop control and roundabouts (HCM 6, 7)", StopGrade, "a run's delay at a roundabout holds the curve's");
    if (options.GradeLimits)
        add("Grade by your own limits", [&](double value) { return OwnGrade(value, *options.GradeLimits); }, {});
    rows.AddText(
        "Grade, urban street (HCM 6, 7)", [&](const GroupStatistics& group) { return StreetCell(group, options); },
        options.FreeFlowSpeed
            ? "by the overall travel speed and a base speed of " +
                  ShownNumber(*options.FreeFlowSpeed, FigureUnit::MilesPerHour, 1, units) + " " + units.SpeedLabel()
            : "no free-flow speed entered");
}

StatisticsCell OutlierCell(const GroupStatistics& group) {
    if (!group.Outlier) return {NoValueText};
    const std::string g = FixedDecimals(group.Outlier->G, 3);
    const std::string critical = FixedDecimals(group.Outlier->Critical, 3);
    if (!group.Outlier->IsOutlier())
        return TextCell(group.FarthestRun + ", no outlier", "G " + g + " is not above " + critical);
    return TextCell(group.FarthestRun + ", an outlier",
                    "G " + g + " is above " + critical + ": look at the run before you set it aside");
}

StatisticsCell MedianCell(const GroupStatistics& group, const Units& units) {
    const auto seconds = [&](double value) { return ShownNumber(value, FigureUnit::Seconds, 1, units); };
    StatisticsCell cell = ValueCell(group.Of[Measure::TravelTime].Median, FigureUnit::Seconds, 1, units);
    if (!group.MedianTime) return cell;
    const MedianInterval& between = *group.MedianTime;
    return TextCell(cell.Text + " (" + seconds(between.Low) + " to " + seconds(between.High) + ")",
                    FixedDecimals(between.Coverage, 1) + " % whatever the distribution");
}

std::vector<StatisticsCell> SectionRow(const std::string& name, const GroupStatistics& group,
                                       const StatisticsOptions& options, const Units& units) {
    const auto mean = [&](Measure measure, int decimals) {
        return ValueCell(group.Of[measure].Mean, KindOf(measure).Unit, decimals, units);
    };
    const auto percentile = [&](std::optional<double> value) {
        if (group.N >= LeastForPercentiles) return ValueCell(value, FigureUnit::Seconds, 1, units);
        return TextCell(NoValueText, "fewer than " + std::to_string(LeastForPercentiles) + " runs");
    };
    StatisticsCell runs = CountCell(group.Needed[Measure::TravelTime].Needed);
    runs.Note = RunsNeededText(group, Measure::TravelTime, options, units);
    return {TextCell(name),
            CountCell(group.N),
            ValueCell(group.MeanLength, FigureUnit::Feet, 0, units),
            mean(Measure::TravelTime, 1),
            ValueCell(group.Of[Measure::TravelTime].HalfWidth, FigureUnit::Seconds, 1, units),
            mean(Measure::RunningTime, 1),
            mean(Measure::StoppedTime, 1),
            ValueCell(group.AverageTravelSpeed, FigureUnit::MilesPerHour, 1, units),
            ValueCell(group.AverageRunningSpeed, FigureUnit::MilesPerHour, 1, units),
            ValueCell(group.PercentStopped, FigureUnit::Percent, 2, units),
            mean(Measure::Stops, 2),
            percentile(group.Times.P50),
            percentile(group.Times.P85),
            runs};
}

}  // namespace

std::vector<SheetRow> SheetOf(const StatisticsTable& table) {
    std::vector<SheetRow> rows;
    SheetRow& heads = rows.emplace_back();
    for (const std::string& head : table.Heads) heads.push_back({head});
    for (const auto& cells : table.Rows) {
        SheetRow& row = rows.emplace_back();
        for (const StatisticsCell& cell : cells)
            row.push_back({cell.Text == NoValueText ? std::string() : cell.Text, cell.Number.has_value()});
    }
    return rows;
}

std::string RowInWords(const StatisticsTable& table, std::size_t row) {
    const auto& cells = table.Rows.at(row);
    std::vector<std::string> lines{cells.front().Text};
    const std::string remark = table.LastIsText ? cells.back().Text : std::string();
    bool isTold = remark.empty();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i].Note.empty()) continue;
        isTold = isTold || cells[i].Note.ends_with(remark);
        lines.push_back(i == 0 ? cells[i].Note : table.Heads[i] + ": " + cells[i].Note);
    }
    if (!isTold) lines.insert(lines.begin() + 1, remark);
    return lines.size() > 1 ? Joined(lines, "\n") : std::string();
}

StatisticsTable SummaryTable(const GroupedStatistics& whole, const StatisticsOptions& options, const std::string& what,
                             const Units& units) {
    StatisticsTable table;
    std::vector<Column> columns{{what, &whole.All}};
    if (whole.HasBoth()) {
        columns.push_back({"Before", &whole.Before});
        columns.push_back({"After", &whole.After});
    }
    SummaryRows rows(table, columns, units);
    if (whole.All.N == 0) return table;
    rows.AddText("Runs",
                 [](const GroupStatistics& group) { return TextCell(std::to_string(group.N), group.RestsOn.Text()); });
    for (const Measure measure : AllMeasures)
        rows.AddFigure([&](const GroupStatistics& group) { return MeanFigure(group, measure, options); });
    rows.AddText(
        "Median travel time (s)", [&](const GroupStatistics& group) { return MedianCell(group, units); },
        whole.All.MedianTime ? FixedDecimals(whole.All.MedianTime->Coverage, 1) + " % whatever the distribution"
                             : std::string());
    rows.AddFigures([&](const GroupStatistics& group) { return SpeedFigures(group, options, units); });
    AddNeeded(rows, whole.All, options, units);
    AddGrades(rows, whole.All, options, units);
    rows.AddFigures([&](const GroupStatistics& group) { return ReliabilityFigures(group, options); });
    rows.AddText("Farthest from the mean travel time (Grubbs)", OutlierCell,
                 whole.All.Outlier ? OutlierCell(whole.All).Note
                                   : "from " + std::to_string(LeastForGrubbs) + " runs that scatter");
    return table;
}

void AddRunsSoFar(StatisticsTable& summary, const std::vector<MeasuredRun>& runs, const StatisticsOptions& options,
                  const Units& units) {
    if (runs.size() < 2 || runs.size() > MostRunsSoFar) return;
    for (const RunsSoFar& soFar : TravelTimesSoFar(runs, options)) {
        const auto seconds = [&](double value) { return ShownNumber(value, FigureUnit::Seconds, 1, units); };
        const std::string interval = soFar.Of.HalfWidth ? " ± " + seconds(*soFar.Of.HalfWidth) : std::string();
        auto& row = summary.Rows.emplace_back();
        row.push_back(TextCell("Travel time after run " + std::to_string(soFar.Of.N) + " (s)"));
        row.push_back(TextCell(seconds(*soFar.Of.Mean) + interval));
        while (row.size() + 1 < summary.Heads.size()) row.push_back(TextCell({}));
        const std::string needed =
            soFar.Needed.Needed ? std::to_string(*soFar.Needed.Needed) + " runs needed" : std::string();
        row.push_back(TextCell(soFar.Needed.Enough ? needed + ", enough" : needed));
    }
}

StatisticsTable ScatterTable(const GroupStatistics& group, const Units& units) {
    StatisticsTable table;
    table.Heads = {"Scatter", "Runs", "Standard deviation", "Percent of the mean", "Least", "Median", "Most"};
    for (const Measure measure : AllMeasures) {
        const Summary& of = group.Of[measure];
        const MeasureKind& kind = KindOf(measure);
        const auto value = [&](std::optional<double> number) { return ValueCell(number, kind.Unit, 1, units); };
        table.Rows.push_back(
            {TextCell(WithUnit(kind.Name, kind.Unit, units)), CountCell(of.N), value(of.Sd),
             ValueCell(of.Cv ? std::optional(100 * *of.Cv) : std::nullopt, FigureUnit::Percent, 1, units),
             value(of.Min), value(of.Median), value(of.Max)});
    }
    return table;
}

StatisticsTable RunsSoFarTable(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options,
                               const Units& units) {
    StatisticsTable table;
    table.Heads = {"Last run", "Runs", "Mean (s)", "± (s)", "Runs needed", "More"};
    if (runs.size() > MostRunsSoFar) return table;
    std::size_t last = 0;
    for (const RunsSoFar& soFar : TravelTimesSoFar(runs, options)) {
        const auto seconds = [&](std::optional<double> value) {
            return ValueCell(value, FigureUnit::Seconds, 1, units);
        };
        table.Rows.push_back({TextCell(runs[last++].Name), CountCell(soFar.Of.N), seconds(soFar.Of.Mean),
                              seconds(soFar.Of.HalfWidth), CountCell(soFar.Needed.Needed),
                              soFar.Needed.Enough ? TextCell("enough") : CountCell(soFar.Needed.StillNeeded)});
    }
    return table;
}

StatisticsTable SectionsTable(const StudyStatistics& statistics, const Units& units) {
    const StatisticsOptions& options = statistics.Options;
    StatisticsTable table;
    const std::string speed = units.SpeedLabel();
    table.Heads = {"Section",
                   "n",
                   std::string("Length (") + units.LengthLabel() + ")",
                   "Travel time (s)",
                   "± (s)",
                   "Running (s)",
                   "Stopped (s)",
                   "Travel " + speed,
                   "Running " + speed,
                   "Stopped (%)",
                   "Stops",
                   "P50 (s)",
                   "P85 (s)",
                   "Runs needed"};
    if (statistics.Sections.empty()) return table;
    for (const SectionOverRuns& section : statistics.Sections)
        table.Rows.push_back(SectionRow(section.From + " - " + section.To, section.All, options, units));
    table.Rows.push_back(SectionRow("Whole run", statistics.OfMostNodes, options, units));
    table.HasTotal = true;
    return table;
}

}  // namespace vantor
