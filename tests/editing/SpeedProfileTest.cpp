#include "editing/SpeedProfile.h"

#include <gtest/gtest.h>

#include "Profiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

constexpr auto Start = ProfileLine::Start;
constexpr auto End = ProfileLine::End;
constexpr auto Ideal = ProfileLine::IdealSpeed;

TEST(ProfileDrag, CountsReleasesOfBoundariesNotDistinctLines) {
    struct Case {
        std::vector<ProfileLine> Released;
        std::int16_t Count;
        bool LastComputes;
    };
    for (const Case& c : {Case{{}, 0, false},
                          {{Start}, 1, false},
                          {{End}, 1, false},
                          {{Start, End}, 999, true},
                          {{Start, Start}, 999, true},
                          {{End, End}, 999, true},
                          {{Ideal, Ideal, Ideal}, 0, false},
                          {{Start, Ideal}, 1, false},
                          {{Start, Ideal, Start}, 999, true},
                          {{Start, End, Ideal}, 999, true},
                          {{Start, End, End, End}, 999, true},
                          {{Start, End, ProfileLine::None}, 999, false},
                          {{ProfileLine::None, ProfileLine::None}, 0, false}}) {
        ProfileDrag drag;
        bool computes = false;
        for (const ProfileLine line : c.Released) {
            drag.Grab(line);
            EXPECT_EQ(drag.DragLine(), line);
            computes = drag.Release();
            EXPECT_EQ(drag.DragLine(), ProfileLine::None);
        }
        EXPECT_EQ(drag.ReleaseCount(), c.Count);
        EXPECT_EQ(drag.IsReady(), c.Count == 999);
        EXPECT_EQ(computes, c.LastComputes);
    }
}

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

    RunRecord Run;
    AppSettings Settings = EnglishSettings();
    StudyRunEntry Entry;
    std::optional<SpeedProfile> Profile;
};

TEST_F(SpeedProfileTest, TimeModeCountsTheStartSampleTwice) {
    SpeedProfile& profile = Open(RisingRun(5));
    profile.ToggleAxis();  // 5 seconds a step: 20 pixels a second
    Drag(Start, 40);
    Drag(End, 60);
    EXPECT_EQ(profile.Plot().CDStartSample, 2);
    EXPECT_EQ(profile.Plot().CDEndSample, 3);
    EXPECT_EQ(Entry.CDStartDist, 0);  // until it is computed
    EXPECT_EQ(Entry.CDEndDist, 0);

    profile.Compute();
    EXPECT_EQ(Entry.CDStartDist, 30);
    EXPECT_EQ(Entry.CDEndDist, 80);
    EXPECT_EQ(Entry.IdealSpeedCalc, 17);  // (20 + 30) / 2 ft/s = 17.05 mph
    EXPECT_EQ(Entry.ControlDelay, -1);    // 1 s for 50 ft, 2 s at 25 ft/s
    EXPECT_EQ(Entry.LOSGrade, "A");
    EXPECT_EQ(profile.ShownIdealSpeed(), 17);
}

TEST_F(SpeedProfileTest, EndBeyondTheDataIsTheWholeRunHoweverItIsReached) {
    for (const double before : {200.0, 800.0, 1000.0}) {
        Entry = {};
        SpeedProfile& profile = Open(RisingRun(5));  // 150 ft at 20 ft a step: 5 pixels a foot
        Drag(Start, 50);
        Drag(End, before);
        profile.Compute();
        Drag(End, 2000);
        EXPECT_EQ(Entry.CDEndDist, 150);
        profile.Compute();
        EXPECT_EQ(profile.Plot().CDStartSample, 1);
        EXPECT_EQ(profile.Plot().CDEndSample, 5);  // the last sample is never looked at, so this is the drag's
        EXPECT_EQ(Entry.ControlDelay, -24);        // 4 s; 140 ft at (10 + 0) / 2 ft/s are 28 s
    }
    SpeedProfile& profile = Open(RisingRun(5));
    profile.ToggleAxis();
    Drag(End, 5000);
    EXPECT_EQ(profile.Plot().CDEndSample, 5);
    EXPECT_EQ(Entry.CDEndDist, 150);
}

TEST_F(SpeedProfileTest, StartAtOrLeftOfTheEdgeIsNotSet) {
    SpeedProfile& profile = Open(RunWithStop());
    Drag(Start, 200);
    EXPECT_EQ(profile.Boundary(Start), 2000);
    Drag(Start, -30);
    EXPECT_EQ(Entry.CDStartDist, 0);
    EXPECT_EQ(profile.Boundary(Start), std::nullopt);
    EXPECT_DOUBLE_EQ(profile.PixelOf(Start), RoundArea.Left);
    EXPECT_DOUBLE_EQ(profile.PixelOf(End), RoundArea.Right);
    EXPECT_DOUBLE_EQ(profile.PixelOf(Ideal), RoundArea.Top);
}

