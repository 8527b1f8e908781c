#include "editing/TrimRun.h"

#include <gmock/gmock.h>

#include <random>

#include "Profiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;

/// 12 seconds; nodes after 3, 6 and 9, between the start and the end of the run. Each event record tells its sample.
RunRecord NodeRun() {
    RunRecord run = RunOf({10, 10, 0x8000 | 10, 10, 10, 0x8000 | 10, 10, 10, 0x8000 | 10, 10, 10, 10});
    int node = 0;
    for (const char* name : {"Start St", "Ash", "Birch", "Cedar", "End St"}) run.Header.SectionName[node++] = name;
    for (int i = 1; i <= 12; ++i) run.RunSamples[i].Speed = static_cast<float>(i);
    run.Header.RunTime = TimeOf(7, 59, 55);
    return run;
}

TEST(CutRun, NamesStayWithTheirNodes) {
    struct Case {
        std::int32_t First;
        std::int32_t Last;
        std::vector<std::string> Names;
    };
    for (const Case& c : {Case{1, 12, {"Start St", "Ash", "Birch", "Cedar", "End St", ""}},
                          {2, 12, {"", "Ash", "Birch", "Cedar", "End St", ""}},
                          {3, 12, {"", "Ash", "Birch", "Cedar", "End St", ""}},
                          {4, 12, {"Ash", "Birch", "Cedar", "End St", "", ""}},
                          {5, 12, {"", "Birch", "Cedar", "End St", "", ""}},
                          {5, 10, {"", "Birch", "Cedar", "", "", ""}},
                          {5, 9, {"", "Birch", "Cedar", "", "", ""}},
                          {1, 5, {"Start St", "Ash", "", "", "", ""}},
                          {10, 11, {"Cedar", "", "", "", "", ""}}}) {
        const RunHeader header = CutRun(NodeRun(), c.First, c.Last).Header;
        std::vector<std::string> names;
        for (int node = 0; node <= 5; ++node) names.push_back(header.SectionName[node]);
        EXPECT_THAT(names, ElementsAreArray(c.Names)) << c.First << " to " << c.Last;
    }
}

TEST(CutRun, EverythingDerivedIsDecodedAnew) {
    const RunRecord cut = CutRun(NodeRun(), 5, 10);
    EXPECT_EQ(cut.Header.SampleCount, 6);
    EXPECT_EQ(cut.Header.Duration, 6);
    EXPECT_EQ(cut.Header.RunLength, 60);
    EXPECT_EQ(cut.Header.NumberOfSections, 4);
    EXPECT_EQ(cut.Header.SectionDist[1], 20);
    EXPECT_EQ(cut.Header.SectionDist[2], 30);
    EXPECT_EQ(cut.Header.SectionDist[3], 10);
    EXPECT_EQ(cut.RunSamples.size(), 6u);
    EXPECT_EQ(cut.RunSamples[1].Speed, 5.0F);
    EXPECT_TRUE(HasNode(cut.SampleValues[2]));
    const CivilTime time = CivilOf(cut.Header.RunTime);
    EXPECT_EQ(time.Minute * 60 + time.Second, 59 * 60 + 59);
    EXPECT_EQ(CutRun(NodeRun(), 1, 12), NodeRun());
}

TEST(CutRun, RefusesSamplesThatAreNotThere) {
    for (const auto& [first, last] : {std::pair{0, 5}, {5, 4}, {5, 13}})
        EXPECT_ERROR(SubscriptOutOfRange, CutRun(NodeRun(), first, last)) << first;
    RunRecord withoutEvents = NodeRun();
    withoutEvents.RunSamples.Clear();
    EXPECT_ERROR(SubscriptOutOfRange, CutRun(withoutEvents, 2, 5));
}

TEST(CutRun, StartsOnTheNextDayPastMidnight) {
    RunRecord run = NodeRun();
    run.Header.RunDate = DateOf(2008, 12, 31);
    run.Header.RunTime = TimeOf(23, 59, 55);
    EXPECT_EQ(ShortDate(CutRun(run, 5, 12).Header.RunDate), "12/31/08");
    const RunHeader header = CutRun(run, 6, 12).Header;
    EXPECT_EQ(ShortDate(header.RunDate) + IsoDateTime(header.RunTime), "01/01/091899-12-30T00:00:00");
}

/// What a computation makes of an entry, and in which samples it finds the boundaries.
struct Figures {
    std::int32_t TravelTime, Feet, IdealSpeed, ControlDelay, StopDelay;
    bool operator==(const Figures&) const = default;
};
void PrintTo(const Figures& f, std::ostream* out) {
    *out << f.TravelTime << " s " << f.Feet << " ft " << f.IdealSpeed << " mph " << f.ControlDelay << " "
         << f.StopDelay;
}

