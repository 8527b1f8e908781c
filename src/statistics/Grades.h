#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "core/StudyOptions.h"
#include "statistics/Summary.h"

namespace vantor {

// Grades of values that were not rounded, 'A' to 'F'. The first is the one of the study; the others stand beside it.

/// Seconds up to which the grades A to E go, for signalised intersections and for stop control and roundabouts.
inline constexpr std::array<double, 5> SignalBounds = {10, 20, 35, 55, 80};
inline constexpr std::array<double, 5> StopBounds = {10, 15, 25, 35, 50};

/// The scale that grades runs and studies, its bounds the better grade's first seconds no more: 10.0 s is B.
char StudyGrade(double delay);
/// HCM 6 and 7, signalised intersections (Exhibit 19-8): 10.0 s is A.
char SignalGrade(double delay);
/// HCM 6 and 7, stop-controlled intersections and roundabouts (Exhibits 20-2, 21-8, 22-8).
char StopGrade(double delay);
/// By the user's own bounds, which are the better grade's.
char OwnGrade(double delay, const std::array<double, 5>& limits);
/// HCM 6 and 7, urban streets (Exhibits 16-3 and 18-1), by travel speed and base free-flow speed, mph; nothing for a
/// base speed outside 25 to 55.
std::optional<char> UrbanStreetGrade(double travelSpeed, double baseSpeed);

using GradeScale = std::function<char(double)>;

/// The grades of a mean and of both ends of its interval, the lower value's first.
struct GradeSpan {
    char OfMean = ' ';
    char OfLow = ' ';
    char OfHigh = ' ';
    /// "E to F"; "E" where the interval is all of one grade.
    std::string Text() const;
};
/// Nothing without a mean; without an interval all three are the mean's.
std::optional<GradeSpan> GradesOf(const Summary& summary, const GradeScale& scale);

/// How many decimals a value that stands beside its grade takes, `least` or more, so that the value as printed has the
/// grade that the value has: 20.04 s is C, and 20.0 would be B.
int DecimalsBesideGrade(double value, int least, const GradeScale& scale);

/// Tells where the grade of the study is not that of the manual, as a footnote; empty where both agree.
std::string GradeFootnote(double delay);

}  // namespace vantor
