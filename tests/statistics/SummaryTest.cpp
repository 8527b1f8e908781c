#include "statistics/Summary.h"

#include <gmock/gmock.h>

#include "statistics/Outliers.h"
#include "statistics/Reliability.h"
#include "statistics/RunsNeeded.h"

namespace vantor {
namespace {

using testing::DoubleNear, testing::Optional;
using Values = std::vector<double>;

const Values Times = {195, 206, 198, 207, 181, 215, 181, 241};
constexpr PermittedError FivePercent{PermittedError::Kind::Percent, 5};

auto About(double value, double error) { return Optional(DoubleNear(value, error)); }

TEST(Summary, MeansAndIntervals) {
    const Summary times = Summarise(Times, 95);
    EXPECT_THAT(times.Mean, Optional(203.0));
    EXPECT_THAT(times.Sd, About(19.530, 0.0005));
    EXPECT_THAT(times.Cv, About(0.0962, 0.00005));
    EXPECT_THAT(times.HalfWidth, About(16.33, 0.005));
    EXPECT_THAT(times.Median, Optional(202.0));
    const Summary delays = Summarise(Values{66, 79, 62, 77, 52, 85, 49, 105}, 95);
    EXPECT_THAT(delays.High, About(87.3, 0.05));
    // Standard deviation 1 and two values: half the width is the printed t over the root of two.
    EXPECT_NEAR(HalfWidthOf(1, 2, 95) * std::sqrt(2), 12.706, 0.0005);
    EXPECT_NEAR(HalfWidthOf(1, 121, 95) * 11, 1.980, 0.0005);
}

TEST(Summary, WhatIsNotDefinedHasNoValue) {
    EXPECT_EQ(Summarise(Values{}, 95), Summary());
    const Summary one = Summarise(Values{7}, 95);
    EXPECT_THAT(one.Mean, Optional(7.0));
    EXPECT_FALSE(one.Sd || one.Se || one.Cv || one.HalfWidth || one.Low);
    EXPECT_FALSE(Summarise(Values{-1, 1}, 95).Cv) << "of a mean that is not above 0";
    // Means of tenths are off by a rounding, equal values have no scatter all the same.
    EXPECT_THAT(Summarise(Values{0.1, 0.1, 0.1}, 95).HalfWidth, Optional(0.0));
    EXPECT_FALSE(Grubbs(Values(8, 0.1), 95));
    EXPECT_FALSE(Grubbs(Values{1, 1, 1, 1, 1, 90}, 95)) << "fewer than seven";
}

TEST(Summary, TheBandIsTheSummaryOfTheRunsSoFar) {
    const auto band = RunningBand(Times, 95);
    for (std::size_t n = 2; n <= Times.size(); ++n) {
        const Summary sofar = Summarise(std::span(Times).first(n), 95);
        EXPECT_NEAR(band[n - 1].Mean - *band[n - 1].HalfWidth, *sofar.Low, 1e-9);
    }
}

TEST(Summary, PercentilesAreThoseOfSpreadsheets) {
    EXPECT_THAT(PercentileOf(Values{50, 15, 40, 20, 35}, 0.4), About(29, 1e-12));
    // Resistivities of wafers (NIST handbook 7.2.6.2).
    const Values wafers = {95.1772, 95.1567, 95.1937, 95.1959, 95.1442, 95.0610,
                           95.1591, 95.1195, 95.1065, 95.0925, 95.1990, 95.1682};
    EXPECT_THAT(PercentileOf(wafers, 0.9), About(95.19568, 1e-9));
    EXPECT_FALSE(PercentileOf(Values{}, 0.5));
    EXPECT_THAT(PercentileOf(Values{3}, 0.95), Optional(3.0));

    const Reliability times = ReliabilityOf(Times, FreeFlowTime(5280 * 1.5, 45));
    EXPECT_THAT(times.P85, About(214.6, 0.05));
    EXPECT_THAT(times.P95, About(231.9, 0.05));
    EXPECT_THAT(times.BufferIndex, About(0.142, 0.0005));
    EXPECT_THAT(times.Lottr, About(1.049, 0.0005));
    EXPECT_THAT(times.TravelTimeIndex, About(203.0 / 120, 1e-12)) << "a mile and a half at 45 mph take two minutes";
    EXPECT_FALSE(ReliabilityOf(Times, FreeFlowTime(7920, std::nullopt)).PlanningTimeIndex);
    EXPECT_EQ(ReliabilityOf(Values{0, 0}, FreeFlowTime(0, 45)).BufferIndex, std::nullopt);
}

TEST(Summary, AnIntervalOfTheMedianTakesSixRuns) {
    EXPECT_FALSE(IntervalOfMedian(std::span(Times).first(5), 95));
    const MedianInterval interval = IntervalOfMedian(Times, 95).value();
    EXPECT_EQ(std::pair(interval.Low, interval.High), std::pair(181.0, 241.0));
    EXPECT_NEAR(interval.Coverage, 99.2, 0.05);
}

TEST(RunsNeeded, AfterEachRun) {
    const std::tuple<int, int, int, bool> table[] = {{2, 5, 3, false}, {3, 4, 3, false}, {4, 4, 3, false},
                                                     {5, 7, 4, true},  {6, 8, 4, true},  {7, 10, 5, true},
                                                     {8, 17, 7, true}};
    for (const auto& [n, five, ten, isEnough] : table) {
        const Summary sofar = Summarise(std::span(Times).first(static_cast<std::size_t>(n)), 95);
        EXPECT_THAT(RunsNeededFor(sofar, FivePercent, 95).Needed, Optional(five)) << n;
        const RunsNeeded needed = RunsNeededFor(sofar, {}, 95);
        EXPECT_THAT(needed.Needed, Optional(ten)) << n;
        EXPECT_EQ(needed.Enough, isEnough) << n;
    }
}

TEST(RunsNeeded, NoneIsStillNeededExactlyWhereTheHalfWidthIsWithinTheError) {
    for (const double confidence : {80.0, 95.0, 99.0}) {
        const Summary summary = Summarise(Times, confidence);
        std::vector<double> errors = {*summary.HalfWidth};
        for (double error = 1; error < 60; error += 0.25) errors.push_back(error);
        for (const double error : errors) {
            const auto needed = RunsNeededFor(summary, {PermittedError::Kind::Absolute, error}, confidence);
            EXPECT_EQ(needed.StillNeeded == 0, *summary.HalfWidth <= error) << confidence << ' ' << error;
        }
    }
}

TEST(RunsNeeded, Bounds) {
    EXPECT_EQ(RunsNeededFor(Summarise(Values{5}, 95), {}, 95).Needed, std::nullopt);
    EXPECT_EQ(RunsNeededFor(Summarise(Values{-5, 5}, 95), {}, 95).Needed, std::nullopt) << "no mean above 0";
    EXPECT_THAT(NeededRuns(0, 1, 95), Optional(2));
    EXPECT_EQ(NeededRuns(1000, 1, 95), std::nullopt) << "beyond the most";
    const std::tuple<double, double, double, int> plans[] = {{9, 90, 10, 5},   {9, 95, 10, 6},  {9, 95, 5, 15},
                                                             {12, 95, 10, 9},  {12, 95, 5, 25}, {15, 90, 10, 9},
                                                             {15, 95, 10, 12}, {15, 95, 5, 38}};
    for (const auto& [cv, confidence, error, runs] : plans)
        EXPECT_THAT(NeededRunsOfCv(cv, error, confidence), Optional(runs)) << cv << ' ' << error;
    EXPECT_THAT(RunsForDifference(19.5, -20, 95), Optional(16));
    EXPECT_THAT(RunsForDifference(19.5, 10, 95), Optional(61));
    EXPECT_EQ(RunsForDifference(0, 10, 95), std::nullopt);
}

TEST(Outliers, Grubbs) {
    const auto demo = Grubbs(Times, 95);
    ASSERT_TRUE(demo);
    EXPECT_NEAR(demo->G, 1.946, 0.0005);
    EXPECT_EQ(demo->Index, 7U);
    EXPECT_FALSE(demo->IsOutlier());
    // Uranium isotopes (NIST handbook 1.3.5.17.1).
    const auto uranium = Grubbs(Values{199.31, 199.53, 200.19, 200.82, 201.92, 201.95, 202.18, 245.57}, 95);
    EXPECT_NEAR(uranium->G, 2.4687, 0.0001);
    EXPECT_TRUE(uranium->IsOutlier());
    EXPECT_NEAR(GrubbsCritical(8, 0.05, 1), 2.032, 0.0005);
    const Values five = {1.154, 1.481, 1.715, 1.887, 2.020, 2.127, 2.215, 2.290, 2.355, 2.412, 2.462, 2.507, 2.549};
    for (std::size_t i = 0; i < five.size(); ++i)
        EXPECT_NEAR(GrubbsCritical(static_cast<int>(i) + 3, 0.05), five[i], 0.0011);
    EXPECT_NEAR(GrubbsCritical(14, 0.01), 2.755, 0.0005);
}

}  // namespace
}  // namespace vantor
