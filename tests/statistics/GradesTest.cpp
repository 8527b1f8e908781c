#include "statistics/Grades.h"

#include <gmock/gmock.h>

namespace vantor {
namespace {

TEST(Grades, BoundsOfDelays) {
    // Delay, the study's grade, the manual's for signals, that for stops and roundabouts.
    const std::tuple<double, char, char, char> cases[] = {
        {-3.5, 'A', 'A', 'A'}, {9.99, 'A', 'A', 'A'}, {10, 'B', 'A', 'A'},    {10.01, 'B', 'B', 'B'},
        {15, 'B', 'B', 'B'},   {20, 'C', 'B', 'C'},   {20.04, 'C', 'C', 'C'}, {25.5, 'C', 'C', 'D'},
        {35, 'D', 'C', 'D'},   {50, 'D', 'D', 'E'},   {55, 'E', 'D', 'F'},    {80, 'F', 'E', 'F'},
        {80.5, 'F', 'F', 'F'}};
    for (const auto& [delay, study, signal, stop] : cases) {
        EXPECT_EQ(StudyGrade(delay), study) << delay;
        EXPECT_EQ(SignalGrade(delay), signal) << delay;
        EXPECT_EQ(StopGrade(delay), stop) << delay;
        EXPECT_EQ(GradeFootnote(delay).empty(), study == signal) << delay;
    }
    EXPECT_EQ(OwnGrade(5, {5, 6, 7, 8, 9}), 'A');
    EXPECT_EQ(OwnGrade(9.5, {5, 6, 7, 8, 9}), 'F');
}

TEST(Grades, UrbanStreetsAreGradedAboveABound) {
    const std::tuple<double, double, std::optional<char>> cases[] = {
        {40.78, 23.67, 'C'},  // a published example (HCM 7, chapter 30)
        {40, 33, 'A'},        // and B where 85 % of the base speed were asked for
        {55, 44, 'B'},        // strictly above
        {25, 20.1, 'A'},     {25, 8, 'F'},  {42.5, 34, 'B'}, {42.5, 34.1, 'A'},  // half way between 32 and 36
        {24.9, 30, {}},      {55.1, 30, {}}};
    for (const auto& [base, speed, grade] : cases) EXPECT_EQ(UrbanStreetGrade(speed, base), grade) << base;
}

TEST(Grades, AValueIsPrintedSoThatItHasItsGrade) {
    EXPECT_EQ(DecimalsBesideGrade(20.04, 1, SignalGrade), 2);
    EXPECT_EQ(DecimalsBesideGrade(20.004, 1, SignalGrade), 3);
    EXPECT_EQ(DecimalsBesideGrade(20.0, 1, SignalGrade), 1);
    EXPECT_EQ(DecimalsBesideGrade(19.97, 1, StudyGrade), 2) << "20.0 would be C";
}

}  // namespace
}  // namespace vantor
