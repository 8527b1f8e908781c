#include "cli/StatisticsText.h"

#include <ostream>

#include "core/Numeric.h"
#include "core/Text.h"
#include "statistics/Figure.h"

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

    void Measures(const std::string& title, const GroupStatistics& group) const {
        Line();
        Line(title + ": " + group.RestsOn.Text());
        Lines(group.Warnings);
        Json rows = Json::array();
        for (const Measure measure : AllMeasures)
            if (group.Of[measure].N > 0) rows.push_back(MeasureRow(group, measure));
        if (!rows.empty()) context_.Print(rows);
    }

    void More(const GroupStatistics& group) const {
        Line();
        if (group.Of[Measure::ControlDelay].N > 0) Grades(group);
        for (const Measure measure : {Measure::TravelTime, Measure::ControlDelay, Measure::TravelSpeed})
            if (group.Of[measure].N > 0)
                Line(std::string(KindOf(measure).Name) + ": " + RunsNeededText(group, measure, options_, units_) + ".");
        if (group.Outlier)
            Line("Farthest from the mean travel time: " + group.FarthestRun + ", G " +
                 FixedDecimals(group.Outlier->G, 3) + (group.Outlier->IsOutlier() ? " above " : " below ") +
                 FixedDecimals(group.Outlier->Critical, 3) +
                 (group.Outlier->IsOutlier() ? ": an outlier (Grubbs); look at the run before you set it aside."
                                             : ": no outlier (Grubbs)."));
        if (group.MedianTime)
            Line("Median travel time: " + Value(group.Of[Measure::TravelTime].Median, FigureUnit::Seconds) + " s, " +
                 Value(group.MedianTime->Low, FigureUnit::Seconds) + " to " +
                 Value(group.MedianTime->High, FigureUnit::Seconds) + " s with " +
                 FixedDecimals(group.MedianTime->Coverage, 1) + " % whatever the distribution.");
        std::vector<Figure> figures = SpeedFigures(group, options_, units_);
        const std::vector<Figure> times = ReliabilityFigures(group, options_);
        figures.insert(figures.end(), times.begin(), times.end());
        Json rows = Json::array();
        for (const Figure& figure : figures)
            rows.push_back({{"Figure", figure.Name},
                            {"Value", figure.Text(units_)},
                            {"Interval", figure.Interval(units_)},
                            {"Remarks", Joined(RemarksOf(figure), "; ")}});
        Line();
        context_.Print(rows);
    }

    void Compared(const ByMeasure<Comparison>& compared, const std::string& before, const std::string& after) const {
        Json rows = Json::array();
        std::vector<std::string> sentences;
        for (const Measure measure : AllMeasures) {
            const Comparison& each = compared[measure];
            if (each.Welch.NBefore == 0 && each.Welch.NAfter == 0) continue;
            rows.push_back(ComparisonRow(each, measure, before, after));
            sentences.push_back(ComparisonText(each, measure, options_, units_));
        }
        context_.Print(rows);
        Lines(sentences);
    }

    /// `total` of the same runs, or nothing.
    void Sections(const std::vector<SectionOverRuns>& sections, const GroupStatistics* total) const {
        Json rows = Json::array();
        for (const SectionOverRuns& section : sections)
            rows.push_back(SectionRow(section.From + " - " + section.To, section.All));
        if (total != nullptr) rows.push_back(SectionRow("Whole run", *total));
        Line();
        context_.Print(rows);
    }

    void ComparedSections(const std::vector<SectionOverRuns>& sections) const {
        Json rows = Json::array();
        for (const SectionOverRuns& section : sections) {
            const Comparison& times = section.Compared[Measure::TravelTime];
            Json row = ComparisonRow(times, Measure::TravelTime, "Before", "After");
            Json named = {{"Section", section.From + " - " + section.To}};
            for (auto& [key, value] : row.items()) named[key] = value;
            named["Adjusted p"] = ProbabilityText(times.HolmP);
            rows.push_back(std::move(named));
        }
        Line();
        Line("Travel time by section, p adjusted after Holm for their number:");
        context_.Print(rows);
    }

    void Runs(const std::vector<MeasuredRun>& runs) const {
        Json rows = Json::array();
        for (const MeasuredRun& run : runs) rows.push_back(RunRow(run));
        Line();
        context_.Print(rows);
    }

    void SoFar(const std::vector<MeasuredRun>& runs) const {
        Json rows = Json::array();
        for (const RunsSoFar& soFar : TravelTimesSoFar(runs, options_)) {
            const RunsNeeded& needed = soFar.Needed;
            rows.push_back(
                {{"Runs so far", std::to_string(soFar.Of.N)},
                 {"Travel time", Value(soFar.Of.Mean, FigureUnit::Seconds)},
                 {"±", Value(soFar.Of.HalfWidth, FigureUnit::Seconds)},
                 {"Runs needed for ±" + PermittedErrorText(options_.Error, Measure::TravelTime, units_),
                  needed.Needed ? std::to_string(*needed.Needed) + (needed.Enough ? ", enough" : "") : NoValueText}});
        }
        Line();
        context_.Print(rows);
    }

