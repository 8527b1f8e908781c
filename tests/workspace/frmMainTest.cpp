#include "workspace/forms/frmMain.h"

#include <QMenuBar>
#include <QToolBar>

#include "core/Paths.h"
#include "workspace/MainWindow.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

constexpr const char* AsksToSaveNew = "This study has not been saved yet.\n  Do you want to save the study?";
constexpr const char* NotWorking = "This feature is not working yet.";

using Starting = MainWindow;

/// Tells what the window shows while a message is open.
struct LookingMessageBoxes : ScriptedMessageBoxes {
    std::function<void()> OnAsk;
    MessageAnswer Ask(const Prompt& prompt) override {
        OnAsk();
        return ScriptedMessageBoxes::Ask(prompt);
    }
};

TEST_F(Starting, TheFirstRunTellsOfThePreferencesAndOpensThem) {
    LookingMessageBoxes looking;
    AppContext context{State,  Files,  looking, OtherScreens, DesktopServices, Time,      End,
                       Memory, Serial, Device,  Databases,    Sheets,          Documents, Work};
    looking.Expect(
        "The Preferences screen will now be loaded so you can check the settings.\n"
        "This is the only time you will have to do this.");
    frmMain window(context);
    window.show();
    auto& studyArea = Find<QWidget>(window, "FrStudyDetails");
    looking.OnAsk = [&] { EXPECT_FALSE(studyArea.isVisible()); };
    OtherScreens.OnShow["frmStartUp"] = [this] { return State.StartUpDone = true; };
    window.Start();
    EXPECT_TRUE(studyArea.isVisible());
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmPrefs", "frmStartUp"})) << "the defaults ask for the start-up screen";
    EXPECT_FALSE(Files.Bytes("/program/VANTOR.bin")) << "the preferences write it, on OK";
    EXPECT_EQ(State.Paths.LastStudyName, "blank");

    window.Start();
    EXPECT_EQ(OtherScreens.Shown.size(), 2U) << "starting again does nothing";
}

TEST_F(Starting, WithoutAStudyTheScreenIsEmpty) {
    Start();
    EXPECT_EQ(OtherScreens.Shown, Names{});
    EXPECT_EQ(State.Paths.LastStudyName, "blank");
    const auto& directions = Find<QComboBox>(*Window, "cmbDir");
    const auto& lanes = Find<QComboBox>(*Window, "cmbCritLane");
    QStringList items;
    for (const auto* list : {&directions, &lanes})
        for (int i = 0; i < list->count(); ++i) items << list->itemText(i);
    EXPECT_EQ(items.join(","), "NB,SB,EB,WB,Through,Shared Left,Left,Shared Right,Right");
    EXPECT_EQ(directions.currentIndex(), -1);
    EXPECT_EQ(lanes.currentIndex(), -1);
    EXPECT_FALSE(Find<QAbstractButton>(*Window, "BtnDeleteRun").isEnabled());
    EXPECT_FALSE(Find<QAbstractButton>(*Window, "BtnShowDetails").isEnabled());
    PressKey(Qt::Key_Delete);
    PressKey(Qt::Key_Return);
    Window->ToolbarButtonClick(7);
    EXPECT_EQ(DesktopServices.Beeps, 3) << "there is no run to delete or to show";
    EXPECT_TRUE(State.StudyUnchanged);
    Choose("mnuFileExit");
    EXPECT_FALSE(Window->isVisible());
}

TEST_F(Starting, TheStartUpScreenIsRepeatedUntilItIsDone) {
    State.Settings.UseStartUpScreen = -1;
    int shown = 0;
    OtherScreens.OnShow["frmStartUp"] = [&] { return State.StartUpDone = ++shown == 3; };
    Start();
    EXPECT_EQ(shown, 3);
}

TEST_F(Starting, TheLastStudyIsOpenedWhenItsFileIsThere) {
    StartWith({{"R1", 15}});
    EXPECT_EQ(Find<QLineEdit>(*Window, "txtStudyName").text(), "AM");
    EXPECT_EQ(Cell(0, 0), "R1 ");
    EXPECT_TRUE(State.StudyUnchanged);
    Files.Delete(Group + "AM.ld2");
    Start();
    EXPECT_EQ(Current().Record.RunCount, 0);
    EXPECT_EQ(DesktopServices.Beeps, 0);
}

