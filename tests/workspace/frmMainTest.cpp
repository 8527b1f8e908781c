#include "workspace/forms/frmMain.h"

#include <QToolBar>

#include "core/Paths.h"
#include "workspace/MainWindow.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

TEST_F(MainWindow, TheFirstRunOpensThePreferencesThenTheStartUpScreenUntilItIsDone) {
    Messages.Expect(
        "The Preferences screen will now be loaded so you can check the settings.\n"
        "This is the only time you will have to do this.");
    OtherScreens.OnShow["frmPrefs"] = [this] {
        EXPECT_FALSE(IsShown("FrStudyDetails"));
        return true;
    };
    Open().Start();
    EXPECT_TRUE(IsShown("FrStudyDetails"));
    EXPECT_FALSE(HasFile("/program/VANTOR.bin")) << "the preferences write it, on OK";
    EXPECT_EQ(State.Paths.LastStudyName, "blank");
    Window->Start();
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("frmPrefs", "frmStartUp")) << "starting again is nothing";
}

TEST_F(MainWindow, WithoutRunsThereIsNoneToDeleteToShowOrToCount) {
    Start();
    EXPECT_EQ(State.Paths.LastStudyName, "blank");
    for (const char* button : {"BtnDeleteRun", "BtnShowDetails", "BtnEditRun"}) EXPECT_FALSE(IsEnabled(button));
    PressKey(Qt::Key_Delete);
    PressKey(Qt::Key_Return);
    EXPECT_THAT(OtherScreens.Shown, IsEmpty());
    Window->ToolbarButtonClick(7);
    EXPECT_EQ(DesktopServices.Beeps, 1);
    for (const char* command : {"mnuUtilExport", "mnuViewStatistics"}) {
        Messages.Expect(
            "You need to select one or more runs before continuing.\n"
            "Click the Add Runs buttons in the center window.");
        Do(command);
    }
    EXPECT_TRUE(State.StudyUnchanged);

    AddRuns(State, {"R1"});
    Messages.Expect(
        "You need to give this study a name before continuing.\nClick in the Name input box and enter a name.");
    Do("mnuViewStatistics");
    EXPECT_THAT(RunsShown(), IsEmpty());
    TypeInto("txtStudyName", "PM");
    Do("mnuViewStatistics");
    EXPECT_THAT(RunsShown(), ElementsAre("R1 "));
    EXPECT_THAT(OtherScreens.Shown, IsEmpty());
}

TEST_F(MainWindow, OpensTheLastStudyOrTheGivenOneInPlaceOfTheStartUpScreen) {
    StartWith({{"R1", 15}});
    EXPECT_EQ(Text("txtStudyName"), "AM");
    EXPECT_THAT(RunsShown(), ElementsAre("R1 "));
    State.Settings.UseStartUpScreen = -1;
    State.Paths.LastStudyGroupPath = "/start/Temp/";
    Start("study groups/Main Street/am.LD2");
    EXPECT_THAT(RunsShown(), ElementsAre("R1 "));
    EXPECT_EQ(LastStudyOf(State), Group + "AM");
    EXPECT_THAT(OtherScreens.Shown, IsEmpty());

    Files.Delete(Group + "AM.ld2");
    State.Settings.UseStartUpScreen = 0;
    Start();
    EXPECT_EQ(DesktopServices.Beeps, 0);
    Start(Group + "AM.ld2");
    EXPECT_EQ(DesktopServices.Beeps, 1) << "it was asked for";
    EXPECT_THAT(RunsShown(), IsEmpty());
}

TEST_F(MainWindow, AReadingOfRunsThatWasStoppedGivesNoFigures) {
    StartWith({{"R1", 15}, {"R2", 25}});
    EXPECT_EQ(Text("lblAvgContDelay"), " 20");
    for (const bool isStopped : {true, false}) {
        Work.AsksBeforeStop = isStopped ? 1 : 100;
        Do("mnuViewStatistics");
        EXPECT_THAT(Column(*Window, "vaRunList", 7), ElementsAre("Counted", isStopped ? "Unreadable" : "Counted"));
        EXPECT_EQ(Text("lblAvgContDelay"), isStopped ? "" : " 20");
        EXPECT_EQ(Current().Record.StudyAvgControlDelay, 20);
    }
}

