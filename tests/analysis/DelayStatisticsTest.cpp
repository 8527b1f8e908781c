#include "analysis/DelayStatistics.h"

#include <gtest/gtest.h>

#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

RunRecord RunOf(std::vector<std::int16_t> pulses, std::int16_t calConstant) {
    RunRecord run;
    run.Header.CalConstant = calConstant;
    run.Header.SampleCount = static_cast<std::int32_t>(pulses.size());
    run.SampleValues = OneBased<std::int16_t>(std::move(pulses));
    return run;
}

AppSettings SettingsWithStopSpeed(std::int16_t threshold) {
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
    settings.StopSpeedThreshold = threshold;
    return settings;
}

/// A drive with two stops: up to speed, five seconds at rest, on, and a short stop.
const std::vector<std::int16_t> Drive = {0,  10, 33, 47, 58, 66, 66, 64, 50, 31, 12, 3,  0,  0,  0,  0,  0, 5,
                                         18, 34, 49, 61, 66, 67, 66, 65, 40, 0,  0,  12, 40, 60, 66, 66, 66};

struct Expected {
    std::int32_t StopDelay, StartSample, EndSample, StartDist, EndDist, IdealSpeedCalc, ControlDelay;
};

void ExpectFigures(const PlotState& plot, const StudyRunEntry& entry, const Expected& expected) {
    EXPECT_EQ(entry.StopDelay, expected.StopDelay);
    EXPECT_EQ(plot.CDStartSample, expected.StartSample);
    EXPECT_EQ(plot.CDEndSample, expected.EndSample);
    EXPECT_EQ(entry.CDStartDist, expected.StartDist);
    EXPECT_EQ(entry.CDEndDist, expected.EndDist);
    EXPECT_EQ(entry.IdealSpeedCalc, expected.IdealSpeedCalc);
    EXPECT_EQ(entry.ControlDelay, expected.ControlDelay);
}

TEST(DelayStatistics, DistanceBoundaries) {
    StudyRunEntry entry;
    entry.CDStartDist = 200;
    entry.CDEndDist = 1300;
    PlotState plot;
    const IdealSpeed ideal = ComputeRunDelay(RunOf(Drive, 1246), SettingsWithStopSpeed(0), plot, entry);
    ExpectFigures(plot, entry, {7, 6, 32, 200, 1300, 54, 12});
    EXPECT_EQ(entry.LOSGrade, "B");
    EXPECT_EQ(ideal.Shown, 54);

    entry.IdealSpeedUser = 40;
    ComputeRunDelay(RunOf(Drive, 1246), SettingsWithStopSpeed(5), plot, entry);
    ExpectFigures(plot, entry, {9, 6, 32, 200, 1300, 54, 7});
}

TEST(DelayStatistics, TimeBoundaries) {
    StudyRunEntry entry;
    PlotState plot{BoundaryAxis::Time, 4, 30};
    ComputeRunDelay(RunOf(Drive, 1246), SettingsWithStopSpeed(0), plot, entry);
    ExpectFigures(plot, entry, {7, 4, 30, 112, 1207, 25, -4});
    EXPECT_EQ(entry.LOSGrade, "A") << "a run faster than its ideal speed";

    plot = {BoundaryAxis::Time, 3, 34};
    ComputeRunDelay(RunOf(Drive, 777), SettingsWithStopSpeed(7), plot, entry);
    ExpectFigures(plot, entry, {11, 3, 34, 34, 922, 26, 8});
}

TEST(DelayStatistics, StartSampleCountsTwiceInTheDistance) {
    StudyRunEntry entry;
    PlotState plot{BoundaryAxis::Time, 2, 3};
    ComputeRunDelay(RunOf({10, 20, 30, 40}, 1000), SettingsWithStopSpeed(0), plot, entry);
    // 10 + 20 = 30 feet; 30 + 20 + 30 = 80 feet. 50 feet at (13.6 + 20.5) / 2 = 17 mph take 2 seconds.
    ExpectFigures(plot, entry, {0, 2, 3, 30, 80, 17, -1});
}

TEST(DelayStatistics, BoundaryIsNeverFoundOnTheLastSample) {
    StudyRunEntry entry;
    entry.CDStartDist = 15;
    entry.CDEndDist = 95;
    PlotState plot;
    plot.CDEndSample = 77;
    ComputeRunDelay(RunOf({10, 20, 30, 40}, 1000), SettingsWithStopSpeed(0), plot, entry);
    // 10, 30 found at sample 2; then 50, 80, and sample 4 is not looked at: the earlier sample number stays. The
    // missing speed is 0, so 20 feet a second halved are 10: 80 feet take 8 seconds.
    ExpectFigures(plot, entry, {0, 2, 77, 15, 95, 7, 67});
}