TEST_F(Starting, AGivenStudyIsOpenedInPlaceOfTheStartUpScreen) {
    State.Settings.UseStartUpScreen = -1;
    State.Paths.LastStudyGroupPath = "/start/Temp/";
    PutStudy("AM", {{"R1", 15}});
    Start("study groups/Main Street/am.LD2");
    EXPECT_EQ(OtherScreens.Shown, Names{});
    EXPECT_EQ(Current().Record.RunCount, 1);
    EXPECT_EQ(State.Paths.LastStudyGroupPath, Group);
    EXPECT_EQ(State.Paths.LastStudyName, "AM");
    Start(Group + "Gone.ld2");
    EXPECT_EQ(DesktopServices.Beeps, 1);
    EXPECT_EQ(Current().Record.RunCount, 0);
}

TEST_F(MainWindow, AReadingOfRunsThatWasStoppedGivesNoFigures) {
    StartWith({{"R1", 15}, {"R2", 25}});
    EXPECT_EQ(Label("lblAvgContDelay"), " 20");
    Work.AsksBeforeStop = 1;
    Choose("mnuViewStatistics");
    EXPECT_EQ(Cell(0, 7), "Counted");
    EXPECT_EQ(Cell(1, 7), "Unreadable");
    EXPECT_EQ(Label("lblAvgContDelay"), "");
    EXPECT_EQ(Current().Record.StudyAvgControlDelay, 20);
    Work.AsksBeforeStop = 100;
    Choose("mnuViewStatistics");
    EXPECT_EQ(Label("lblAvgContDelay"), " 20");
}

TEST_F(MainWindow, CarriesOutWhatIsChosenOnTheStartUpScreen) {
    StartWith({{"R1", 15}});
    Press("BtnDeleteRun");
    const auto choose = [this](StartUpChoice choice, bool temporaryRuns = false) {
        OtherScreens.Shown.clear();
        OtherScreens.OnShow["frmStartUp"] = [=, this] {
            State.ChosenAtStartUp = choice;
            State.TemporaryRunsMode = temporaryRuns;
            return State.StartUpDone = true;
        };
        Choose("mnuFileStartUp");
    };
    State.GpsObdUpload = true;
    choose(StartUpChoice::ProcessTempRuns, true);
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmStartUp", "frmUploadData"}));
    EXPECT_FALSE(State.GpsObdUpload);
    choose(StartUpChoice::ProcessTdcData);
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmStartUp", "frmUploadSelectTDC"}));
    choose(StartUpChoice::None);
    EXPECT_EQ(Current().Record.RunCount, 0) << "the study stays";
    Messages.Expect(AsksAboutChanges, No);
    choose(StartUpChoice::OpenStudy);
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmStartUp", "frmStudyOpen"}));
    Messages.Expect(AsksAboutChanges, No);
    choose(StartUpChoice::LastStudy);
    EXPECT_EQ(Current().Record.RunCount, 1);
    choose(StartUpChoice::NewStudy);
    EXPECT_EQ(Current().Record.StudyName, "");
    choose(StartUpChoice::Exit);
    EXPECT_FALSE(Window->isVisible());
}

