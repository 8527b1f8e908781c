#include <gmock/gmock.h>
#include <QTimer>

#include "ProfileScene.h"
#include "core/ContentHash.h"
#include "editing/NodeEditing.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::HasSubstr;

class frmPlotRunSpeedProfileHorizTest : public ProfileScene {};

TEST_F(frmPlotRunSpeedProfileHorizTest, TwoDragsComputeTheRunAndLetTheUserSave) {
    OpenPlot();
    EXPECT_THAT(Description(), HasSubstr("Start boundary: not set. End boundary: not set."));
    Drag(At(0), {At(90), At(200)});
    EXPECT_EQ(Text("lblContDelay"), "–");
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    Drag(At(1000), {At(700)});
    // From 40 s to 159 s: 119 s for 5000 feet, which take 100 s at 50 ft/s; 20 s of them at rest.
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(2000, 7000));
    EXPECT_EQ(Entry().StopDelay, 20);
    EXPECT_EQ(Text("lblContDelay") + Text("lblLOS") + " " + Text("txtIdealSpeed"), " 19B 34");
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(Get<QPushButton>("BtnPlotSpeedExit").palette().color(QPalette::Button), QColor(0xC0, 0xFF, 0xC0));
    EXPECT_TRUE(IsEnabled("btnTrim"));

    // Every further drag computes at once.
    Hold(At(200));
    MoveTo(At(300));
    EXPECT_EQ(Text("lblContDelay"), " 19");
    EXPECT_EQ(Entry().CDStartDist, 3000);
    MoveTo(At(600));
    EXPECT_EQ(Text("lblContDelay"), "-1");  // behind the stop: 19 s for 1000 feet
    Release(At(600));
    Press("BtnPlotSpeedExit");
    EXPECT_TRUE(IsAccepted());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, OpensWithTheFiguresOfARunThatWasDone) {
    // Both between two samples, onto which a computation over time would move them.
    SetBoundaries(2010, 7010);
    Entry().ControlDelay = 77;
    OpenPlot();
    EXPECT_EQ(Text("lblContDelay"), " 19");  // from 41 s to 160 s, 5000 feet
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_FALSE(State.StudyUnchanged);
    const StudyRunEntry computed = Entry();
    Press("btnToggleSpdTime");
    Press("btnToggleSpdTime");
    EXPECT_EQ(Entry(), computed);
    CloseEarly();

    Entry().StopDelay = 99;  // at another threshold
    const StudyRunEntry stored = Entry();
    State.StudyUnchanged = true;
    OpenPlot();
    CloseEarly();
    EXPECT_EQ(Entry(), stored) << "a look changes no figure";
    EXPECT_TRUE(State.StudyUnchanged);
}

TEST_F(frmPlotRunSpeedProfileHorizTest, EveryWayOutAsksBeforeTwoReleases) {
    OpenPlot();
    Drag(At(0), {At(200)});
    Get<QLineEdit>("txtEditRunName").setText("Not yet");
    EXPECT_FALSE(Leaves(EarlyClose, MessageAnswer::Retry));
    Messages.Expect(EarlyClose, MessageAnswer::Retry);
    PressKey(Qt::Key_Escape);
    PressKey(Qt::Key_F1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return DesktopServices.Opened.size() == 1; }, 2000));
    EXPECT_TRUE(Window->isVisible());
    EXPECT_EQ(State.CurrentRun.Header.RunName, "A");
    Drag(At(200), {At(300)});  // the releases are still counted
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());
    for (const int entry : {0, 2})
        EXPECT_ERROR(SubscriptOutOfRange, frmPlotRunSpeedProfileHoriz(Context, ProfileVisit{.Run = entry}));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, RunNameIsTakenOverOnLeaving) {
    using Case = std::pair<const char*, const char*>;
    for (const auto& [typed, name] :
         {Case{"Elm to Oak", "Elm to Oak"},
          Case{"0123456789012345678901234567890123456789", "01234567890123456789012345678901"}, Case{"", "A"}}) {
        State.CurrentRun.Header.RunName = "A";
        OpenPlot();
        Get<QLineEdit>("txtEditRunName").setText(QLatin1String(typed));
        CloseEarly();
        EXPECT_EQ(State.CurrentRun.Header.RunName, name);
    }
}