Figures Compute(const RunRecord& run, PlotState& plot, StudyRunEntry& entry) {
    try {
        ComputeRunDelay(run, EnglishSettings(), plot, entry);
    } catch (const RunTimeError&) {
        entry.ControlDelay = -99999;  // as it does after the cut, too
    }
    return {plot.CDEndSample - plot.CDStartSample, entry.CDEndDist - entry.CDStartDist, entry.IdealSpeedCalc,
            entry.ControlDelay, entry.StopDelay};
}

TEST(TrimToBoundaries, KeepsTheSecondsThatAComputationNeeds) {
    struct Case {
        std::vector<int> Values;
        PlotState Plot;
        std::int32_t Start, End;  ///< feet
        std::vector<int> Kept;
        std::int32_t NewStart, NewEnd;
    };
    const auto time = BoundaryAxis::Time;
    const auto distance = BoundaryAxis::Distance;
    // Over distance the start is in second 2 (30 ft), whose 20 ft count twice: 30 + 20 + 30 + 40 ft in second 4.
    for (const Case& c : {Case{{10, 20, 30, 40, 50, 60}, {distance, 0, 0}, 25, 115, {20, 30, 40, 50}, 15, 105},
                          {{10, 20, 30, 40, 50}, {distance, 0, 0}, 25, 115, {20, 30, 40, 50}, 15, 105},
                          {{10, 20, 0, 0, 40, 50, 60}, {time, 4, 6}, 30, 120, {20, 0, 0, 40, 50, 60}, 20, 110},
                          {{0, 0, 10, 20, 30, 0}, {time, 4, 5}, 30, 80, {20, 30, 0}, 20, 70}}) {
        StudyRunEntry entry;
        entry.CDStartDist = c.Start;
        entry.CDEndDist = c.End;
        TrimmedRun trimmed = TrimToBoundaries(RunOf(c.Values), c.Plot, entry);
        EXPECT_EQ(trimmed.Problem, "");
        EXPECT_EQ(trimmed.Run.SampleValues, RunOf(c.Kept).SampleValues);
        EXPECT_EQ(trimmed.Entry.CDStartDist, c.NewStart);
        EXPECT_EQ(trimmed.Entry.CDEndDist, c.NewEnd);
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
        StudyRunEntry entry;
        const int feet = std::max(run.Header.RunLength, 1);
        entry.CDStartDist = 1 + below(feet);
        entry.CDEndDist = 1 + below(feet + feet / 8 + 1);
        entry.IdealSpeedUser = below(3) == 0 ? 20 + below(40) : 0;
        PlotState plot = PlacedBoundaries(run, entry);
        if (below(2) == 0) plot.Axis = BoundaryAxis::Time;
        const Figures before = Compute(run, plot, entry);
        TrimmedRun trimmed = TrimToBoundaries(run, plot, entry);
        if (!trimmed.Problem.empty()) continue;
        ++cuts;
        const auto kept = trimmed.Entry;
        ASSERT_EQ(Compute(trimmed.Run, trimmed.Plot, trimmed.Entry), before) << "round " << round;
        ASSERT_EQ(trimmed.Entry.CDStartDist, kept.CDStartDist) << "round " << round;
        // From the study's window and command line it is computed anew, over distance.
        PlotState placed = PlacedBoundaries(trimmed.Run, kept);
        const bool isPlaced = plot.Axis == BoundaryAxis::Distance;
        ASSERT_TRUE(!isPlaced || Compute(trimmed.Run, placed, trimmed.Entry) == before) << "round " << round;
    }
    EXPECT_GT(cuts, 1000);
}

TEST(TrimToBoundaries, SaysWhatKeepsARunFromBeingTrimmed) {
    const auto problem = [](const PlotState& plot, std::int32_t start, std::int32_t end) {
        StudyRunEntry entry;
        entry.CDStartDist = start;
        entry.CDEndDist = end;
        return TrimToBoundaries(NodeRun(), plot, entry).Problem;  // 12 s of 10 ft
    };
    const auto time = BoundaryAxis::Time;
    EXPECT_EQ(problem({}, 50, 90), "");
    EXPECT_THAT(problem({}, 50, 0), HasSubstr("not set"));
    EXPECT_THAT(problem({}, 90, 50), HasSubstr("before the start boundary"));
    EXPECT_THAT(problem({}, 50, 50), HasSubstr("same second"));
    EXPECT_THAT(problem({}, 50, 60), HasSubstr("same second"));  // its 10 ft count twice
    EXPECT_THAT(problem({}, 111, 115), HasSubstr("come to the start"));
    EXPECT_EQ(problem({}, 50, 120), "");
    EXPECT_THAT(problem({}, 50, 121), HasSubstr("come to the end"));
    EXPECT_THAT(problem({time, 9, 8}, 90, 90), HasSubstr("before the start boundary"));
    EXPECT_THAT(problem({time, 5, 12}, 50, 120), HasSubstr("come to the end"));
    EXPECT_EQ(problem({time, 0, 8}, 10, 90), "");  // a start boundary at the left edge of the axis
}

}  // namespace
}  // namespace vantor