/// The screens that a command of the main window opens, parted by blanks.
struct Commands : MainWindow {
    std::string ShownBy(const char* command) {
        OtherScreens.Shown.clear();
        Do(command);
        std::string shown;
        for (const std::string& screen : OtherScreens.Shown) shown += (shown.empty() ? "" : " ") + screen;
        return shown;
    }
    /// Those that open after that choice on the start-up screen.
    std::string ShownAfter(StartUpChoice choice) {
        OtherScreens.StartUp = choice;
        OtherScreens.OnShow["frmStartUp"] = [] { return true; };
        return ShownBy("mnuFileStartUp").erase(0, std::string_view("frmStartUp ").size());
    }
};

TEST_F(Commands, CarryOutWhatIsChosenOnTheStartUpScreen) {
    using enum StartUpChoice;
    StartWith({{"R1", 15}});
    Press("BtnDeleteRun");
    EXPECT_EQ(ShownAfter(ProcessTdcData), "frmUploadSelectTDC");
    EXPECT_EQ(ShownAfter(ReadCounter), "frmReadTDC");
    EXPECT_EQ(ShownAfter(Preferences), "frmPrefs");
    EXPECT_EQ(ShownAfter(ImportTracks), "frmImportTracks");
    EXPECT_EQ(ShownAfter(Corridors), "frmCorridor");
    EXPECT_EQ(ShownAfter(None), "");
    EXPECT_EQ(Current().Record.RunCount, 0) << "the study stays";
    Messages.Expect(AsksAboutChanges, No);
    EXPECT_EQ(ShownAfter(OpenStudy), "frmStudyOpen");
    Messages.Expect(AsksAboutChanges, No);
    ShownAfter(LastStudy);
    EXPECT_EQ(Current().Record.RunCount, 1);
    ShownAfter(NewStudy);
    EXPECT_EQ(Current().Record.StudyName, "");
    ShownAfter(Exit);
    EXPECT_FALSE(Window->isVisible());
}

TEST_F(Commands, OfLogsGoFromTheSelectionThroughTheReviewToTheUpload) {
    Start();
    const std::tuple<const char*, StartUpChoice, std::string> chains[] = {
        {"mnuFileRoamlap", StartUpChoice::ProcessRoamlap, "GPS laptop"},
        {"mnuFileRoampad", StartUpChoice::ProcessRoampad, "GPS handheld"},
        {"mnuFileRevlap", StartUpChoice::ProcessRevlap, "OBD laptop"},
        {"mnuFileRevpad", StartUpChoice::ProcessRevpad, "OBD handheld"},
        {"mnuFileStartUp", StartUpChoice::ProcessCombined, "GPS and OBD"},
        {"mnuFileStartUp", StartUpChoice::ProcessBattelle, "Battelle"}};
    for (const auto& [entry, choice, kind] : chains) {
        const std::string select = "select " + kind, review = "review " + kind;
        EXPECT_EQ(ShownAfter(choice), select) << "no log was chosen";
        OtherScreens.OnShow[select] = [] { return true; };
        EXPECT_EQ(ShownAfter(choice), select + " " + review) << "the review was cancelled";
        OtherScreens.OnShow[review] = [] { return true; };
        EXPECT_THAT(ShownBy(entry), EndsWith(select + " " + review + " frmUploadData"));
        EXPECT_EQ(OtherScreens.Uploads.back().Of, UploadOf::Log);
    }
}

