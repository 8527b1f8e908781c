#include "statistics/Figure.h"

#include <gmock/gmock.h>

namespace vantor {
namespace {

using testing::HasSubstr, testing::MatchesRegex;
using Values = std::vector<double>;

constexpr Units English{false};
constexpr Units Metric{true};

/// Runs of these travel times and control delays, half a mile each.
std::vector<MeasuredRun> RunsOf(const Values& times, const Values& delays, bool areBefore = false) {
    std::vector<MeasuredRun> runs(times.size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        runs[i].Measures.Whole = {static_cast<std::int32_t>(times[i]), 2640, 0, 0};
        runs[i].Measures.Sections = {runs[i].Measures.Whole};
        runs[i].IsBefore = areBefore;
        runs[i].IsCounted = i < delays.size();
        if (runs[i].IsCounted) runs[i].ControlDelay = static_cast<std::int32_t>(delays[i]);
    }
    return runs;
}

const Values Times = {195, 206, 198, 207, 181, 215, 181, 241};
const Values Delays = {66, 79, 62, 77, 52, 85, 49, 105};

GroupStatistics FirstRuns(std::size_t count) {
    auto runs = RunsOf(Times, Delays);
    runs.resize(count);
    return ComputeStatistics(runs, {}).Whole.All;
}

TEST(Figure, IsToldWithItsIntervalAndWhatItRestsOn) {
    const Figure delay = DelayFigure(FirstRuns(8), {});
    EXPECT_EQ(delay.WithInterval(English), "72 s ± 15");
    EXPECT_EQ(delay.NumberBeside(DelayFigure(FirstRuns(7), {}), English), "72 (67 without 1 set aside)");
    EXPECT_EQ(delay.NumberBeside(delay, English), "72");
    EXPECT_THAT(delay.Remarks(), HasSubstr("8 runs, 1 day, 00:00; 95 %"));
    const Figure times = MeanFigure(FirstRuns(8), Measure::TravelTime, {});
    EXPECT_EQ(times.WithInterval(English) + " / " + times.Interval(English), "203.0 s ± 16.3 / 186.7 to 219.3 s");
    EXPECT_THAT(MeanFigure(FirstRuns(3), Measure::TravelTime, {}).Remarks(), HasSubstr("few runs"));
    EXPECT_EQ(MeanFigure(FirstRuns(1), Measure::TravelTime, {}).WithInterval(English), "195.0 s");
    EXPECT_EQ(MeanFigure(FirstRuns(0), Measure::TravelTime, {}).WithInterval(English), NoValueText);
    const auto some = ComputeStatistics(RunsOf(Times, {66, 79}), {}).Whole.All;
    EXPECT_THAT(DelayFigure(some, {}).Remarks(), HasSubstr("2 of 8 runs have it; few runs"));
}

TEST(Figure, UnitsAreConvertedOnce) {
    StatisticsOptions options;
    options.FreeFlowSpeed = 45;
    const auto speeds = SpeedFigures(ComputeStatistics(RunsOf({60, 60}, {}), options).Whole.All, options, Metric);
    EXPECT_EQ(speeds[0].Text(English) + ", " + speeds[0].Text(Metric), "30.0 MPH, 48.3 KPH");
    EXPECT_THAT(speeds[2].Remarks(), HasSubstr("stopped below 8.0, until 16.1 KPH"));
    EXPECT_EQ(speeds[4].Text(English) + ", " + speeds[4].Text(Metric), "2640 ft, 804 m");
    EXPECT_EQ(ShownNumber(1.609, FigureUnit::PerMile, 2, Metric), "1.00");
    EXPECT_EQ(ShownNumber(62.5, FigureUnit::Seconds, 0, English), "62") << "as averages of a study are rounded";
    EXPECT_EQ(ProbabilityText(0.0009) + ProbabilityText(0.0043) + ProbabilityText({}), "< 0.0010.004–");
    EXPECT_EQ(PermittedErrorText({PermittedError::Kind::Absolute, 3}, Measure::TravelSpeed, Metric), "4.827 KPH");
}

TEST(Figure, PercentilesOfFewRunsAreWeak) {
    const auto isWeak = [](std::size_t runs) {
        std::string text;
        for (const Figure& figure :
             ReliabilityFigures(ComputeStatistics(RunsOf(Values(runs, 9), {}), {}).Whole.All, {}))
            text += figure.IsWeak ? 'w' : '-';
        return text;
    };
    EXPECT_EQ(isWeak(4), "wwwwww-w");
    EXPECT_EQ(isWeak(5), "---ww--w");
    EXPECT_EQ(isWeak(20), "--------");
    EXPECT_THAT(ReliabilityFigures(FirstRuns(8), {})[6].Remarks(), HasSubstr("no free-flow speed entered"));
}

TEST(Figure, RunsNeededNameMeasureAndError) {
    const auto text = [](std::size_t runs, Measure measure, const StatisticsOptions& options = {}) {
        auto measured = RunsOf(Times, Delays);
        measured.resize(runs);
        return RunsNeededText(ComputeStatistics(measured, options).Whole.All, measure, options, English);
    };
    EXPECT_EQ(text(8, Measure::ControlDelay), "for ±10 % of this delay 28 runs, 20 more");
    EXPECT_EQ(text(8, Measure::TravelTime), "for ±10 % of this travel time 7 runs, enough");
    EXPECT_EQ(text(4, Measure::TravelTime), "for ±10 % of this travel time 3 runs, but fewer than 5 are never enough");
    EXPECT_THAT(text(1, Measure::TravelTime), HasSubstr("two runs or more must be driven"));
    EXPECT_EQ(text(8, Measure::TravelTime, {95, {PermittedError::Kind::Absolute, 2.5}, 3, {}, {}, {}}).substr(0, 12),
              "for ±2.5 s ");
}

std::string Told(const Values& before, const Values& after, const StatisticsOptions& options = {}) {
    auto runs = RunsOf(before, {}, true);
    const auto others = RunsOf(after, {});
    runs.insert(runs.end(), others.begin(), others.end());
    return ComparisonText(ComputeStatistics(runs, options).Whole.Compared[Measure::TravelTime], Measure::TravelTime,
                          options, English);
}

TEST(Figure, AComparisonIsToldInASentence) {
    EXPECT_EQ(Told({203, 211, 198, 224, 207, 215}, {189, 195, 201, 184, 192, 186}),
              "Travel time fell by 18.5 s (8.8 %); 95 % interval 8.2 to 28.8 s.");
    EXPECT_THAT(Told({150, 210, 260, 190, 240}, {160, 230, 180, 250, 150}),
                MatchesRegex(".*no difference shown: interval −.* runs each way would show 21.0 s."));
    EXPECT_THAT(Told({200, 201, 199, 200}, {200, 199, 201, 200}),
                HasSubstr("no difference larger than 20.0 s: interval −"));
    EXPECT_THAT(Told({200, 201, 199}, {100, 101, 102}), HasSubstr("The check by ranks cannot tell"));
    EXPECT_THAT(Told({200}, {100, 101}), HasSubstr("no test: it takes two runs or more each way"));
    EXPECT_THAT(Told({200, 200}, {100, 100}),
                HasSubstr("a difference of −100.0 s (50.0 %); no test: neither group has scatter."));
    EXPECT_THAT(Told({}, {100, 101}), HasSubstr("nothing to compare"));
    EXPECT_THAT(Told({100, 101, 102, 103, 104}, {105, 106, 107, 108, 300}), HasSubstr("The tests disagree: Welch p = "))
        << "one far value hides from the one test what ranks show";
}

}  // namespace
}  // namespace vantor
