#include "gpsobd/LogProblems.h"

#include <gtest/gtest.h>

namespace vantor {
namespace {

constexpr double Foot = 1 / 364813.25;  ///< in degrees of latitude

/// Seconds, feet to the north and a speed.
struct Row {
    int Second;
    double Feet;
    float Speed;
    std::int16_t Run = 1;
};

/// Row, what is wrong with it, and the next row.
std::string Told(const std::vector<Row>& rows, bool isMetric = false) {
    std::vector<RunPoint> points;
    for (const Row& row : rows) {
        RunPoint& point = points.emplace_back();
        point.Second = 1000 + row.Second;
        point.Latitude = row.Feet < 0 ? -1 : 42 + row.Feet * Foot;
        point.Longitude = -83;
        point.Speed = row.Speed;
        point.RunNumber = row.Run;
    }
    const auto problems = FindProblems(points);
    std::string told;
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (const auto ofRow = ProblemsOfRow(problems, row); !ofRow.empty())
            told += std::to_string(row) + ": " + ProblemText(ofRow, {isMetric, false}) + ", then " +
                    std::to_string(NextProblemRow(problems, row)) + "\n";
    return told;
}

TEST(LogProblems, AreToldRowByRow) {
    EXPECT_EQ(Told({{0, 0, 30}, {1, 44, 45}, {3, 140, 75}}), "") << "15 mph a second, and what was driven";
    EXPECT_EQ(Told({{0, 0, 30}, {1, 44, 46}}), "1: the speed changes by 16 MPH a second, then 1\n");
    EXPECT_EQ(Told({{0, 0, 30}, {1, 44, -1}, {2, 88, 62}}),
              "1: no speed, then 2\n2: the speed changes by 16 MPH a second, then 1\n");
    EXPECT_EQ(Told({{0, 0, 0}, {3, 9000, 60}}), "0: 3 s without rows behind it, then 0\n") << "no spike, no jump";
    EXPECT_EQ(Told({{0, 0, 0}, {1, 99, 0}}), "") << "a receiver's jitter";
    EXPECT_EQ(Told({{0, 0, 60}, {1, 111, 60}}),
              "1: its position is 111 ft from the row before, farther than it was "
              "driven, then 1\n");
    EXPECT_EQ(Told({{0, 0, 60}, {1, 109, 60}}), "") << "at 75 mph";
    EXPECT_EQ(Told({{0, 0, 60}, {1, -1, 60}, {2, 5000, 60}}), "") << "without a position there is no jump";
    EXPECT_EQ(Told({{0, 0, 60}, {1, 5000, 0, 2}, {2, 170, 60}}), "") << "each run by itself";
    EXPECT_EQ(Told({{0, 0, 60}, {1, 1000, -1}, {9, 1000, -1}}, true),
              "1: no speed; its position is 305 m from the row before, farther than it was driven; 8 s without rows "
              "behind it, then 2\n2: no speed, then 1\n");
}

}  // namespace
}  // namespace vantor
