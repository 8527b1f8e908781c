#include "analysis/DelayStatistics.h"

#include <gtest/gtest.h>

#include "core/Numeric.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

/// A drive with two stops: up to speed, five seconds at rest, on, and a short stop.
const std::vector<int> Drive = {0,  10, 33, 47, 58, 66, 66, 64, 50, 31, 12, 3,  0,  0,  0,  0,  0, 5,
                                18, 34, 49, 61, 66, 67, 66, 65, 40, 0,  0,  12, 40, 60, 66, 66, 66};

/// Stop delay, start and end sample, start and end distance, computed ideal speed, control delay, grade.
using Figures = std::tuple<int, int, int, int, int, int, int, std::string>;
Figures FiguresOf(const PlotState& plot, const StudyRunEntry& entry) {
    return {entry.StopDelay, plot.CDStartSample,   plot.CDEndSample,   entry.CDStartDist,
            entry.CDEndDist, entry.IdealSpeedCalc, entry.ControlDelay, entry.LOSGrade};
}

struct Case {
    const char* What;
    std::vector<int> Values;
    PlotState Plot;
    StudyRunEntry Entry;
    Figures Expected;
    std::int16_t CalConstant = 1000;
    std::int16_t StopSpeed = 0;
};
constexpr BoundaryAxis Time = BoundaryAxis::Time;

TEST(DelayStatistics, ComputesARunBetweenItsBoundaries) {
    const Case cases[] = {
        {"distances", Drive, {}, {.CDStartDist = 200, .CDEndDist = 1300}, {7, 6, 32, 200, 1300, 54, 12, "B"}, 1246},
        {"the user's ideal speed, and a threshold",
         Drive,
         {},
         {.CDStartDist = 200, .CDEndDist = 1300, .IdealSpeedCalc = 54, .IdealSpeedUser = 40},
         {9, 6, 32, 200, 1300, 54, 7, "A"},
         1246,
         5},
        {"faster than its ideal speed", Drive, {Time, 4, 30}, {}, {7, 4, 30, 112, 1207, 25, -4, "A"}, 1246},
        {"another calibration", Drive, {Time, 3, 34}, {}, {11, 3, 34, 34, 922, 26, 8, "A"}, 777, 7},
        // 10 + 20 = 30 feet; 30 + 20 + 30 = 80 feet. 50 feet at (13.6 + 20.5) / 2 = 17 mph take 2 seconds.
        {"the start's sample counts twice", {10, 20, 30, 40}, {Time, 2, 3}, {}, {0, 2, 3, 30, 80, 17, -1, "A"}},
        // 10, 30 found at sample 2; then 50, 80, and sample 4 is not looked at: the earlier sample number stays. The
        // missing speed is 0, so 20 feet a second halved are 10: 80 feet take 8 seconds.
        {"never on the last sample",
         {10, 20, 30, 40},
         {.CDEndSample = 77},
         {.CDStartDist = 15, .CDEndDist = 95},
         {0, 2, 77, 15, 95, 7, 67, "E"}},
        // The end scan starts on sample 4 with 60 feet behind it. 60 - 1000 feet at 22 feet a second: -42.7 seconds.
        {"a start that runs out leaves the last sample to the end",
         {10, 20, 30, 0},
         {},
         {.CDStartDist = 1000, .CDEndDist = 60, .IdealSpeedUser = 15},
         {1, 0, 4, 1000, 60, 0, 47, "D"}},
        // 22 feet a second are 15.0000001 mph with the factor as it is held, and 15 in single precision.
        {"at the threshold", {22, 44, 66, 88, 0}, {Time, 1, 4}, {}, {1, 1, 4, 22, 242, 38, -1, "A"}, 1000, 15},
        {"at a higher one", {22, 44, 66, 88, 0}, {Time, 1, 4}, {}, {2, 1, 4, 22, 242, 38, -1, "A"}, 1000, 30},
    };
    for (const Case& given : cases) {
        PlotState plot = given.Plot;
        StudyRunEntry entry = given.Entry;
        const RunRecord run = RunOfValues(given.Values, given.CalConstant);
        const float idealSpeed = ComputeRunDelay(run, MphSettings(given.StopSpeed), plot, entry);
        EXPECT_EQ(FiguresOf(plot, entry), given.Expected) << given.What;
        EXPECT_EQ(Round16(idealSpeed), entry.IdealSpeedUser != 0 ? entry.IdealSpeedUser : entry.IdealSpeedCalc)
            << given.What;
    }
}

TEST(DelayStatistics, AnErrorKeepsWhatWasWrittenBeforeIt) {
    StudyRunEntry entry{.ControlDelay = 33, .LOSGrade = "C", .StopDelay = 9};
    PlotState plot{Time, 2, 3};
    EXPECT_ERROR(DivisionByZero, ComputeRunDelay(RunOfValues({0, 0, 0, 0, 0}), MphSettings(), plot, entry));
    EXPECT_EQ(FiguresOf(plot, entry), (Figures{2, 2, 3, 0, 0, 0, 33, "C"})) << "an ideal speed of 0";

    entry = {.CDStartDist = 25, .CDEndDist = 2000000000, .ControlDelay = 33};
    plot = {.CDEndSample = -2147483647};
    EXPECT_ERROR(Overflow, ComputeRunDelay(RunOfValues({10, 20, 30, 40}), MphSettings(), plot, entry));
    EXPECT_EQ(FiguresOf(plot, entry), (Figures{0, 2, -2147483647, 25, 2000000000, 7, 33, ""}));

    entry = {.CDStartDist = 100, .CDEndDist = 200};
    for (const std::vector<int>& tooShort : {std::vector<int>{}, {10}})
        EXPECT_ERROR(SubscriptOutOfRange, ComputeRunDelay(RunOfValues(tooShort), MphSettings(), plot, entry));
}

TEST(DelayStatistics, StoredDistancesLieOnTheFirstSampleThatReachesThem) {
    EXPECT_EQ(RunningDistances(RunOfValues({1, 1, 3}, 1500)), OneBased<std::int32_t>({2, 4, 8})) << "each is rounded";
    const RunRecord run = RunOfValues({10, 20, 0, 30, 40});  // 10, 30, 30, 60, 100 feet
    for (const auto& [feet, sample] :
         {std::pair{0, 0}, {1, 1}, {10, 1}, {11, 2}, {30, 2}, {31, 4}, {100, 5}, {101, 5}}) {
        const PlotState plot = PlacedBoundaries(run, {.CDStartDist = feet, .CDEndDist = feet});
        EXPECT_EQ(plot.CDStartSample, sample) << feet;
        EXPECT_EQ(plot.CDEndSample, sample) << feet;
    }
}

TEST(DelayStatistics, ARunOfASingleSampleHasNoEndBehindAStartThatItDoesNotReach) {
    StudyRunEntry entry;
    entry.CDStartDist = 45;
    entry.CDEndDist = 91;
    for (const auto& [samples, start] : {std::pair(std::vector<int>{44}, false), {{44, 44}, false}, {{45}, true}}) {
        const FoundBoundaries found = FindBoundaries(RunOfValues(samples), {}, entry, {});
        EXPECT_EQ(found.Start.has_value(), start) << samples.size();
        EXPECT_FALSE(found.End) << samples.size();
    }
}

}  // namespace
}  // namespace vantor