TEST_F(MainWindow, EveryChainOfLogsGoesFromItsSelectionToTheUpload) {
    Start();
    const std::tuple<const char*, StartUpChoice, const char*> chains[] = {
        {"mnuFileRoamlap", StartUpChoice::ProcessRoamlap, "GPS laptop"},
        {"mnuFileRoampad", StartUpChoice::ProcessRoampad, "GPS handheld"},
        {"mnuFileRevlap", StartUpChoice::ProcessRevlap, "OBD laptop"},
        {"mnuFileRevpad", StartUpChoice::ProcessRevpad, "OBD handheld"},
        {nullptr, StartUpChoice::ProcessCombined, "GPS and OBD"},
        {nullptr, StartUpChoice::ProcessBattelle, "Battelle"}};
    bool isReviewed = false;
    for (const auto& [entry, choice, kind] : chains) {
        const std::string select = std::string("select ") + kind;
        const std::string review = std::string("review ") + kind;
        OtherScreens.OnShow["frmStartUp"] = [this, chosen = choice] {
            State.ChosenAtStartUp = chosen;
            return State.StartUpDone = true;
        };
        const auto run = [&] {
            OtherScreens.Shown.clear();
            State.GpsObdUpload = false;
            Choose(entry != nullptr ? entry : "mnuFileStartUp");
            std::erase(OtherScreens.Shown, "frmStartUp");
            EXPECT_TRUE(State.GpsObdUpload);
        };
        run();
        EXPECT_EQ(OtherScreens.Shown, Names{select}) << "no log was chosen";
        OtherScreens.OnShow[select] = [] { return true; };
        OtherScreens.OnShow[review] = [&] { return isReviewed; };
        isReviewed = false;
        run();
        EXPECT_EQ(OtherScreens.Shown, (Names{select, review})) << "the review was cancelled";
        isReviewed = true;
        run();
        EXPECT_EQ(OtherScreens.Shown, (Names{select, review, "frmUploadData"}));
    }
    OtherScreens.Shown.clear();
    Choose("mnuFileStartUp");
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmStartUp", "select Battelle", "review Battelle", "frmUploadData"}));
}

TEST_F(MainWindow, MenusHoldEveryEntry) {
    Start();
    int ready = 0;
    for (const QAction* menu : Window->menuBar()->actions())
        for (const QAction* entry : menu->menu()->actions()) {
            // Without runs there is none to edit.
            if (entry->isSeparator() || menu->text() == "Ru&n") continue;
            ++ready;
            EXPECT_TRUE(entry->isEnabled()) << FromQt(entry->text());
        }
    EXPECT_EQ(ready, 21);
    Messages.Expect("Vantor\nVersion " VANTOR_VERSION "\n\nMade with Qt " + std::string(qVersion()) +
                    ", " VANTOR_LIBRARIES ".");
    Choose("mnuHelpAbout");
    Choose("mnuHelpSupport");
    Choose("mnuHelpTopics");
    EXPECT_EQ(DesktopServices.Opened, (Names{"https://vantor.example/support", "/program/VANTOR.HLP#0"}));
    State.GpsObdUpload = true;
    Choose("mnuFileProcessRuns");
    EXPECT_EQ(OtherScreens.Shown, Names{"frmUploadSelectTDC"});
    EXPECT_FALSE(State.GpsObdUpload);
    OtherScreens.Shown.clear();
    Choose("mnuFilePrefs");
    Choose("mnuUtilDeleteRuns");
    Choose("mnuUtilDeleteTDC");
    Choose("mnuFilePrint");
    Press("tbrMain(9)");
    Press("btnContDelayVsAvg");
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmPrefs", "frmDeleteTempRuns", "frmDeleteTDCFiles", "frmReportPreview",
                                         "frmReportPreview", "frmContDelayVsAvg"}));
}

TEST_F(MainWindow, DumpOfACounterGoesOnToTheUploadOnlyWhenItIsWhole) {
    Start();
    State.GpsObdUpload = true;
    State.CounterFileChosen = true;
    Choose("mnuFileReadTDC");
    EXPECT_EQ(OtherScreens.Shown, Names{"frmReadTDC"});
    EXPECT_FALSE(State.CounterFileChosen) << "an earlier choice must not be taken for this one";
    OtherScreens.OnShow["frmReadTDC"] = [] { return true; };
    Press("tbrMain(5)");
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmReadTDC", "frmReadTDC", "frmUploadData"}));
    EXPECT_FALSE(State.GpsObdUpload);
}

