#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include "core/forms/Theme.h"
#include "fakes/ThrowsError.h"
#include "workspace/MainWindow.h"
#include "workspace/RecentStudies.h"
#include "workspace/SampleStudy.h"

namespace vantor {
namespace {

struct FirstSteps : MainWindow {
    QList<QAction*> Opened(const char* menu) {
        emit Get<QMenu>(menu).aboutToShow();
        return Get<QMenu>(menu).actions();
    }
    /// Drops files onto the field that would take their names as a text.
    void Drop(std::initializer_list<std::string> paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::string& path : paths) urls += QUrl::fromLocalFile(ToQt(path));
        data.setUrls(urls);
        auto& field = Get<QLineEdit>("txtStudyName");
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&field, &enter);
        QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&field, &drop);
        EXPECT_TRUE(drop.isAccepted());
        QTest::qWait(1);
    }
};

TEST_F(FirstSteps, TheSampleIsMadeOpenedAndRemoved) {
    Start();
    EXPECT_TRUE(IsShown("frBegin"));
    Press("btnBeginSample");
    EXPECT_FALSE(IsShown("frBegin"));
    EXPECT_THAT(Column(*Window, "vaRunList", 7), AllOf(SizeIs(8), Each("Counted")));
    const Names marks = Column(*Window, "vaRunList", 13);
    EXPECT_EQ(std::ranges::count(marks, "Before"), 4);
    // The longest wait costs most: 46 s at the signal, and what braking and starting from 35 mph cost.
    for (const StudyRunEntry& entry : Current().Entries)
        EXPECT_LE(entry.ControlDelay, Current().Entries[3].ControlDelay);
    EXPECT_GT(Current().Entries[3].ControlDelay, 46);
    EXPECT_LT(Current().Entries[3].ControlDelay, 46 + 52.0 / 7 + 52.0 / 4);

    const std::string folder = Root + "Sample/";
    Files.PutText(folder + "Mine.rd2", "mine");
    Messages.Expect("Do you want to delete the sample study and its eight runs?\n" + folder, Yes);
    Do("mnuHelpRemoveSample");
    EXPECT_TRUE(IsShown("frBegin"));
    EXPECT_THAT(Files.List(folder), SizeIs(1));
    EXPECT_THAT(RecentStudies(State.Choices), IsEmpty());
    Files.PutText(folder + "MAIN-NB-008.rd2", "mine, too");
    EXPECT_ERROR(FileAlreadyExists, MakeSample(Files, Root, State.Settings));
    EXPECT_THAT(Files.List(folder), SizeIs(2)) << "all runs or none";
    for (const char* mine : {"Mine.rd2", "MAIN-NB-008.rd2"}) Files.Delete(folder + mine);
    DeleteSample(Files, MakeSample(Files, Root, State.Settings));
    EXPECT_FALSE(Files.Find(folder));
}

TEST_F(FirstSteps, StudiesThatWereOpenedStandInTheMenu) {
    PutStudy("PM", {{"R2", 20}});
    StartWith({{"R1", 12}});
    Drop({Group + "PM.ld2"});
    EXPECT_EQ(Text("txtStudyName"), "PM");
    EXPECT_EQ(RecentStudies(State.Choices), (Names{Group + "PM.ld2", Group + "AM.ld2"}));
    EXPECT_EQ(LoadUserChoices(Files).count("recent-study-2"), 1U);
    Opened("mnuFileRecent")[1]->trigger();
    EXPECT_EQ(Text("txtStudyName"), "AM");
    Files.Delete(Group + "PM.ld2");
    Messages.Expect("The study is not there any more:\n" + Group +
                    "PM.ld2\nOpen Existing Study shows where studies lie now.");
    Opened("mnuFileRecent")[1]->trigger();
    Opened("mnuFileRecent").back()->trigger();
    EXPECT_THAT(RecentStudies(State.Choices), IsEmpty());
}

TEST_F(FirstSteps, FilesThatAreDroppedGoWhereTheyBelong) {
    StartWith({{"R1", 12}});
    PutRun(OakElm, "Far");
    Messages.Expect(
        "These files are of no kind that the program reads: a.docx\nIt takes studies (.ld2), counter files (.tdc), "
        "runs (.rd2), and as logs and tracks .gdf, .gd2, .odf, .od2, .ddf, .nmea, .nma, .txt, .mdb, .pdb, .gpx, .csv, "
        ".tsv, .fit, .tcx, .kml, .igc, .gdb, .sbp and what gpsbabel reads.\n\nVersion 1 runs are converted as they "
        "are added: use Add Run for Old.rdf.");
    Messages.Expect(
        "The runs of a study lie in one Study Group.\nThese lie elsewhere than the first and are not added: Far");
    OtherScreens.Log = {"/logs/", "drive", ".pdb"};
    OtherScreens.OnShow["review OBD handheld"] = [] { return true; };
    Messages.Expect("What is in this database of a handheld?\ndrive.pdb", No);
    Drop({"/a.docx", "/Old.rdf", Group + "R2.rd2", OakElm + "Far.rd2", "/data/Day.TDC", "/logs/drive.pdb"});
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "R2 "));
    ASSERT_THAT(OtherScreens.Uploads, SizeIs(2));
    OtherScreens.Moved = {OakElm, {"Far"}};
    OtherScreens.OnShow["frmUploadSelectTDC"] = [] { return true; };
    Messages.Expect("The runs of a study lie in one Study Group, those of this one in:\n" + Group +
                    "\nThese lie elsewhere and are not added: Far");
    Do("mnuFileProcessRuns");
    Messages.Expect(AsksAboutChanges, No);
    Do("mnuFileNew");
    Do("mnuFileProcessRuns");
    EXPECT_THAT(RunsShown(), ElementsAre("Far ")) << "a new study takes what was moved";
    EXPECT_EQ(OtherScreens.Uploads[0].ToConvert, (CounterFileChoice{"/data/", "Day"}));
    EXPECT_TRUE(OtherScreens.Uploads[0].ChecksFirst) << "no list has read it";
}