TEST(DelayStatistics, StartThatRunsOutLeavesTheLastSampleToTheEndScan) {
    StudyRunEntry entry;
    entry.CDStartDist = 1000;
    entry.CDEndDist = 60;
    entry.IdealSpeedUser = 15;
    PlotState plot;
    ComputeRunDelay(RunOf({10, 20, 30, 0}, 1000), SettingsWithStopSpeed(0), plot, entry);
    // The end scan starts on sample 4 with 60 feet behind it. 60 - 1000 feet at 22 feet a second: -42.7 seconds.
    ExpectFigures(plot, entry, {1, 0, 4, 1000, 60, 0, 47});
}

TEST(DelayStatistics, IdealSpeedOfZeroLeavesDelayAndGrade) {
    StudyRunEntry entry;
    entry.ControlDelay = 33;
    entry.LOSGrade = "C";
    entry.StopDelay = 9;
    PlotState plot{BoundaryAxis::Time, 2, 3};
    EXPECT_ERROR(DivisionByZero, ComputeRunDelay(RunOf({0, 0, 0, 0, 0}, 1000), SettingsWithStopSpeed(0), plot, entry));
    EXPECT_EQ(entry.ControlDelay, 33);
    EXPECT_EQ(entry.LOSGrade, "C");
    EXPECT_EQ(entry.StopDelay, 2);
    EXPECT_EQ(entry.CDEndDist, 0);
}

TEST(DelayStatistics, OverflowKeepsWhatWasWritten) {
    StudyRunEntry entry;
    entry.CDStartDist = 25;
    entry.CDEndDist = 2000000000;
    entry.ControlDelay = 33;
    PlotState plot;
    plot.CDEndSample = -2147483647;
    EXPECT_ERROR(Overflow, ComputeRunDelay(RunOf({10, 20, 30, 40}, 1000), SettingsWithStopSpeed(0), plot, entry));
    EXPECT_EQ(plot.CDStartSample, 2);
    EXPECT_EQ(entry.IdealSpeedCalc, 7);
    EXPECT_EQ(entry.ControlDelay, 33);
    entry.IdealSpeedUser = 40000;
    plot.CDEndSample = 3;
    EXPECT_ERROR(Overflow, ComputeRunDelay(RunOf({10, 20, 30, 40}, 1000), SettingsWithStopSpeed(0), plot, entry))
        << "the ideal speed is shown as a 16-bit number";
}

TEST(DelayStatistics, RunsTooShortToLookAt) {
    StudyRunEntry entry;
    entry.CDStartDist = 100;
    entry.CDEndDist = 200;
    PlotState plot;
    EXPECT_ERROR(SubscriptOutOfRange, ComputeRunDelay(RunOf({}, 1000), SettingsWithStopSpeed(0), plot, entry));
    EXPECT_ERROR(SubscriptOutOfRange, ComputeRunDelay(RunOf({10}, 1000), SettingsWithStopSpeed(0), plot, entry));
}

TEST(DelayStatistics, ThresholdIsInclusiveInSinglePrecision) {
    StudyRunEntry entry;
    PlotState plot{BoundaryAxis::Time, 1, 4};
    // 22 feet a second are 15.0000001 mph with the factor as it is held, and 15 in single precision.
    ComputeRunDelay(RunOf({22, 44, 66, 88, 0}, 1000), SettingsWithStopSpeed(15), plot, entry);
    EXPECT_EQ(entry.StopDelay, 1);
    ComputeRunDelay(RunOf({22, 44, 66, 88, 0}, 1000), SettingsWithStopSpeed(30), plot, entry);
    EXPECT_EQ(entry.StopDelay, 2);
}

TEST(DelayStatistics, RunningDistancesAddRoundedIncrements) {
    const auto distances = RunningDistances(RunOf({1, 1, 3}, 1500));
    EXPECT_EQ(distances[1], 2);
    EXPECT_EQ(distances[2], 4);
    EXPECT_EQ(distances[3], 8);
}

TEST(DelayStatistics, StoredDistancesLieOnTheFirstSampleThatReachesThem) {
    const RunRecord run = RunOf({10, 20, 0, 30, 40}, 1000);  // 10, 30, 30, 60, 100 feet
    for (const auto& [feet, sample] :
         {std::pair{0, 0}, {1, 1}, {10, 1}, {11, 2}, {30, 2}, {31, 4}, {100, 5}, {101, 5}}) {
        StudyRunEntry entry;
        entry.CDStartDist = feet;
        entry.CDEndDist = feet;
        const PlotState plot = PlacedBoundaries(run, entry);
        EXPECT_EQ(plot.CDStartSample, sample) << feet;
        EXPECT_EQ(plot.CDEndSample, sample) << feet;
    }
}

}  // namespace
}  // namespace vantor