TEST_F(Commands, OpenTheirScreensAndToolbarSeparatorsSayThatTheyHaveNone) {
    StartWith({{"R1", 15}});
    for (const char* command :
         {"mnuFileProcessRuns", "mnuFilePrefs", "mnuUtilDeleteRuns", "mnuUtilDeleteTDC", "mnuFilePrint",
          "btnContDelayVsAvg", "tbrMain(2)", "tbrMain(5)", "tbrMain(7)", "tbrMain(9)", "tbrMain(11)", "tbrMain(13)"})
        Do(command);
    EXPECT_THAT(OtherScreens.Shown,
                ElementsAre("frmUploadSelectTDC", "frmPrefs", "frmDeleteTempRuns", "frmDeleteTDCFiles",
                            "frmReportPreview", "frmContDelayVsAvg", "frmStudyOpen", "frmReadTDC",
                            "frmPlotRunSpeedProfileHoriz", "frmReportPreview", "frmPrefs", "frmStartUp"));
    Messages.Expect("Vantor\nVersion " VANTOR_VERSION "\n\nMade with Qt " + std::string(qVersion()) +
                    ", " VANTOR_LIBRARIES ".");
    for (const char* command : {"mnuHelpAbout", "mnuHelpSupport", "tbrMain(15)", "mnuHelpTopics"}) Do(command);
    const char* const site = "https://vantor.example/support";
    EXPECT_THAT(DesktopServices.Opened, ElementsAre(site, site, "/program/VANTOR.HLP#0"));
    Messages.Expect(AsksToSave("AM"), No);
    Do("tbrMain(3)");
    EXPECT_EQ(DesktopServices.Beeps, 0);
    for (int i = 0; i < 9; ++i) Messages.Expect("This feature is not working yet.");
    for (const int index : {-1, 0, 4, 6, 8, 10, 14, 16}) Window->ToolbarButtonClick(index);
    auto& toolbar = Get<QToolBar>("tbrMain");
    QTest::mouseClick(&toolbar, Qt::LeftButton, {}, toolbar.actionGeometry(toolbar.actions().at(3)).center());
    EXPECT_EQ(DesktopServices.Beeps, 9);
    EXPECT_EQ(Current().Record.RunCount, 1);
    Do("tbrMain(1)");
    EXPECT_EQ(Current().Record.RunCount, 0);
}

TEST_F(Commands, OfCountersGoOnToTheUploadWithAWholeDumpAChosenFileOrTemporaryRuns) {
    Start();
    EXPECT_EQ(ShownBy("mnuReadTDC"), "frmReadTDC");
    OtherScreens.OnShow["frmReadTDC"] = [] { return true; };
    EXPECT_EQ(ShownBy("mnuReadTDC"), "frmReadTDC frmUploadData");
    EXPECT_EQ(OtherScreens.Uploads.back().ToConvert, OtherScreens.CounterFile);

    EXPECT_EQ(ShownBy("mnuFileProcessRuns"), "frmUploadSelectTDC");
    OtherScreens.OnShow["frmUploadSelectTDC"] = [] { return true; };
    EXPECT_EQ(ShownBy("mnuFileProcessRuns"), "frmUploadSelectTDC frmUploadData");
    EXPECT_EQ(OtherScreens.Uploads.back().ToConvert, OtherScreens.CounterFile);
    EXPECT_EQ(ShownAfter(StartUpChoice::ProcessTempRuns), "frmUploadData");
    EXPECT_EQ(OtherScreens.Uploads.back().Of, UploadOf::TemporaryRuns);
    EXPECT_FALSE(OtherScreens.Uploads.back().ToConvert) << "the file of the last time must not be converted again";
}

TEST_F(MainWindow, ExportsTheRunListToTheFileThatIsNamed) {
    StartWith({{"R1", 15}});
    Do("mnuUtilExport");
    EXPECT_EQ(DesktopServices.AskedFrom, Group + "AM.xls");
    EXPECT_EQ(DesktopServices.KindsOffered, "*.xls*.xlsx*.csv");
    DesktopServices.FileToSave = "/start/list.xls";
    Messages.Expect("The run list was exported to:\n/start/list.xls");
    Do("mnuUtilExport");
    EXPECT_TRUE(HasFile("/start/list.xls"));
}

TEST_F(MainWindow, WhatIsTypedIsInTheRecordAtOnce) {
    StartWith({});
    EXPECT_TRUE(State.StudyUnchanged) << "showing a study is no change";
    EXPECT_EQ(Text("lblSaved"), "Saved");
    const std::tuple<const char*, std::string StudyRecord::*, int> fields[] = {
        {"txtStudyName", &StudyRecord::StudyName, 32},
        {"txtStreetName", &StudyRecord::StreetName, 40},
        {"StudyNotes", &StudyRecord::StudyNotes, 128}};
    for (const auto& [field, member, width] : fields) {
        State.StudyUnchanged = true;
        State.StudyFieldsEdited = false;
        TypeInto(field, QString(200, 'm'));
        EXPECT_EQ(Current().Record.*member, std::string(width, 'm')) << field;
        EXPECT_TRUE(!State.StudyUnchanged && State.StudyFieldsEdited) << field;
    }
    State.StudyUnchanged = true;
    QTest::keyClick(&Get<QComboBox>("cmbDir"), Qt::Key_Down);
    EXPECT_EQ(Current().Record.Direction, 2) << "EB follows SB";
    EXPECT_FALSE(State.StudyUnchanged);
    QTest::keyClick(&Get<QComboBox>("cmbCritLane"), Qt::Key_End);
    EXPECT_EQ(Current().Record.CritLane, 4);
    Get<QComboBox>("cmbCritLane").setFocus();
    QTest::keyClick(&Get<QComboBox>("cmbCritLane"), Qt::Key_Delete);
    EXPECT_EQ(Current().Record.CritLane, -1);
    EXPECT_EQ(Text("lblSaved"), "Not saved");
    EXPECT_TRUE(Window->isWindowModified());
}