private:
    std::string Value(std::optional<double> value, FigureUnit unit, int decimals = 1) const {
        return value ? ShownNumber(*value, unit, decimals, units_) : NoValueText;
    }

    /// Those of the figure alone: what it rests on stands above.
    static std::vector<std::string> RemarksOf(const Figure& figure) {
        std::vector<std::string> remarks = figure.Conditions;
        remarks.insert(remarks.end(), figure.Warnings.begin(), figure.Warnings.end());
        return remarks;
    }

    Json MeasureRow(const GroupStatistics& group, Measure measure) const {
        const Figure figure = MeanFigure(group, measure, options_);
        const Summary& summary = group.Of[measure];
        return {{"Measure", figure.Name},
                {"n", std::to_string(summary.N)},
                {"Mean", figure.WithInterval(units_)},
                {ConfidenceText(options_.Confidence) + " interval", figure.Interval(units_)},
                {"sd", Value(summary.Sd, figure.Unit)},
                {"cv %", summary.Cv ? FixedDecimals(100 * *summary.Cv, 2) : NoValueText},
                {"Least", Value(summary.Min, figure.Unit)},
                {"Median", Value(summary.Median, figure.Unit)},
                {"Most", Value(summary.Max, figure.Unit)}};
    }

    void Grades(const GroupStatistics& group) const {
        const Summary& delay = group.Of[Measure::ControlDelay];
        const auto tell = [&](const std::string& scale, const GradeScale& grade) {
            const GradeSpan span = *GradesOf(delay, grade);
            const int decimals = DecimalsBesideGrade(*delay.Mean, 1, grade);
            Line(scale + ": " + FixedDecimals(*delay.Mean, decimals) + " s is " + span.OfMean +
                 (delay.HalfWidth ? "; over its interval " + span.Text() : std::string()) + ".");
        };
        tell("Grade of the mean control delay", StudyGrade);
        Lines(SomeText(GradeFootnote(*delay.Mean)));
        if (options_.GradeLimits)
            tell("By the own limits", [&](double value) { return OwnGrade(value, *options_.GradeLimits); });
        if (!options_.FreeFlowSpeed || !group.AverageTravelSpeed) return;
        if (const auto street = UrbanStreetGrade(*group.AverageTravelSpeed, *options_.FreeFlowSpeed))
            Line("As an urban street (HCM 6 and 7) by travel speed and a base free-flow speed of " +
                 ShownNumber(*options_.FreeFlowSpeed, FigureUnit::MilesPerHour, 1, units_) + " " + units_.SpeedLabel() +
                 ": " + *street + ".");
    }

    static std::vector<std::string> SomeText(const std::string& text) {
        return text.empty() ? std::vector<std::string>() : std::vector{text};
    }

    Json ComparisonRow(const Comparison& each, Measure measure, const std::string& before,
                       const std::string& after) const {
        const WelchTest& test = each.Welch;
        const FigureUnit unit = KindOf(measure).Unit;
        Json row = {{"Measure", std::string(KindOf(measure).Name) + UnitInBrackets(unit)},
                    {before, Value(test.MeanBefore, unit) + " (" + std::to_string(test.NBefore) + ")"},
                    {after, Value(test.MeanAfter, unit) + " (" + std::to_string(test.NAfter) + ")"},
                    {"Difference", Value(test.Difference, unit)},
                    {"%", Value(test.Percent, FigureUnit::Percent)},
                    {ConfidenceText(options_.Confidence) + " interval",
                     test.Low ? Value(test.Low, unit) + " to " + Value(test.High, unit) : NoValueText},
                    {"t", Value(test.T, FigureUnit::None, 3)},
                    {"df", Value(test.Df, FigureUnit::None, 2)},
                    {"Welch p", ProbabilityText(test.P)},
                    {"Mann-Whitney p", ProbabilityText(each.Ranks.P)},
                    {"Shift", Value(each.Ranks.Shift, unit)}};
        if (each.HolmP) row["Adjusted p"] = ProbabilityText(each.HolmP);
        return row;
    }

    std::string UnitInBrackets(FigureUnit unit) const {
        const std::string label = UnitLabel(unit, units_);
        return label.empty() ? label : " (" + label + ")";
    }

    Json SectionRow(const std::string& name, const GroupStatistics& group) const {
        const auto mean = [&](Measure measure) { return Value(group.Of[measure].Mean, KindOf(measure).Unit); };
        const Summary& times = group.Of[Measure::TravelTime];
        const auto needed = group.Needed[Measure::TravelTime].Needed;
        const bool hasPercentiles = group.N >= LeastForPercentiles;
        return {
            {"Section", name},
            {"n", std::to_string(group.N)},
            {"Length (" + std::string(units_.LengthLabel()) + ")", Value(group.MeanLength, FigureUnit::Feet, 0)},
            {"Time (s)", Value(times.Mean, FigureUnit::Seconds)},
            {"±", Value(times.HalfWidth, FigureUnit::Seconds)},
            {"Running", mean(Measure::RunningTime)},
            {"Stopped", mean(Measure::StoppedTime)},
            {"% stopped", Value(group.PercentStopped, FigureUnit::Percent, 2)},
            {"Stops", mean(Measure::Stops)},
            {"Travel " + std::string(units_.SpeedLabel()), Value(group.AverageTravelSpeed, FigureUnit::MilesPerHour)},
            {"Running " + std::string(units_.SpeedLabel()), Value(group.AverageRunningSpeed, FigureUnit::MilesPerHour)},
            {"P50", hasPercentiles ? Value(group.Times.P50, FigureUnit::Seconds) : NoValueText},
            {"P85", hasPercentiles ? Value(group.Times.P85, FigureUnit::Seconds) : NoValueText},
            {"Runs needed", needed ? std::to_string(*needed) : NoValueText}};
    }

    Json RunRow(const MeasuredRun& run) const {
        const PieceMeasures& whole = run.Measures.Whole;
        return {{"Run", run.Name},
                {"Date", IsValidDate(run.RunDate) ? ShortDate(run.RunDate) : std::string()},
                {"Time", IsValidDate(run.RunTime) ? ShortTime(run.RunTime) : std::string()},
                {"Before/After", run.IsBefore ? "Before" : "After"},
                {"Period", run.Period},
                {"Travel time (s)", whole.TravelTime},
                {"Length (" + std::string(units_.LengthLabel()) + ")", Value(whole.Distance, FigureUnit::Feet, 0)},
                {"Stopped (s)", whole.StoppedTime},
                {"Stops", whole.Stops},
                {std::string(units_.SpeedLabel()), Value(whole.TravelSpeed(), FigureUnit::MilesPerHour)},
                {"Control delay (s)", Value(run.ValueOf(Measure::ControlDelay), FigureUnit::Seconds, 0)},
                {"Nodes", run.Nodes()},
                {"Set aside", run.SetAside}};
    }

    const CommandContext& context_;
    const StatisticsOptions& options_;
    Units units_;
};