TEST_F(frmPlotRunSpeedProfileHorizTest, TypedIdealSpeed) {
    OpenPlot();
    TypeIdealSpeed("50");
    EXPECT_EQ(Text("lblContDelay"), "–");  // there is nothing to compute yet
    DragBoundaries();
    TypeIdealSpeed("45");
    EXPECT_EQ(Entry().ControlDelay, 43);  // 119 s; 5000 feet at 66 ft/s are 76 s
    EXPECT_EQ(Text("lblLOS"), "D");
    EXPECT_TRUE(Window->isVisible());  // Enter has not pressed Save / Exit
    for (const char* wrong : {"fast", "12.5", "-3", "1000"}) {
        Messages.Expect(
            "The ideal speed is a whole number of MPH from 1 to 999.\nEnter 0 or nothing for the computed one.");
        TypeIdealSpeed(wrong);
        EXPECT_EQ(Text("txtIdealSpeed"), "45") << wrong;
        EXPECT_EQ(Entry().IdealSpeedUser, 45);
    }
    for (const char* none : {"0", " "}) {
        TypeIdealSpeed("45");
        TypeIdealSpeed(none);
        EXPECT_EQ(std::pair(Entry().IdealSpeedUser, Entry().ControlDelay), std::pair(0, 19));
        EXPECT_EQ(Text("txtIdealSpeed"), "34");
    }
    TypeInto("txtIdealSpeed", "45");
    Press("BtnPlotSpeedExit");  // left without Enter
    EXPECT_EQ(std::pair(Entry().IdealSpeedUser, Entry().ControlDelay), std::pair(45, 43));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, MetricShowsItsUnitsAndStoresFeetAndMilesPerHour) {
    State.Settings.MetricUnits = -1;
    SetBoundaries(0, 7001);  // shown as 2133 m, which are 7000 ft
    OpenPlot();              // 9000 ft = 2742.6 m, 500 m a step: 5 m a pixel
    EXPECT_EQ(Scale(), "500 Meters");
    Drag(At(0), {At(100)});
    Get<QWidget>("txtEnd").setFocus();
    PressKey(Qt::Key_Return);
    TypeIdealSpeed("33");                                     // whole miles per hour: 53.1 km/h
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(1641, 7001));  // 500 m = 1640.8 ft
    EXPECT_EQ(Entry().IdealSpeedUser, 33);
    EXPECT_EQ(Text("txtIdealSpeed") + " " + Text("lblIdealSpeedSource"), "33 MPH = 53 KPH (set by hand)");
    EXPECT_THAT(Description(), HasSubstr("Ideal speed: 53 KPH"));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, TrimRunAsksAndKeepsTheUntrimmedRun) {
    OpenPlot();
    DragBoundaries();
    const std::string question =
        "Do you want to trim run: A\nto the part between its boundaries?\n\nThe untrimmed run is kept as A.rd2.bak.";
    const std::string delay = Text("lblContDelay");
    PressTold("btnTrim", question, MessageAnswer::No);
    Files.FailChangeAfter(3, ErrorNumber::DiskFull);
    Messages.Expect(question, MessageAnswer::Yes);
    Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "A.rd2");
    Press("btnTrim");
    EXPECT_EQ(State.CurrentRun, Before);
    EXPECT_EQ(Entry().CDEndDist, 7000);

    PressTold("btnTrim", question, MessageAnswer::Yes);
    EXPECT_EQ(Backup(), FileBefore);
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 121);  // 40 to 160
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(50, 5050));
    EXPECT_EQ(Text("lblContDelay"), delay);
    EXPECT_EQ(Text("cmbPlotScaleList"), "750");
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    PressTold("btnTrim", "The run begins and ends at its boundaries already: there is nothing to cut.");
    EXPECT_FALSE(Files.Bytes(Group + "A.rd2.bak2"));
    Window->reject();
    ASSERT_TRUE(Entry().Computed);
    EXPECT_EQ(Entry().Computed->Movement, MovementHash(State.CurrentRun)) << "the figures are the trimmed run's";
    Window->show();

    Drag(At(673), {At(0)});
    PressTold("btnTrim",
              "A boundary is not set yet.\nDrag the blue lines to where the run shall begin and end, then trim it.");
}

