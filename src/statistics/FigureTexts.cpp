#include <cmath>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/Text.h"
#include "statistics/Distributions.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

/// A number without forced decimals: 10, 2.5.
std::string Plain(double value) { return SignificantDigits(value, 6); }

/// What a sentence calls the measure.
std::string NounOf(Measure measure) {
    return measure == Measure::ControlDelay ? "delay" : FoldCase(KindOf(measure).Name);
}

/// "8.2 to 28.8 s" of a change that is told by its size, "−31.9 to +0.9 s" of one that may be either.
class ChangeTexts {
public:
    ChangeTexts(Measure measure, const Units& units) : unit_(KindOf(measure).Unit), units_(units) {}

    std::string Size(double value) const { return WithUnit(Number(std::abs(value))); }
    std::string Signed(double value) const { return (value < 0 ? "\u2212" : "+") + Number(std::abs(value)); }
    std::string SignedSize(double value) const { return WithUnit(Signed(value)); }
    std::string SizeInterval(double low, double high) const {
        const double least = std::min(std::abs(low), std::abs(high));
        const double most = std::max(std::abs(low), std::abs(high));
        return Number(least) + " to " + WithUnit(Number(most));
    }
    std::string SignedInterval(double low, double high) const { return Signed(low) + " to " + WithUnit(Signed(high)); }

private:
    std::string Number(double value) const { return ShownNumber(value, unit_, 1, units_); }
    std::string WithUnit(const std::string& number) const {
        const std::string label = UnitLabel(unit_, units_);
        return label.empty() ? number : number + " " + label;
    }

    FigureUnit unit_;
    const Units& units_;
};

std::string PercentText(const WelchTest& test) {
    return test.Percent ? " (" + FixedDecimals(std::abs(*test.Percent), 1) + " %)" : std::string();
}

std::string SizesText(const WelchTest& test) {
    return Counted(test.NBefore, "run") + " before and " + std::to_string(test.NAfter) + " after";
}

/// Why there is no test, and what is known all the same.
std::string WithoutTest(const Comparison& comparison, Measure measure, const ChangeTexts& texts) {
    const WelchTest& test = comparison.Welch;
    const std::string name = KindOf(measure).Name;
    if (!test.Difference) return name + ": nothing to compare, " + SizesText(test) + " have it.";
    const std::string change =
        name + (*test.Difference == 0
                    ? ": no difference; "
                    : ": a difference of " + texts.SignedSize(*test.Difference) + PercentText(test) + "; ");
    if (test.NBefore < 2 || test.NAfter < 2)
        return change + "no test: it takes two runs or more each way, and there are " + SizesText(test) + ".";
    return change + "no test: neither group has scatter.";
}

/// The permitted error of the mean before in the measure's unit; nothing where there is none.
std::optional<double> PermittedChange(Measure measure, std::optional<double> mean, const StatisticsOptions& options) {
    // An error in seconds is none of a number of stops.
    if (measure == Measure::Stops && options.Error.Of == PermittedError::Kind::Absolute) return std::nullopt;
    return ErrorInUnit(ErrorOf(measure, options), mean);
}

std::string NotShown(const Comparison& comparison, Measure measure, const StatisticsOptions& options,
                     const ChangeTexts& texts) {
    const WelchTest& test = comparison.Welch;
    const std::string name = KindOf(measure).Name;
    const std::string interval = "interval " + texts.SignedInterval(*test.Low, *test.High) + ".";
    // Where there is no permitted error, none is above 0.
    const double error = PermittedChange(measure, test.MeanBefore, options).value_or(0);
    if (*test.Low >= -error && *test.High <= error)
        return name + ": no difference larger than " + texts.Size(error) + ": " + interval;
    const std::string text = name + ": no difference shown: " + interval;
    const auto runs = RunsForDifference(comparison.Sd.value_or(0), error, options.Confidence);
    if (!runs) return text;
    return text + " With this scatter about " + Counted(*runs, "run") + " each way would show " + texts.Size(error) +
           ".";
}

std::string Shown(const WelchTest& test, Measure measure, double confidence, const ChangeTexts& texts) {
    return std::string(KindOf(measure).Name) + (*test.Difference < 0 ? " fell by " : " rose by ") +
           texts.Size(*test.Difference) + PercentText(test) + "; " + ConfidenceText(confidence) + " interval " +
           texts.SizeInterval(*test.Low, *test.High) + ".";
}

}  // namespace

std::string ConfidenceText(double confidence) { return Plain(confidence) + " %"; }

std::string PermittedErrorText(const PermittedError& error, Measure measure, const Units& units) {
    if (error.Of == PermittedError::Kind::Percent) return Plain(error.Value) + " %";
    const FigureUnit unit = KindOf(measure).Unit;
    const bool isSpeed = unit == FigureUnit::MilesPerHour;
    return Plain(isSpeed ? units.SpeedOfMph(error.Value) : error.Value) + " " + UnitLabel(unit, units);
}

std::string RunsNeededText(const GroupStatistics& group, Measure measure, const StatisticsOptions& options,
                           const Units& units) {
    const PermittedError error = ErrorOf(measure, options);
    const RunsNeeded& needed = group.Needed[measure];
    const std::string what = "for ±" + PermittedErrorText(error, measure, units) + " of this " + NounOf(measure) + " ";
    if (needed.Have < 2) return what + "two runs or more must be driven before the number is known";
    if (!needed.Needed) {
        const bool hasMean = ErrorInUnit(error, group.Of[measure].Mean).has_value();
        return what + (hasMean ? "more than " + std::to_string(MostRunsNeeded) + " runs" : "no number is known");
    }
    const std::string text = what + Counted(*needed.Needed, "run") + ", ";
    if (*needed.StillNeeded > 0) return text + std::to_string(*needed.StillNeeded) + " more";
    return text + (needed.Enough ? "enough" : "but fewer than " + std::to_string(FewRuns) + " are never enough");
}

std::string ProbabilityText(std::optional<double> p) {
    if (!p) return NoValueText;
    return *p < 0.001 ? "< 0.001" : FixedDecimals(*p, 3);
}

std::string ComparisonText(const Comparison& comparison, Measure measure, const StatisticsOptions& options,
                           const Units& units) {
    const ChangeTexts texts(measure, units);
    const WelchTest& test = comparison.Welch;
    const MannWhitneyTest& ranks = comparison.Ranks;
    const double alpha = AlphaOf(options.Confidence);
    if (!test.P) return WithoutTest(comparison, measure, texts);
    const bool isShown = *test.P < alpha;
    std::string text =
        isShown ? Shown(test, measure, options.Confidence, texts) : NotShown(comparison, measure, options, texts);
    if (ranks.Exact && ranks.SmallestP && *ranks.SmallestP >= alpha)
        text += " The check by ranks cannot tell: with " + SizesText(test) + " its smallest p is " +
                ProbabilityText(ranks.SmallestP) + ".";
    else if (ranks.P && (*ranks.P < alpha) != isShown)
        text += " The tests disagree: Welch p = " + ProbabilityText(test.P) +
                ", Mann-Whitney p = " + ProbabilityText(ranks.P) + ", with " + SizesText(test) + ".";
    if (isShown && comparison.HolmP && *comparison.HolmP >= alpha)
        text += " As one of several tests it is not shown: adjusted p = " + ProbabilityText(comparison.HolmP) + ".";
    return text;
}

}  // namespace vantor
