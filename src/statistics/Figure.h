#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "statistics/Grades.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

/// What stands where a value is not defined.
inline constexpr const char* NoValueText = "\u2013";

/// A value as it is told everywhere: in a window, a report, an export. Stored in feet, seconds and miles per hour.
struct Figure {
    std::string Name;
    std::optional<double> Value;
    FigureUnit Unit = FigureUnit::None;
    int Decimals = 1;
    int N = 0;  ///< runs it is made of
    std::optional<double> Low, High, HalfWidth;
    double Confidence = 95;
    std::string RestsOn;
    std::vector<std::string> Conditions;  ///< "95 %", "stopped below 5 mph"
    std::vector<std::string> Warnings;
    bool IsWeak = false;  ///< shown greyed, with its warning

    /// "203.0"; NoValueText for none.
    std::string Number(const Units& units) const;
    /// "203.0 s".
    std::string Text(const Units& units) const;
    /// "203.0 s ± 16.3"; without an interval as Text.
    std::string WithInterval(const Units& units) const;
    /// "186.7 to 219.3 s"; NoValueText for none.
    std::string Interval(const Units& units) const;
    /// "72 (67 without 1 set aside)", `without` being the same figure without those runs; as Number where none that has
    /// a value is set aside.
    std::string NumberBeside(const Figure& without, const Units& units) const;
    /// All that qualifies it, "8 runs, 1 day, 06:53 to 08:38; few runs".
    std::string Remarks() const;
};

/// A number in its shown unit with that many decimals, and what its unit is called there.
std::string ShownNumber(double value, FigureUnit unit, int decimals, const Units& units);
std::string UnitLabel(FigureUnit unit, const Units& units);

/// The mean of a measure.
Figure MeanFigure(const GroupStatistics& group, Measure measure, const StatisticsOptions& options);
/// The mean control delay in whole seconds as labels beside the study's average have it: "72 s ± 15".
Figure DelayFigure(const GroupStatistics& group, const StatisticsOptions& options);
/// Sums over sums, percentiles and indices, in the order in which they are told.
std::vector<Figure> SpeedFigures(const GroupStatistics& group, const StatisticsOptions& options, const Units& units);
std::vector<Figure> ReliabilityFigures(const GroupStatistics& group, const StatisticsOptions& options);

/// "10 %" or "5 s".
std::string PermittedErrorText(const PermittedError& error, Measure measure, const Units& units);
/// "for ±10 % of this delay 28 runs, 20 more"; a sentence's part that names why where no number is known.
std::string RunsNeededText(const GroupStatistics& group, Measure measure, const StatisticsOptions& options,
                           const Units& units);

/// "95 %".
std::string ConfidenceText(double confidence);

/// p with three decimals, "< 0.001" below that, NoValueText for none.
std::string ProbabilityText(std::optional<double> p);

/// What a comparison says, as a sentence: "Travel time fell by 18.5 s (8.8 %); 95 % interval 8.2 to 28.8 s."
std::string ComparisonText(const Comparison& comparison, Measure measure, const StatisticsOptions& options,
                           const Units& units);

}  // namespace vantor