TEST_F(frmPlotRunSpeedProfileHorizTest, TypedBoundariesCountAsReleases) {
    OpenPlot();
    const auto type = [this](const char* box, const QString& text) {
        TypeInto(box, text);
        PressKey(Qt::Key_Return);
    };
    type("txtStart", "2000");
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    EXPECT_EQ(Text("lblBetween"), "");
    TypeInto("txtEnd", "7000");
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit")) << "the way out takes what is typed";
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(IsEnabled("BtnPlotSpeedExit"));
    type("txtEnd", "7000");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(2000, 7000));
    EXPECT_TRUE(IsEnabled("BtnPlotSpeedExit"));
    // 119 s for 5000 feet: 42 ft/s.
    EXPECT_EQ(Text("lblContDelay") + ", " + Text("lblBetween"), " 19, 5000 ft, 119 s, 29 MPH between the boundaries");
    for (const char* wrong : {"9001", "-1", "2.5", " ", "far"}) {
        Messages.Expect(
            "The end boundary is a whole number of feet from 0 to 9000.\n"
            "0 stands for a boundary that is not set.");
        type("txtEnd", wrong);
        EXPECT_EQ(Text("txtEnd") + " " + std::to_string(Entry().CDEndDist), "7000 7000") << wrong;
    }
    TypeInto("txtEnd", "8000");
    PressKey(Qt::Key_Escape);
    EXPECT_EQ(Text("txtEnd"), "7000");
    for (const auto& [key, keys, place] : {std::tuple(Qt::Key_Up, Qt::NoModifier, 7001),
                                           {Qt::Key_Up, Qt::ShiftModifier, 7011},
                                           {Qt::Key_Down, Qt::NoModifier, 7010}}) {
        PressKey(key, keys);
        EXPECT_EQ(Entry().CDEndDist, place);
    }
    Press("btnToggleSpdTime");
    EXPECT_EQ(Text("txtStart") + Text("lblStartUnit"), "40Secs.");
    EXPECT_EQ(Text("lblBetween"), "5010 ft, 120 s, 28 MPH between the boundaries");
    TypeInto("txtStart", "50");  // left without Enter
    Press("BtnPlotSpeedExit");
    EXPECT_EQ(Entry().CDStartDist, 2500);
    EXPECT_TRUE(IsAccepted());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, EveryGestureIsTakenBackAndDoneAgain) {
    OpenPlot();
    const auto undo = [this] { Get<QAction>("mnuUndo").trigger(); };
    std::vector<StudyRunEntry> entries = {Entry()};
    const auto step = [&](const char* text) {
        EXPECT_EQ(Get<QAction>("mnuUndo").text(), QLatin1String("Undo ") + text);
        entries.push_back(Entry());
    };
    Drag(At(0), {At(90), At(200)});
    step("Move start boundary");
    Drag(At(1000), {At(800), At(700)});
    step("Move end boundary");
    TypeIdealSpeed("45");
    step("Ideal speed");
    Get<QWidget>("txtEnd").setFocus();
    for (int i = 0; i < 3; ++i) QTest::keyPress(&Get<QWidget>("txtEnd"), Qt::Key_Up);
    QTest::keyRelease(&Get<QWidget>("txtEnd"), Qt::Key_Up);
    EXPECT_EQ(Entry().CDEndDist, 7003);
    step("Move end boundary");
    Press("btnToggleSpdTime");

    for (std::size_t i = entries.size() - 1; i-- > 0;) {
        PressKey(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Entry(), entries[i]) << i;
    }
    EXPECT_EQ(Text("lblContDelay") + Text("txtStart"), "–");
    EXPECT_EQ(Scale(), "20 Secs.");
    PressKey(Qt::Key_Z, Qt::ControlModifier);
    for (std::size_t i = 1; i < entries.size(); ++i) {
        PressKey(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(Entry(), entries[i]) << i;
    }
    undo();
    PressTold(
        "btnTrim",
        "Do you want to trim run: A\nto the part between its boundaries?\n\nThe untrimmed run is kept as A.rd2.bak.",
        MessageAnswer::Yes);
    EXPECT_FALSE(IsEnabled("btnUndo"));
    EXPECT_FALSE(IsEnabled("btnRedo"));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, GoesOnFromRunToRun) {
    AddRuns({"B", "Gone", "C"});
    Files.Delete(Group + "Gone.rd2");
    OpenPlot();
    EXPECT_FALSE(IsEnabled("btnPreviousRun"));
    DragBoundaries();
    const StudyRunEntry first = Entry();
    Press("btnToggleSpdTime");
    PressKey(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Text("lblPlotTitle") + ", " + Scale(), "Data Plot for B, 20 Secs.");
    EXPECT_EQ(Text("lblContDelay"), "–");
    EXPECT_FALSE(IsEnabled("btnUndo"));
    Press("btnToggleSpdTime");
    Drag(At(0), {At(300)});
    Get<QLineEdit>("txtEditRunName").setText("B new");
    PressTold("btnNextRun",
              "Missing Run File: Gone. Copy the file back into the Study Group, or delete the run from the list.\n\n"
              "The next run that can be read is shown.");
    EXPECT_EQ(Text("lblPlotTitle"), "Data Plot for C");
    EXPECT_FALSE(IsEnabled("btnNextRun"));
    EXPECT_TRUE(Window->Changes().Entries.contains(2)) << "what was begun is kept";
    Files.Delete(Group + "B.rd2");
    PressTold("btnPreviousRun",
              "Missing Run File: Gone. Copy the file back into the Study Group, or delete the run from the list.\n\n"
              "Missing Run File: B. Copy the file back into the Study Group, or delete the run from the list.\n\n"
              "The next run that can be read is shown.");
    EXPECT_EQ(Entry(), first);
    PressKey(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Text("txtEnd"), "") << "a run keeps its steps";
    PressKey(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    Press("BtnPlotSpeedExit");
    EXPECT_TRUE(IsAccepted());
    const ProfileChanges changes = Window->Changes();
    EXPECT_EQ(changes.LastRun, 1);
    EXPECT_EQ(changes.Names, (std::map<int, std::string>{{2, "B new"}}));
    EXPECT_EQ(changes.Entries, (std::map<int, StudyRunEntry>{{1, first}, {2, State.CurrentStudy.Entries[2]}}));
    EXPECT_EQ(BoundariesOf(State.CurrentStudy.Entries[2]), std::pair(3000, 0));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, OtherRunsGetTheBoundariesThatAreTicked) {
    AddRuns({"B", "C", "D"});
    Selected = {1, 2, 4};
    OpenPlot();
    const auto use = [this](const char* menu) { Get<QAction>(menu).trigger(); };
    Messages.Expect("A boundary is not set yet.\nSet both boundaries of this run, then use them for the others.");
    use("mnuUseForAll");
    DragBoundaries();
    std::vector<int> offered;
    Window->OnChooseRuns = [&](const std::vector<BoundsPreview>& previews) {
        for (const BoundsPreview& preview : previews) offered.push_back(preview.Run);
        return std::vector{previews.back()};
    };
    use("mnuUseForSelected");
    use("mnuUseForAll");
    EXPECT_THAT(offered, testing::ElementsAre(2, 4, 2, 3, 4));
    EXPECT_EQ(BoundariesOf(State.CurrentStudy.Entries[2]), std::pair(0, 0));
    EXPECT_EQ(State.CurrentStudy.Entries[4].ControlDelay, 19);
    EXPECT_EQ(Window->Changes().Entries.size(), 2U);
    Press("btnToggleSpdTime");
    for (int i = 0; i < 3; ++i) PressKey(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(Text("lblPlotTitle") + Text("lblContDelay"), "Data Plot for D 19");
    EXPECT_EQ(BoundariesOf(State.CurrentStudy.Entries[4]), std::pair(2000, 7000));
}

TEST_F(frmPlotRunSpeedProfileHorizTest, AProposalIsStoredWhenItIsUsedAndOneStepTakesItBack) {
    RunRecord run = RunWithStop();
    run.SampleValues[110] = static_cast<std::int16_t>(Node);
    Use(run);
    OpenPlot();
    Get<QAction>("mnuPropose").trigger();
    // The mean of five seconds begins to fall in second 99 and is whole again in second 123.
    EXPECT_EQ(Text("lblProposal"), "Proposed: 4900 to 5150 ft.");
    EXPECT_THAT(Description(), testing::HasSubstr("Start 4900 ft, proposed. End 5150 ft, proposed."));
    Press("btnRejectProposal");
    EXPECT_FALSE(IsShown("ProposalBar"));
    ExpectNothingStored();
    for (const bool inTime : {false, true}) {
        Press("btnPropose");
        PressKey(Qt::Key_Space);
        EXPECT_EQ(BoundariesOf(Entry()), std::pair(4900, 5150)) << inTime;
        // The end is found in second 122: 24 s, and 250 ft at 50 ft a second are 5 s.
        EXPECT_EQ(Entry().ControlDelay, 19);
        EXPECT_FALSE(IsShown("ProposalBar"));
        Press("btnUndo");
        EXPECT_EQ(BoundariesOf(Entry()), std::pair(0, 0));
        Press("btnToggleSpdTime");
    }
    Press("btnRedo");
    Press("BtnPlotSpeedExit");
    EXPECT_TRUE(IsAccepted());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, ProposalsGoOnWithTheRunsAndForAllAtOnce) {
    AddRuns({"B", "C"});
    OpenPlot();
    Press("btnPropose");
    EXPECT_THAT(Text("lblProposal"), testing::HasSubstr("This run has no nodes"));
    EXPECT_THAT(ItemsOf(*Window, "cmbProposalNode"), testing::ElementsAre("No node: 4900 to 5150 ft"));
    EXPECT_FALSE(IsEnabled("btnUseProposal"));
    PressKey(Qt::Key_Right, Qt::AltModifier);
    EXPECT_TRUE(IsShown("ProposalBar"));
    Window->OnProposals = [](const Study& study) {
        std::vector<BoundsPreview> chosen;
        for (int run = 1; run <= 3; ++run) {
            chosen.push_back({run, study.Entries[run], study.Entries[run]});
            chosen.back().Then.CDStartDist = 1000 * run;
            chosen.back().Then.CDEndDist = 6000;
        }
        return chosen;
    };
    Get<QAction>("mnuProposeForAll").trigger();
    for (int run = 1; run <= 3; ++run)
        EXPECT_EQ(BoundariesOf(State.CurrentStudy.Entries[run]), std::pair(1000 * run, 6000));
    Press("btnUndo");
    EXPECT_EQ(BoundariesOf(State.CurrentStudy.Entries[2]), std::pair(0, 0)) << "the run in view has its step";
    Press("BtnPlotSpeedExit");
    EXPECT_TRUE(IsAccepted());
}

TEST_F(frmPlotRunSpeedProfileHorizTest, OtherRunsGetNodesAtThePlacesOfTheRunInView) {
    RunRecord run = RunWithStop();
    run.SampleValues[110] = static_cast<std::int16_t>(Node);
    Use(run);
    AddRuns({"B"});
    OpenPlot();
    DragBoundaries();
    QTimer::singleShot(0, [] { Click(*QApplication::activeModalWidget(), "btnOk"); });
    Messages.Expect(
        "1 run has nodes at these places now.\nThe file of each as it was is kept beside it, with .bak behind its "
        "name; "
        "Restore in the run details brings it back.");
    Get<QAction>("mnuNodesForAll").trigger();
    EXPECT_EQ(RowsOf(OnDisk("B")).size(), 3U);
    EXPECT_FALSE(IsEnabled("btnUndo")) << "its backup is the way back";
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(2000, 7000));
    EXPECT_EQ(Text("lblPlotTitle"), "Data Plot for A");
    Press("BtnPlotSpeedExit");
}

TEST_F(frmPlotRunSpeedProfileHorizTest, PictureIsCopiedAndSaved) {
    OpenPlot();
    Get<QAction>("mnuCopyPicture").trigger();
    EXPECT_FALSE(DesktopServices.CopiedPicture.empty());
    DesktopServices.FileToSave = "/start/A.svg";
    Get<QAction>("mnuSavePicture").trigger();
    EXPECT_TRUE(Files.Bytes("/start/A.svg"));
    CloseEarly();
}

}  // namespace
}  // namespace vantor