TEST_F(MainWindow, ToolbarButtonsDoTheirCommandsAndSeparatorsSaySo) {
    StartWith({{"R1", 15}});
    Press("tbrMain(2)");
    Messages.Expect("Do you want to save study: AM\n in Study Group: Main Street ?", No);
    Press("tbrMain(3)");
    Press("tbrMain(7)");
    OtherScreens.OnShow["frmStartUp"] = [this] { return State.StartUpDone = true; };
    Press("tbrMain(13)");
    Press("tbrMain(15)");
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmStudyOpen", "frmPlotRunSpeedProfileHoriz", "frmStartUp"}));
    EXPECT_EQ(DesktopServices.Opened.size(), 1U);
    EXPECT_EQ(DesktopServices.Beeps, 0);
    const auto before = Current().Record;
    for (const int index : {-1, 0, 4, 6, 8, 10, 14, 16}) {
        Messages.Expect(NotWorking);
        Window->ToolbarButtonClick(index);
    }
    auto& toolbar = Find<QToolBar>(*Window, "tbrMain");
    Messages.Expect(NotWorking);
    QTest::mouseClick(&toolbar, Qt::LeftButton, {}, toolbar.actionGeometry(toolbar.actions().at(3)).center());
    EXPECT_EQ(DesktopServices.Beeps, 9);
    EXPECT_EQ(Current().Record, before);
    Press("tbrMain(1)");
    EXPECT_EQ(Current().Record.RunCount, 0);
}

TEST_F(MainWindow, ExportsTheRunListToTheFileThatIsNamed) {
    Start();
    Messages.Expect(
        "You need to select one or more runs before continuing.\nClick the Add Runs buttons in the center window.");
    Choose("mnuUtilExport");
    StartWith({{"R1", 15}});
    Choose("mnuUtilExport");
    EXPECT_EQ(DesktopServices.AskedFrom, Group + "AM.xls");
    EXPECT_EQ(DesktopServices.KindsOffered, "*.xls*.xlsx*.csv");
    DesktopServices.FileToSave = "/start/list.xls";
    Messages.Expect("The run list was exported to:\n/start/list.xls");
    Choose("mnuUtilExport");
    EXPECT_TRUE(Files.Bytes("/start/list.xls"));
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    DesktopServices.FileToSave = "/start/other.csv";
    Messages.Expect("Run-time error '61':\nDisk full\n\n/start/other.csv");
    Choose("mnuUtilExport");
    EXPECT_FALSE(Files.Bytes("/start/other.csv"));
}

TEST_F(MainWindow, WhatIsTypedIsInTheRecordAtOnce) {
    StartWith({});
    EXPECT_TRUE(State.StudyUnchanged) << "showing a study is no change";
    EXPECT_EQ(Label("lblSaved"), "Saved");
    struct Field {
        const char* Name;
        std::string StudyRecord::*Member;
        int Width;
    };
    for (const Field& field :
         {Field{"txtStudyName", &StudyRecord::StudyName, 32}, Field{"txtStreetName", &StudyRecord::StreetName, 40},
          Field{"StudyNotes", &StudyRecord::StudyNotes, 128}}) {
        State.StudyUnchanged = true;
        State.StudyFieldsEdited = false;
        Type(*Window, field.Name, QString(200, 'm'));
        EXPECT_EQ(Current().Record.*field.Member, std::string(field.Width, 'm')) << field.Name;
        EXPECT_FALSE(State.StudyUnchanged) << field.Name;
        EXPECT_TRUE(State.StudyFieldsEdited) << field.Name;
    }
    State.StudyUnchanged = true;
    QTest::keyClick(&Find<QComboBox>(*Window, "cmbDir"), Qt::Key_Down);
    EXPECT_EQ(Current().Record.Direction, 2) << "EB follows SB";
    EXPECT_FALSE(State.StudyUnchanged);
    QTest::keyClick(&Find<QComboBox>(*Window, "cmbCritLane"), Qt::Key_End);
    EXPECT_EQ(Current().Record.CritLane, 4);
    EXPECT_EQ(Label("lblSaved"), "Not saved");
    EXPECT_TRUE(Window->isWindowModified());
}

TEST_F(MainWindow, StatisticsNeedRunsAndAName) {
    Start();
    Messages.Expect(
        "You need to select one or more runs before continuing.\nClick the Add Runs buttons in the center window.");
    Choose("mnuViewStatistics");
    AddRuns(State, {"R1"});
    Messages.Expect(
        "You need to give this study a name before continuing.\nClick in the Name input box and enter a name.");
    Choose("mnuViewStatistics");
    Type(*Window, "txtStudyName", "PM");
    Choose("mnuViewStatistics");
    EXPECT_EQ(List().model()->rowCount(), 1);
}

