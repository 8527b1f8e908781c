#include "plots/SpeedProfile.h"

#include <gtest/gtest.h>

#include "Profiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

constexpr auto Start = ProfileLine::Start;
constexpr auto End = ProfileLine::End;
constexpr auto Ideal = ProfileLine::IdealSpeed;

TEST(ProfileDrag, CountsReleasesOfBoundariesNotDistinctLines) {
    constexpr auto None = ProfileLine::None;
    using Case = std::tuple<std::vector<ProfileLine>, int, bool>;
    for (const auto& [released, count, lastComputes] :
         {Case{{}, 0, false}, Case{{Start}, 1, false}, Case{{End}, 1, false}, Case{{Start, End}, 999, true},
          Case{{Start, Start}, 999, true}, Case{{End, End}, 999, true}, Case{{Ideal, Ideal, Ideal}, 0, false},
          Case{{Start, Ideal}, 1, false}, Case{{Start, Ideal, Start}, 999, true}, Case{{Start, End, Ideal}, 999, true},
          Case{{Start, End, End, End}, 999, true}, Case{{Start, End, None}, 999, false},
          Case{{None, None}, 0, false}}) {
        ProfileDrag drag;
        bool computes = false;
        for (const ProfileLine line : released) {
            drag.Grab(line);
            EXPECT_EQ(drag.DragLine(), line);
            computes = drag.Release();
            EXPECT_EQ(drag.DragLine(), None);
        }
        EXPECT_EQ(drag.ReleaseCount(), count);
        EXPECT_EQ(drag.IsReady(), count == 999);
        EXPECT_EQ(computes, lastComputes);
    }
}

RunRecord Rising() { return RunOf({10, 20, 30, 40, 50}); }

class SpeedProfileTest : public testing::Test {
protected:
    SpeedProfile& Open(RunRecord run) {
        Run = std::move(run);
        Profile.emplace(Run, Settings, Entry);
        Profile->Geometry().SetRectangle(RoundArea);
        return *Profile;
    }
    /// Drags a line to `pixels` right of the left edge, or above the baseline.
    void Drag(ProfileLine line, double pixels) {
        Profile->Grab(line);
        Profile->DragTo(RoundArea.Left + pixels, RoundArea.Baseline - pixels);
        Profile->Release();
    }
    void Step(ProfileLine line, double units) {
        Profile->Grab(line);
        Profile->MoveBy(units);
        Profile->Release();
    }

    /// Both along the axis that is shown.
    using Places = std::pair<std::optional<std::int32_t>, std::optional<std::int32_t>>;
    Places Boundaries() const { return {Profile->Boundary(Start), Profile->Boundary(End)}; }

    RunRecord Run;
    AppSettings Settings = EnglishSettings();
    StudyRunEntry Entry;
    std::optional<SpeedProfile> Profile;
};

TEST_F(SpeedProfileTest, TimeModeCountsTheStartSampleTwice) {
    SpeedProfile& profile = Open(Rising());
    profile.ToggleAxis();  // 5 seconds a step: 20 pixels a second
    Drag(Start, 40);
    Drag(End, 60);
    EXPECT_EQ(Boundaries(), Places(2, 3));
    EXPECT_EQ(BoundariesOf(Entry), std::pair(0, 0));  // until it is computed
    profile.Compute();
    EXPECT_EQ(BoundariesOf(Entry), std::pair(30, 80));
    // (20 + 30) / 2 ft/s are 17.05 mph; 1 s for 50 ft, 2 s at 25 ft/s.
    EXPECT_EQ(std::tuple(Entry.IdealSpeedCalc, Entry.ControlDelay, Entry.LOSGrade), std::tuple(17, -1, "A"));
    EXPECT_EQ(profile.ShownIdealSpeed(), 17);
}

TEST_F(SpeedProfileTest, EndBeyondTheDataIsTheWholeRunHoweverItIsReached) {
    for (const double before : {200.0, 800.0, 1000.0}) {
        Entry = {};
        SpeedProfile& profile = Open(Rising());  // 150 ft at 20 ft a step: 5 pixels a foot
        Drag(Start, 50);
        Drag(End, before);
        profile.Compute();
        Drag(End, 2000);
        EXPECT_EQ(Entry.CDEndDist, 150);
        profile.Compute();
        // The last sample is never looked at, so this is the drag's.
        EXPECT_EQ(std::pair(profile.Plot().CDStartSample, profile.Plot().CDEndSample), std::pair(1, 5));
        EXPECT_EQ(Entry.ControlDelay, -24);  // 4 s; 140 ft at (10 + 0) / 2 ft/s are 28 s
    }
    SpeedProfile& profile = Open(Rising());
    profile.ToggleAxis();
    Drag(End, 5000);
    EXPECT_EQ(profile.Plot().CDEndSample, 5);
    EXPECT_EQ(Entry.CDEndDist, 150);
}

