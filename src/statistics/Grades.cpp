#include "statistics/Grades.h"

#include <algorithm>
#include <cmath>

#include "core/Numeric.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// Travel speeds, miles per hour, that the grades A to E lie above, by base free-flow speed.
struct StreetColumn {
    double BaseSpeed;
    std::array<double, 5> Above;
};
constexpr std::array<StreetColumn, 7> StreetColumns = {{
    {25, {20, 17, 13, 10, 8}},
    {30, {24, 20, 15, 12, 9}},
    {35, {28, 23, 18, 14, 11}},
    {40, {32, 27, 20, 16, 12}},
    {45, {36, 30, 23, 18, 14}},
    {50, {40, 34, 25, 20, 15}},
    {55, {44, 37, 28, 22, 17}},
}};

char LetterAt(std::ptrdiff_t place) { return static_cast<char>('A' + place); }

char GradeUpTo(double delay, const std::array<double, 5>& bounds) {
    return LetterAt(std::ranges::lower_bound(bounds, delay) - bounds.begin());
}

/// As FixedDecimals, as a number.
double Rounded(double value, int decimals) { return Val(FixedDecimals(value, decimals)); }

}  // namespace

char StudyGrade(double delay) {
    // Its bounds are whole numbers that belong to the grade above.
    return LOSGradeOf(Round32(std::floor(delay))).front();
}
char SignalGrade(double delay) { return GradeUpTo(delay, SignalBounds); }
char StopGrade(double delay) { return GradeUpTo(delay, StopBounds); }
char OwnGrade(double delay, const std::array<double, 5>& limits) { return GradeUpTo(delay, limits); }

std::optional<char> UrbanStreetGrade(double travelSpeed, double baseSpeed) {
    if (!(baseSpeed >= StreetColumns.front().BaseSpeed) || baseSpeed > StreetColumns.back().BaseSpeed)
        return std::nullopt;
    const auto right = std::ranges::lower_bound(StreetColumns, baseSpeed, {}, &StreetColumn::BaseSpeed);
    const auto left = right == StreetColumns.begin() ? right : right - 1;
    const double width = right->BaseSpeed - left->BaseSpeed;
    const double part = width == 0 ? 0 : (baseSpeed - left->BaseSpeed) / width;
    for (std::size_t i = 0; i < left->Above.size(); ++i) {
        const double above = left->Above[i] + part * (right->Above[i] - left->Above[i]);
        if (travelSpeed > above) return LetterAt(static_cast<std::ptrdiff_t>(i));
    }
    return 'F';
}

std::string GradeSpan::Text() const {
    const std::string low(1, OfLow);
    return OfLow == OfHigh ? low : low + " to " + OfHigh;
}

std::optional<GradeSpan> GradesOf(const Summary& summary, const GradeScale& scale) {
    if (!summary.Mean) return std::nullopt;
    const double mean = *summary.Mean;
    return GradeSpan{scale(mean), scale(summary.Low.value_or(mean)), scale(summary.High.value_or(mean))};
}

int DecimalsBesideGrade(double value, int least, const GradeScale& scale) {
    constexpr int MostDecimals = 6;
    int decimals = least;
    while (decimals < MostDecimals && scale(Rounded(value, decimals)) != scale(value)) ++decimals;
    return decimals;
}

std::string GradeFootnote(double delay) {
    const char own = StudyGrade(delay);
    const char manual = SignalGrade(delay);
    if (own == manual) return {};
    return std::string("The Highway Capacity Manual grades this delay ") + manual + ": its bound of " +
           FixedDecimals(delay, 0) + " s still belongs to the better grade.";
}

}  // namespace vantor
