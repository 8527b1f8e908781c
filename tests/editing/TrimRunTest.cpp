#include "editing/TrimRun.h"

#include <gmock/gmock.h>

#include <random>

#include "analysis/CutRun.h"
#include "fakes/ThrowsError.h"
#include "plots/Profiles.h"

namespace vantor {
namespace {

using testing::HasSubstr;

TEST(CutRun, NamesStayWithTheirNodes) {
    using Case = std::tuple<std::int32_t, std::int32_t, const char*>;
    for (const auto& [first, last, names] :
         {Case{1, 12, "Start St|Ash|Birch|Cedar|End St|"}, Case{2, 12, "|Ash|Birch|Cedar|End St|"},
          Case{3, 12, "|Ash|Birch|Cedar|End St|"}, Case{4, 12, "Ash|Birch|Cedar|End St||"},
          Case{5, 12, "|Birch|Cedar|End St||"}, Case{5, 10, "|Birch|Cedar|||"}, Case{5, 9, "|Birch|Cedar|||"},
          Case{1, 5, "Start St|Ash||||"}, Case{10, 11, "Cedar|||||"}})
        EXPECT_EQ(NamesOf(CutRun(RunWithNodes(), first, last).Header, 6), names) << first << " to " << last;
}

TEST(CutRun, EverythingDerivedIsDecodedAnew) {
    const RunRecord run = RunWithNodes();
    const RunRecord cut = CutRun(run, 5, 10);
    const RunHeader& header = cut.Header;
    EXPECT_EQ(std::tuple(header.SampleCount, header.Duration, header.RunLength, header.NumberOfSections),
              std::tuple(6, 6, 60, 4));
    EXPECT_EQ(std::tuple(header.SectionDist[1], header.SectionDist[2], header.SectionDist[3]), std::tuple(20, 30, 10));
    EXPECT_EQ(std::tuple(cut.RunSamples.size(), cut.RunSamples[1].Speed), std::tuple(6u, 5.0F));
    EXPECT_TRUE(HasNode(cut.SampleValues[2]));
    EXPECT_EQ(IsoDateTime(header.RunTime).substr(11), "07:59:59");
    EXPECT_EQ(CutRun(run, 1, 12), run);
}

TEST(CutRun, RefusesSamplesThatAreNotThere) {
    for (const auto& part : {std::pair{0, 5}, {5, 4}, {5, 13}})
        EXPECT_ERROR(SubscriptOutOfRange, CutRun(RunWithNodes(), part.first, part.second)) << part.first;
    RunRecord withoutEvents = RunWithNodes();
    withoutEvents.RunSamples.Clear();
    EXPECT_ERROR(SubscriptOutOfRange, CutRun(withoutEvents, 2, 5));
}

TEST(CutRun, StartsOnTheNextDayPastMidnight) {
    RunRecord run = RunWithNodes();
    run.Header.RunDate = DateOf(2008, 12, 31);
    run.Header.RunTime = TimeOf(23, 59, 55);
    EXPECT_EQ(ShortDate(CutRun(run, 5, 12).Header.RunDate), "12/31/08");
    const RunHeader header = CutRun(run, 6, 12).Header;
    EXPECT_EQ(ShortDate(header.RunDate) + IsoDateTime(header.RunTime), "01/01/091899-12-30T00:00:00");
}

/// What a computation makes of an entry, and in which samples it finds the boundaries.
std::array<std::int32_t, 5> Compute(const RunRecord& run, PlotState& plot, StudyRunEntry& entry) {
    try {
        ComputeRunDelay(run, EnglishSettings(), plot, entry);
    } catch (const RunTimeError&) {
        entry.ControlDelay = -99999;  // as it does after the cut, too
    }
    return {plot.CDEndSample - plot.CDStartSample, entry.CDEndDist - entry.CDStartDist, entry.IdealSpeedCalc,
            entry.ControlDelay, entry.StopDelay};
}

TEST(TrimToBoundaries, KeepsTheSecondsThatAComputationNeeds) {
    using Feet = std::pair<std::int32_t, std::int32_t>;
    using Case = std::tuple<std::vector<int>, PlotState, Feet, std::vector<int>, Feet>;
    const auto time = BoundaryAxis::Time;
    const auto distance = BoundaryAxis::Distance;
    // Over distance the start is in second 2 (30 ft), whose 20 ft count twice: 30 + 20 + 30 + 40 ft in second 4.
    for (const auto& [values, plot, boundaries, kept, moved] :
         {Case{{10, 20, 30, 40, 50, 60}, {distance, 0, 0}, {25, 115}, {20, 30, 40, 50}, {15, 105}},
          Case{{10, 20, 30, 40, 50}, {distance, 0, 0}, {25, 115}, {20, 30, 40, 50}, {15, 105}},
          Case{{10, 20, 0, 0, 40, 50, 60}, {time, 4, 6}, {30, 120}, {20, 0, 0, 40, 50, 60}, {20, 110}},
          Case{{0, 0, 10, 20, 30, 0}, {time, 4, 5}, {30, 80}, {20, 30, 0}, {20, 70}}}) {
        const auto trimmed = TrimToBoundaries(RunOf(values), plot, EntryWith(boundaries.first, boundaries.second));
        EXPECT_EQ(trimmed.Problem, "");
        EXPECT_EQ(trimmed.Run.SampleValues, RunOf(kept).SampleValues);
        EXPECT_EQ(BoundariesOf(trimmed.Entry), moved);
        EXPECT_THAT(TrimToBoundaries(trimmed.Run, trimmed.Plot, trimmed.Entry).Problem, HasSubstr("nothing to cut"));
    }
}

TEST(TrimToBoundaries, NeverChangesAFigure) {
    std::mt19937 random(1);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    int cuts = 0;
    for (int round = 0; round < 4000; ++round) {
        std::vector<int> values;
        int speed = below(80);
        for (int seconds = 2 + below(120); seconds > 0; --seconds) {
            speed = below(9) == 0 ? 0 : std::clamp(speed + below(25) - 12, 0, 200);
            values.push_back(below(12) == 0 ? speed | 0x8000 : speed);
        }
        const RunRecord run = RunOf(values, static_cast<std::int16_t>(100 + below(2500)));
        const int feet = std::max(run.Header.RunLength, 1);
        const int start = 1 + below(feet);
        const int end = 1 + below(feet + feet / 8 + 1);
        StudyRunEntry entry = EntryWith(start, end, below(3) == 0 ? 20 + below(40) : 0);
        PlotState plot = PlacedBoundaries(run, entry);
        if (below(2) == 0) plot.Axis = BoundaryAxis::Time;
        const auto before = Compute(run, plot, entry);
        TrimmedRun trimmed = TrimToBoundaries(run, plot, entry);
        if (!trimmed.Problem.empty()) continue;
        ++cuts;
        const auto kept = trimmed.Entry;
        ASSERT_EQ(Compute(trimmed.Run, trimmed.Plot, trimmed.Entry), before) << "round " << round;
        ASSERT_EQ(trimmed.Entry.CDStartDist, kept.CDStartDist) << "round " << round;
        // From the study's window and command line it is computed anew, over distance.
        PlotState placed = PlacedBoundaries(trimmed.Run, kept);
        if (plot.Axis == BoundaryAxis::Distance) {
            ASSERT_EQ(Compute(trimmed.Run, placed, trimmed.Entry), before) << "round " << round;
        }
    }
    EXPECT_GT(cuts, 1000);
}

TEST(TrimToBoundaries, SaysWhatKeepsARunFromBeingTrimmed) {
    using Case = std::tuple<PlotState, std::int32_t, std::int32_t, const char*>;
    const auto time = BoundaryAxis::Time;
    for (const auto& [plot, start, end, says] :
         {Case{{}, 50, 90, ""}, Case{{}, 50, 0, "not set"}, Case{{}, 90, 50, "before the start boundary"},
          Case{{}, 50, 50, "same second"}, Case{{}, 50, 60, "same second"},  // its 10 ft count twice
          Case{{}, 111, 115, "come to the start"}, Case{{}, 50, 120, ""}, Case{{}, 50, 121, "come to the end"},
          Case{{time, 9, 8}, 90, 90, "before the start boundary"}, Case{{time, 5, 12}, 50, 120, "come to the end"},
          Case{{time, 0, 8}, 10, 90, ""}}) {  // a start boundary at the left edge of the axis
        // 12 s of 10 ft
        const std::string problem = TrimToBoundaries(RunWithNodes(), plot, EntryWith(start, end)).Problem;
        EXPECT_EQ(problem.empty(), *says == '\0') << problem;
        EXPECT_THAT(problem, HasSubstr(says));
    }
}

}  // namespace
}  // namespace vantor