TEST_F(SpeedProfileTest, StartAtTheEdgeIsNotSetAndIdealSpeedStaysInsideThePlot) {
    SpeedProfile& profile = Open(RunWithStop());
    Drag(Start, 200);
    EXPECT_EQ(profile.Boundary(Start), 2000);
    Drag(Start, -30);
    EXPECT_EQ(Entry.CDStartDist, 0);
    EXPECT_EQ(profile.Boundary(Start), std::nullopt);
    EXPECT_EQ(std::tuple(profile.PixelOf(Start), profile.PixelOf(End), profile.PixelOf(Ideal)),
              std::tuple(RoundArea.Left, RoundArea.Right, RoundArea.Top));
    // 34.1 mph: 40 mph up to the top, 10 pixels each.
    for (const double pixels : {254, 401, -1}) {
        Drag(Ideal, pixels);
        EXPECT_EQ(Entry.IdealSpeedUser, 25) << pixels;
    }
    EXPECT_DOUBLE_EQ(profile.PixelOf(Ideal), RoundArea.Baseline - 250);
    Drag(Ideal, 4);
    EXPECT_EQ(Entry.IdealSpeedUser, 0);
    EXPECT_EQ(profile.IdealSpeed(), std::nullopt);
}

TEST_F(SpeedProfileTest, BoundariesStandOnTheOtherAxisAndALookThereChangesNothing) {
    Entry = EntryWith(25, 75);
    Open(Rising());  // 10 30 60 100 150 ft
    Profile->ToggleAxis();
    EXPECT_EQ(Boundaries(), Places(2, 3));  // 30 + 20 + 30
    Profile->ToggleAxis();
    EXPECT_EQ(BoundariesOf(Entry), std::pair(25, 75));

    Entry = {};
    Open(Rising());
    Profile->ToggleAxis();
    Drag(Start, 20);
    Profile->ToggleAxis();
    EXPECT_EQ(Boundaries(), Places(10, std::nullopt));
    Profile->ToggleAxis();
    EXPECT_EQ(Profile->Boundary(Start), 1);
    Drag(Start, 60);
    Drag(End, 80);
    Profile->ToggleAxis();
    EXPECT_EQ(BoundariesOf(Entry), std::pair(60, 130));  // 60 + 30 + 40
}

TEST_F(SpeedProfileTest, TheNearestLineIsGrabbed) {
    Entry = EntryWith(300, 310, 5);
    SpeedProfile& profile = Open(RunOf(std::vector<int>(100, 10)));  // a foot a pixel, 40 pixels a mph
    constexpr auto None = ProfileLine::None;
    const double ideal = RoundArea.Baseline - 200;
    using Case = std::tuple<double, double, ProfileLine>;
    for (const auto& [x, y, line] :
         {Case{304, 60, Start}, Case{306, 60, End}, Case{305, 60, Start}, Case{293, 60, None}, Case{294, 60, Start},
          Case{316, 60, End}, Case{317, 60, None}, Case{600, ideal + 6, Ideal}, Case{600, ideal - 7, None},
          Case{298, ideal + 1, Ideal}, Case{299, ideal - 1, Start}})
        EXPECT_EQ(profile.LineAt(RoundArea.Left + x, y, 6), line) << x << ", " << y;
    Entry.CDEndDist = 300;
    EXPECT_EQ(profile.LineAt(RoundArea.Left + 299, 60, 6), Start);
    EXPECT_EQ(profile.LineAt(RoundArea.Left + 301, 60, 6), End);
}

TEST_F(SpeedProfileTest, StepsBeginWhereALineWaits) {
    Open(RunWithStop());
    using Case = std::tuple<ProfileLine, double, StudyRunEntry>;
    for (const auto& [line, units, entry] :
         {Case{Start, 100, EntryWith(100, 0)}, Case{Start, -101, EntryWith(0, 0)}, Case{End, -1, EntryWith(0, 8999)},
          Case{End, 100, EntryWith(0, 9000)}, Case{Ideal, -5, EntryWith(0, 9000, 35)},
          Case{Ideal, -50, EntryWith(0, 9000, 0)}}) {
        Step(line, units);
        EXPECT_EQ(Entry, entry) << units;
    }
    Profile->SetIdealSpeedUser(998);
    Step(Ideal, 5);
    EXPECT_EQ(Entry.IdealSpeedUser, 999);
    EXPECT_GE(Profile->Geometry().Speeds().Maximum, 999);
}

TEST_F(SpeedProfileTest, MetricStepsAreMetresAndKilometresPerHour) {
    Settings.MetricUnits = -1;
    Entry = EntryWith(100, 0, 42);  // 30.47 m
    SpeedProfile& profile = Open(RunWithStop());
    Step(Start, 1);
    EXPECT_EQ(std::pair(Entry.CDStartDist, profile.ShownBoundary(Start).value()), std::pair(103, 31));
    Step(Ideal, 1);  // 67.6 + 1 km/h = 42.6 mph
    EXPECT_EQ(std::pair(Entry.IdealSpeedUser, profile.ShownIdealSpeed().value()), std::pair(43, 69));
}

TEST_F(SpeedProfileTest, DamagedEntryIsShownWithoutHarm) {
    Settings.MetricUnits = -1;
    Entry = EntryWith(-2000000000, 2000000000, 2000000000);
    SpeedProfile& profile = Open(RunWithStop());
    EXPECT_EQ(profile.ShownIdealSpeed(), 52722);  // 32767 mph
    EXPECT_DOUBLE_EQ(profile.PixelOf(Ideal), RoundArea.Top);
    EXPECT_LT(profile.PixelOf(Start), RoundArea.Left);
    EXPECT_GT(profile.PixelOf(End), RoundArea.Right);
    EXPECT_ERROR(Overflow, profile.Compute());
    profile.ToggleAxis();
    profile.ToggleAxis();
    EXPECT_EQ(Entry.CDEndDist, 2000000000);
}

}  // namespace
}  // namespace vantor
