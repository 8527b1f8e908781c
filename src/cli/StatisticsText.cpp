#include "cli/StatisticsText.h"

#include <ostream>

#include "core/Text.h"
#include "statistics/Figure.h"
#include "statistics/StatisticsTables.h"

namespace vantor {
namespace {

/// Prints what is said of some runs.
class Printer {
public:
    Printer(const CommandContext& context, const StatisticsOptions& options)
        : context_(context), options_(options), units_(UnitsOf(context.State.Settings)) {}

    void Line(const std::string& text = {}) const { context_.Out << Printable(text) << '\n'; }
    void Lines(const std::vector<std::string>& texts) const {
        for (const std::string& text : texts) Line(text);
    }

    void Conditions() const {
        const auto mph = [&](double value) { return ShownNumber(value, FigureUnit::MilesPerHour, 1, units_); };
        Line("Confidence " + ConfidenceText(options_.Confidence) + "; permitted error " +
             PermittedErrorText(options_.Error, Measure::TravelTime, units_) + ", of speeds " +
             mph(options_.SpeedError) + " " + units_.SpeedLabel() + "; stopped below " + mph(options_.Stops.Stop) +
             ", until " + mph(options_.Stops.Go) + " " + units_.SpeedLabel() + "; free flow " +
             (options_.FreeFlowSpeed ? mph(*options_.FreeFlowSpeed) + " " + units_.SpeedLabel() : "not entered"));
    }

    void Table(const StatisticsTable& table) const { PrintTable(context_, table); }

    void Group(const std::string& title, const GroupStatistics& group) const {
        Line();
        Line(title + ": " + group.RestsOn.Text());
        Lines(group.Warnings);
    }

    void Summary(const std::string& title, const GroupedStatistics& whole) const {
        Group(title, whole.All);
        Table(SummaryTable(whole, options_, title, units_));
        Table(ScatterTable(whole.All, units_));
    }

    void Compared(const GroupedStatistics& whole, const std::vector<SectionOverRuns>& sections) const {
        Table(ComparedTable(whole, options_, units_));
        for (const Measure measure : AllMeasures)
            if (const Comparison& each = whole.Compared[measure]; each.Welch.NBefore + each.Welch.NAfter > 0)
                Line(ComparisonText(each, measure, options_, units_));
        Lines(whole.Warnings);
        if (sections.size() > 1) Table(ComparedSectionsTable(sections, options_, units_));
    }

    void Runs(const std::vector<MeasuredRun>& runs) const {
        Json rows = Json::array();
        for (const MeasuredRun& run : runs) rows.push_back(RunRow(run));
        Line();
        context_.Print(rows);
    }

    const Units& Shown() const { return units_; }

private:
    std::string Value(std::optional<double> value, FigureUnit unit, int decimals) const {
        return value ? ShownNumber(*value, unit, decimals, units_) : NoValueText;
    }

    Json RunRow(const MeasuredRun& run) const {
        const PieceMeasures& whole = run.Measures.Whole;
        return {{"Run", run.Name},
                {"Date", IsValidDate(run.RunDate) ? ShortDate(run.RunDate) : std::string()},
                {"Time", IsValidDate(run.RunTime) ? ShortTime(run.RunTime) : std::string()},
                {"Before/After", run.IsBefore ? "Before" : "After"},
                {"Period", run.Period},
                {"Direction", run.Direction},
                {"Travel time (s)", whole.TravelTime},
                {"Length (" + std::string(units_.LengthLabel()) + ")", Value(whole.Distance, FigureUnit::Feet, 0)},
                {"Stopped (s)", whole.StoppedTime},
                {"Stops", whole.Stops},
                {std::string(units_.SpeedLabel()), Value(whole.TravelSpeed(), FigureUnit::MilesPerHour, 1)},
                {"Control delay (s)", Value(run.ValueOf(Measure::ControlDelay), FigureUnit::Seconds, 0)},
                {"Nodes", run.Nodes()},
                {"Set aside", run.SetAside}};
    }

    const CommandContext& context_;
    const StatisticsOptions& options_;
    Units units_;
};

}  // namespace

void PrintTable(const CommandContext& context, const StatisticsTable& table) {
    if (table.Rows.empty()) return;
    Json rows = Json::array();
    for (const auto& cells : table.Rows) {
        Json& row = rows.emplace_back();
        for (std::size_t i = 0; i < cells.size(); ++i)
            row[table.Heads[i]] = cells[i].IsWeak ? "(" + cells[i].Text + ")" : cells[i].Text;
    }
    context.Out << '\n';
    context.Print(rows);
}

void PrintStatistics(const CommandContext& context, const StudyFigures& figures) {
    const StudyStatistics& statistics = figures.All;
    const GroupedStatistics& whole = statistics.Whole;
    const Printer printer(context, statistics.Options);
    printer.Line(figures.Name);
    printer.Conditions();
    printer.Lines(statistics.Warnings);
    if (figures.Read.Runs.empty()) return;
    printer.Runs(figures.Read.Runs);
    printer.Summary("All runs", whole);
    if (figures.Without)
        printer.Summary("Without " + std::to_string(whole.All.N - figures.Without->Whole.All.N) + " set aside",
                        figures.Without->Whole);
    printer.Table(RunsSoFarTable(figures.Read.Runs, statistics.Options, printer.Shown()));
    printer.Table(SectionsTable(statistics, printer.Shown()));
    if (!whole.HasBoth()) return;
    printer.Group("Before", whole.Before);
    printer.Group("After", whole.After);
    printer.Compared(whole, statistics.SectionsComparable ? statistics.Sections : std::vector<SectionOverRuns>());
}

void PrintConditions(const CommandContext& context, const std::vector<ConditionStatistics>& conditions,
                     const StatisticsOptions& options) {
    const Printer printer(context, options);
    printer.Conditions();
    printer.Table(ConditionsTable(conditions, options, printer.Shown()));
    for (const ConditionStatistics& condition : conditions)
        for (const std::string& remark : condition.Remarks) printer.Line(condition.Name + ": " + remark);
    for (std::size_t i = 1; i < conditions.size(); ++i) {
        printer.Line();
        printer.Line(conditions[i].Name + " against " + conditions.front().Name + ":");
        printer.Compared(AgainstFirst(conditions, i), conditions[i].Sections);
    }
}

}  // namespace vantor