void PrintWithout(const Printer& printer, const StudyFigures& figures) {
    if (!figures.Without) return;
    const int aside = figures.All.Whole.All.N - figures.Without->Whole.All.N;
    printer.Measures("Without " + std::to_string(aside) + " set aside", figures.Without->Whole.All);
}

}  // namespace

void PrintStatistics(const CommandContext& context, const StudyFigures& figures) {
    const StudyStatistics& statistics = figures.All;
    const GroupedStatistics& whole = statistics.Whole;
    const Printer printer(context, statistics.Options);
    printer.Line(figures.Name);
    printer.Conditions();
    printer.Lines(statistics.Warnings);
    if (figures.Read.Runs.empty()) return;
    printer.Runs(figures.Read.Runs);
    printer.Measures("All runs", whole.All);
    printer.More(whole.All);
    PrintWithout(printer, figures);
    printer.SoFar(figures.Read.Runs);
    printer.Sections(statistics.Sections, statistics.SectionsComparable ? &whole.All : nullptr);
    if (!whole.HasBoth()) return;
    printer.Measures("Before", whole.Before);
    printer.Measures("After", whole.After);
    printer.Line();
    printer.Compared(whole.Compared, "Before (n)", "After (n)");
    printer.Lines(whole.Warnings);
    if (statistics.SectionsComparable && statistics.Sections.size() > 1) printer.ComparedSections(statistics.Sections);
}

void PrintConditions(const CommandContext& context, const std::vector<ConditionStatistics>& conditions,
                     const StatisticsOptions& options) {
    const Printer printer(context, options);
    printer.Conditions();
    for (const ConditionStatistics& condition : conditions) printer.Measures(condition.Name, condition.Figures);
    for (std::size_t i = 1; i < conditions.size(); ++i) {
        const ConditionStatistics& condition = conditions[i];
        printer.Line();
        printer.Line(condition.Name + " against " + conditions.front().Name + ":");
        printer.Compared(condition.Compared, "Before (n)", "After (n)");
        printer.Lines(condition.Warnings);
        if (condition.Sections.size() > 1) printer.ComparedSections(condition.Sections);
    }
}

}  // namespace vantor