TEST_F(MainWindow, SaveNowAsksAndWritesUnderASafeName) {
    StartWith({{"R1", 12}});
    const auto question = [](const std::string& name) {
        return "Do you want to save study: " + name + "\n in Study Group: Main Street ?";
    };
    for (const char* name : {"", "a/b"}) {
        Type(*Window, "txtStudyName", name);
        if (*name == '\0') Find<QLineEdit>(*Window, "txtStudyName").clear();
        Messages.Expect(question(name), Yes);
        Messages.Expect(UnsafeNameMessage(name));
        Choose("mnuFileSave");
        EXPECT_FALSE(State.StudyUnchanged);
    }
    Type(*Window, "txtStudyName", "PM");
    Messages.Expect(question("PM"), No);
    QTest::keyClick(Window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(HasFile("PM.ld2"));
    Messages.Expect(question("PM"), Yes);
    QTest::keyClick(Window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Saved("PM").RunNames[1], "R1");
    EXPECT_EQ(Label("lblSaved"), "Saved");
    Choose("mnuFileExit");
    EXPECT_FALSE(Window->isVisible()) << "nothing is asked right after a save";
}

TEST_F(MainWindow, AFailingSaveKeepsTheWindowOpenAndTheStudyUnsaved) {
    StartWith({{"R1", 12}});
    Type(*Window, "StudyNotes", "rain");
    const std::string diskFull = "Run-time error '61':\nDisk full\n\n" + Group + "AM.ld2";
    Messages.Expect(AsksAboutChanges, Yes);
    Messages.Expect(diskFull);
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_FALSE(Window->close());
    EXPECT_TRUE(Window->isVisible());
    Messages.Expect(AsksAboutChanges, Yes);
    Messages.Expect(diskFull);
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Choose("mnuFileNew");
    EXPECT_EQ(Current().Record.StudyNotes, "rain");
    EXPECT_FALSE(State.StudyUnchanged);
    Messages.Expect(AsksAboutChanges, Yes);
    EXPECT_TRUE(Window->close());
    EXPECT_EQ(Saved("AM").Record.StudyNotes, "rain");
}

TEST_F(MainWindow, AStudyThatCannotBeSavedIsNotLeft) {
    Start();
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"R1"}) > 0; };
    Press("BtnAddRun");
    for (const char* leave : {"mnuFileNew", "mnuFileOpen", "mnuFileExit"}) {
        Messages.Expect(AsksToSaveNew, Yes);
        Messages.Expect(UnsafeNameMessage(""));
        Choose(leave);
        EXPECT_EQ(Current().Record.RunCount, 1) << leave;
        EXPECT_TRUE(Window->isVisible());
    }
    EXPECT_EQ(OtherScreens.Shown, Names{"frmRunSelect"});
    Messages.Expect(AsksToSaveNew, No);
    Choose("mnuFileNew");
    EXPECT_EQ(Current().Record.RunCount, 0);
    EXPECT_EQ(List().model()->rowCount(), 0);
}

TEST_F(MainWindow, SaveAsShowsTheStudyUnderItsNewName) {
    StartWith({{"R1", 12}});
    Choose("mnuFileSaveAs");
    EXPECT_EQ(OtherScreens.Shown, Names{"frmStudySaveAs"});
    OtherScreens.OnShow["frmStudySaveAs"] = [this] {
        Files.CreateFolder("/start/Study Groups/Side Street/");
        SaveStudyAs(State, Files, "/start/Study Groups/Side Street/", "Copy");
        return true;
    };
    Messages.Expect("Missing Run File: R1");
    Choose("mnuFileSaveAs");
    EXPECT_EQ(Find<QLineEdit>(*Window, "txtStudyName").text(), "Copy");
    EXPECT_EQ(Label("lblStudyGroup"), "Study Group: /start/Study Groups/Side Street/");
    EXPECT_TRUE(State.StudyUnchanged);
}

}  // namespace
}  // namespace vantor