TEST_F(SpeedProfileTest, IdealSpeedFollowsOnlyInsideThePlot) {
    SpeedProfile& profile = Open(RunWithStop());  // 34.1 mph: 40 mph up to the top, 10 pixels each
    Drag(Ideal, 254);
    EXPECT_EQ(Entry.IdealSpeedUser, 25);
    EXPECT_DOUBLE_EQ(profile.PixelOf(Ideal), RoundArea.Baseline - 250);
    Drag(Ideal, 401);
    Drag(Ideal, -1);
    EXPECT_EQ(Entry.IdealSpeedUser, 25);
    Drag(Ideal, 4);
    EXPECT_EQ(Entry.IdealSpeedUser, 0);
    EXPECT_EQ(profile.IdealSpeed(), std::nullopt);
    EXPECT_EQ(profile.Drag().ReleaseCount(), 0);
}

TEST_F(SpeedProfileTest, LookingAtTheOtherAxisChangesNothing) {
    Entry.CDStartDist = 25;
    Entry.CDEndDist = 75;
    SpeedProfile& profile = Open(RisingRun(5));  // 10 30 60 100 150 ft
    profile.ToggleAxis();
    EXPECT_EQ(profile.Boundary(Start), 2);
    EXPECT_EQ(profile.Boundary(End), 3);  // 30 + 20 + 30
    profile.ToggleAxis();
    EXPECT_EQ(Entry.CDStartDist, 25);
    EXPECT_EQ(Entry.CDEndDist, 75);
}

TEST_F(SpeedProfileTest, BoundariesDraggedOnOneAxisStandOnTheOther) {
    SpeedProfile& profile = Open(RisingRun(5));
    profile.ToggleAxis();
    Drag(Start, 20);
    profile.ToggleAxis();
    EXPECT_EQ(profile.Boundary(Start), 10);
    EXPECT_EQ(profile.Boundary(End), std::nullopt);
    profile.ToggleAxis();
    EXPECT_EQ(profile.Boundary(Start), 1);
    Drag(Start, 60);
    Drag(End, 80);
    profile.ToggleAxis();
    EXPECT_EQ(Entry.CDStartDist, 60);
    EXPECT_EQ(Entry.CDEndDist, 130);  // 60 + 30 + 40
}

TEST_F(SpeedProfileTest, TheNearestLineIsGrabbed) {
    Entry.CDStartDist = 300;
    Entry.CDEndDist = 310;
    Entry.IdealSpeedUser = 5;
    SpeedProfile& profile = Open(RunOf(std::vector<int>(100, 10)));  // a foot a pixel, 40 pixels a mph
    const double ideal = RoundArea.Baseline - 200;
    struct Case {
        double X;
        double Y;
        ProfileLine Line;
    };
    for (const Case& c : {Case{304, 60, Start},
                          {306, 60, End},
                          {305, 60, Start},
                          {293, 60, ProfileLine::None},
                          {294, 60, Start},
                          {316, 60, End},
                          {317, 60, ProfileLine::None},
                          {600, ideal + 6, Ideal},
                          {600, ideal - 7, ProfileLine::None},
                          {298, ideal + 1, Ideal},
                          {299, ideal - 1, Start}})
        EXPECT_EQ(profile.LineAt(RoundArea.Left + c.X, c.Y, 6), c.Line) << c.X << ", " << c.Y;
    Entry.CDEndDist = 300;
    EXPECT_EQ(profile.LineAt(RoundArea.Left + 299, 60, 6), Start);
    EXPECT_EQ(profile.LineAt(RoundArea.Left + 301, 60, 6), End);
}

TEST_F(SpeedProfileTest, StepsBeginWhereALineWaits) {
    Open(RunWithStop());
    Step(Start, 100);
    EXPECT_EQ(Entry.CDStartDist, 100);
    Step(Start, -101);
    EXPECT_EQ(Entry.CDStartDist, 0);
    Step(End, -1);
    EXPECT_EQ(Entry.CDEndDist, 8999);
    Step(End, 100);
    EXPECT_EQ(Entry.CDEndDist, 9000);
    Step(Ideal, -5);
    EXPECT_EQ(Entry.IdealSpeedUser, 35);
    Step(Ideal, -50);
    EXPECT_EQ(Entry.IdealSpeedUser, 0);
    Profile->SetIdealSpeedUser(998);
    Step(Ideal, 5);
    EXPECT_EQ(Entry.IdealSpeedUser, 999);
    EXPECT_GE(Profile->Geometry().Speeds().Maximum, 999);
}

TEST_F(SpeedProfileTest, MetricStepsAreMetresAndKilometresPerHour) {
    Settings.MetricUnits = -1;
    Entry.CDStartDist = 100;  // 30.47 m
    Entry.IdealSpeedUser = 42;
    SpeedProfile& profile = Open(RunWithStop());
    Step(Start, 1);
    EXPECT_EQ(Entry.CDStartDist, 103);
    EXPECT_EQ(profile.ShownBoundary(Start), 31);
    Step(Ideal, 1);  // 67.6 + 1 km/h = 42.6 mph
    EXPECT_EQ(Entry.IdealSpeedUser, 43);
    EXPECT_EQ(profile.ShownIdealSpeed(), 69);
}

TEST_F(SpeedProfileTest, DamagedEntryIsShownWithoutHarm) {
    Settings.MetricUnits = -1;
    Entry.CDStartDist = -2000000000;
    Entry.CDEndDist = 2000000000;
    Entry.IdealSpeedUser = 2000000000;
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