/// Into the screen that imports: tracks of all kinds, also under a name that says nothing, and several logs.
TEST_F(FirstSteps, DroppedTracksAreImportedAndOneLogIsReviewed) {
    StartWith({{"R1", 12}});
    Files.PutText("/t/phone.data", "<?xml version=\"1.0\"?><gpx version=\"1.1\"><trk></trk></gpx>");
    Files.PutText("/t/day.txt", "$GPRMC,140000,A,4200.0,N,08300.0,W,30,0,040326,,*00\n");
    OtherScreens.OnShow["frmImportTracks"] = [&] {
        PutRun(Group, "Main-NB-001");
        OtherScreens.Imported = {{OakElm, {"A", "B"}}, {Group, {"Main-NB-001"}}};
        return true;
    };
    Messages.Expect(
        "The study takes the runs of its own Study Group, Main Street.\nThe others lie in theirs, for "
        "studies there:\n2 runs are in Oak & Elm Ave: A, B");
    Drop({"/t/phone.data", "/t/day.txt", "/logs/drive.gd2", "/t/a.GPX"});
    EXPECT_THAT(OtherScreens.TracksHanded, ElementsAre("/t/phone.data", "/t/day.txt", "/logs/drive.gd2", "/t/a.GPX"));
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "Main-NB-001 "));
    OtherScreens.OnShow.clear();
    OtherScreens.Imported = {};
    Drop({"/logs/1.gd2", "/logs/2.ddf"});
    EXPECT_THAT(OtherScreens.TracksHanded, ElementsAre("/logs/1.gd2", "/logs/2.ddf"));
    OtherScreens.Shown.clear();
    OtherScreens.Log = {"/logs/", "1", ".gd2"};
    Drop({"/logs/1.gd2"});
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("review GPS laptop"));
}

TEST_F(FirstSteps, WhatTheViewShowsIsRemembered) {
    StartWith({{"R1", 12}, {"R2", 50, 0, 0}, {"R3", 20}});
    Do("mnuViewCounted");
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "R3 "));
    EXPECT_EQ(Text("lblHiddenRuns"), "1 run that does not count is not shown (View)");
    EXPECT_EQ(Text("lblAvgContDelay"), " 16") << "no figure changes";
    PressKey(Qt::Key_Down);
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(RunsOf(Current()), (Names{"R1", "R2"}));
    Do("mnuViewProfile");
    EXPECT_FALSE(IsShown("RunProfilePane"));
    Opened("mnuViewTheme")[2]->trigger();
    EXPECT_TRUE(IsDark(QApplication::palette()));
    UseTheme(ThemeNamed("light"));
    State.StudyUnchanged = true;
    Start();
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "R3 "));
    EXPECT_FALSE(IsShown("RunProfilePane"));
    EXPECT_EQ(ThemeNamed(ChoiceOf(State.Choices, ThemeKey)), ThemeChoice::Dark);
}

TEST_F(FirstSteps, AMapStandsInPlaceOfTheProfileWhereARunHasPositions) {
    StartWith({{"R1", 12}, {"R2", 50}});
    EXPECT_FALSE(IsEnabled("btnShowMap"));
    RunRecord run = ReadRun(Files, Group, "R2", RunPart::Whole).Run;
    run.RunSamples[1] = {.Latitude = 33.7, .Longitude = -84.4};
    PutRunFile(Files, run, Group, "R2");
    PressKey(Qt::Key_Down);
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsEnabled("btnShowMap"); }));
    Press("btnShowMap");
    EXPECT_TRUE(IsShown("RunMap") && !IsShown("RunProfile"));
    PressKey(Qt::Key_Up);
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsShown("RunProfile"); }));
    EXPECT_EQ(Get<QWidget>("btnShowMap").toolTip(), "This run has no positions, as runs of counters have none.");
    PressKey(Qt::Key_Down);
    EXPECT_TRUE(QTest::qWaitFor([&] { return IsShown("RunMap"); })) << "the choice stays";
}

}  // namespace
}  // namespace vantor