TEST_F(MainWindow, AStudyOfTheRootOrWithoutANameIsToldOf) {
    State.Paths.LastStudyGroupPath = Root;
    Start();
    Messages.Expect(
        "Do you want to save study: \n in Study Group: Study Groups ?\n\nThis is the root of all Study Groups, "
        "where no runs lie. Save Study As puts the study into a Study Group.",
        Yes);
    Messages.Expect(NamelessStudyText);
    Do("mnuFileSave");
    EXPECT_TRUE(Get<QLineEdit>("txtStudyName").hasFocus());
}

TEST_F(MainWindow, SaveNowAsksAndWritesUnderASafeName) {
    StartWith({{"R1", 12}});
    TypeInto("txtStudyName", "a/b");
    Messages.Expect(AsksToSave("a/b"), Yes);
    Messages.Expect(UnsafeNameMessage("a/b"));
    Do("mnuFileSave");
    EXPECT_FALSE(State.StudyUnchanged);
    TypeInto("txtStudyName", "PM");
    for (const auto answer : {No, Yes}) {
        Messages.Expect(AsksToSave("PM"), answer);
        QTest::keyClick(Window.get(), Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(HasFile(Group + "PM.ld2"), answer == Yes);
    }
    EXPECT_EQ(RunsOf(Saved("PM")), Names{"R1"});
    EXPECT_EQ(Text("lblSaved"), "Saved");
    Do("mnuFileExit");
    EXPECT_FALSE(Window->isVisible()) << "nothing is asked right after a save";
}

TEST_F(MainWindow, AStudyThatCannotBeSavedIsNotLeft) {
    const std::string question = "This study has not been saved yet.\n  Do you want to save the study?";
    const auto expectStays = [&](const char* leave, const std::string& problem) {
        Messages.Expect(question, Yes);
        Messages.Expect(problem);
        Do(leave);
        EXPECT_EQ(Current().Record.RunCount, 1) << leave;
        EXPECT_TRUE(Window->isVisible() && !State.StudyUnchanged) << leave;
    };
    Start();
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"R1"}) > 0; };
    Press("BtnAddRun");
    for (const char* leave : {"mnuFileNew", "mnuFileOpen", "mnuFileExit"}) expectStays(leave, NamelessStudyText);
    TypeInto("txtStudyName", "PM");
    for (const char* leave : {"mnuFileNew", "mnuFileOpen", "mnuFileExit"}) {
        Files.FailChangeAfter(0, ErrorNumber::DiskFull);
        expectStays(leave, "Run-time error '61':\nDisk full\n\n" + Group + "PM.ld2");
    }
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("frmRunSelect"));
    Messages.Expect(question, Yes);
    EXPECT_TRUE(Window->close());
    EXPECT_EQ(RunsOf(Saved("PM")), Names{"R1"});
}

TEST_F(MainWindow, SaveAsShowsTheStudyUnderItsNewName) {
    StartWith({{"R1", 12}});
    OtherScreens.OnShow["frmStudySaveAs"] = [this] {
        SaveStudyAs(State, Files, OakElm, "Copy");
        return true;
    };
    Messages.Expect("Missing Run File: R1");
    Do("mnuFileSaveAs");
    EXPECT_EQ(Text("txtStudyName"), "Copy");
    EXPECT_EQ(Get<QLabel>("lblStudyGroup").text(), ToQt("Study Group: " + OakElm));
    EXPECT_TRUE(State.StudyUnchanged);
}

}  // namespace
}  // namespace vantor
