#include "workspace/forms/frmPrefs.h"

#include <QTabWidget>

#include "core/UserChoices.h"
#include "core/forms/Theme.h"
#include "fakes/FormScene.h"
#include "workspace/MainStreet.h"

namespace vantor {
namespace {

const char* const Temp = "txtFilePath(1)";
const char* const GroupRoot = "txtFilePath(2)";
const char* const FieldData = "txtFilePath(3)";

struct frmPrefsTest : MainStreet<FormScene<frmPrefs>> {
    const std::string RootTold =
        "The Study Group Root Path has been changed. The new path won't go into effect until the next time the "
        "program is run.";

    frmPrefsTest() { State.Paths.LastStudyGroupPath = State.Settings.LastStudyGroupPath; }
    void OpenAt(int tab) {
        Open();
        Get<QTabWidget>("tabPrefs").setCurrentIndex(tab);
    }
    /// The record that the settings file holds; nothing without one.
    std::optional<AppSettings> SavedSettings() const {
        const auto bytes = Files.Bytes("/program/VANTOR.bin");
        return bytes ? std::optional(DecodeRecord<AppSettings>(AppSettingsFields, *bytes)) : std::nullopt;
    }
    void ExpectSaved() {
        Press("btnOk");
        EXPECT_TRUE(IsAccepted() && State.PrefsChanged);
        EXPECT_EQ(SavedSettings(), State.Settings);
    }
    void ExpectUntouched(const AppSettings& settings) {
        EXPECT_EQ(State.Settings, settings);
        EXPECT_EQ(State.Paths.TempRunsPath, "/start/Temp/");
        EXPECT_FALSE(State.PrefsChanged || SavedSettings());
    }
    void AsksToCreate(const std::string& folder, MessageAnswer answer) {
        Messages.Expect("There is no folder: " + folder + "\nDo you want to create it?", answer);
    }
    void ClickBox(const char* box) { QTest::mouseClick(&Get<QWidget>(box), Qt::LeftButton); }
    void ClickTree(const char* folder) { ClickFolder(*Window, "trePrefs", folder); }
    std::string YellowBoxes() {
        std::string yellow;
        for (const char* box : {Temp, GroupRoot, FieldData})
            if (Get<QWidget>(box).palette().color(QPalette::Base) == YellowPair(QPalette()).Background) yellow += box;
        return yellow;
    }
    void ExpectPort(const char* port, bool isRed, const char* tip) {
        auto& ports = Get<QComboBox>("cmbCommPort");
        EXPECT_EQ(ports.currentText(), port);
        EXPECT_EQ(ports.lineEdit()->palette().color(QPalette::Text) == QColor(Qt::red), isRed);
        EXPECT_EQ(ports.toolTip(), tip);
    }
};

TEST_F(frmPrefsTest, OkWithoutAChangeKeepsEverySetting) {
    AppSettings& settings = State.Settings;
    for (const int tab : {0, 1, 2}) {
        for (auto flag :
             {&AppSettings::UseStartUpScreen, &AppSettings::AutoConvertVer1, &AppSettings::MetricUnits,
              &AppSettings::EnableStopDelay, &AppSettings::ShowRunNamesOnStats, &AppSettings::ShowPageNumbers})
            settings.*flag = static_cast<std::int16_t>(-(tab % 2));
        settings.StopSpeedThreshold = 7;
        settings.CommPort = static_cast<std::int16_t>(tab + 3);  // 3 and 5 cannot be opened
        settings.BaudRate = 2400;
        const AppSettings before = settings;
        OpenAt(tab);
        ExpectSaved();
        EXPECT_EQ(settings, before);
        EXPECT_EQ(DesktopServices.Beeps, 0);
    }
}

TEST_F(frmPrefsTest, TakesEveryChoice) {
    AppSettings expected = State.Settings;
    OpenAt(1);
    for (const char* option : {"OptUseStartUpWizard(1)", "optVer1(1)", "optUnits(1)", "optEnableStopDelay(0)",
                               "chkSignedCoordinates", "chkRepOpt(0)", "chkRepOpt(3)", "chkRepOpt(6)"})
        Get<QAbstractButton>(option).click();
    TypeInto("txtStopSpeed", " 5.9 ");
    Get<QComboBox>("cmbBaudRate").setCurrentText("57600");
    TypeInto("txtReportHeading(2)", QString(70, 'x'));
    ExpectSaved();

    expected.UseStartUpScreen = expected.AutoConvertVer1 = 0;
    expected.MetricUnits = expected.EnableStopDelay = -1;
    expected.StopSpeedThreshold = 5;
    expected.CommPort = 1;
    expected.BaudRate = 57600;
    expected.ReportHeading[2] = std::string(64, 'x');
    expected.ShowRunNamesOnStats = expected.ShowPageNumbers = 0;
    EXPECT_EQ(State.Settings, expected);
    EXPECT_EQ(State.SpeedUnitLabel, "MPH") << "the labels change at the next start";
    OpenAt(1);
    EXPECT_TRUE(IsChecked("chkSignedCoordinates"));
    EXPECT_FALSE(IsChecked("chkRepOpt(3)"));
}

TEST_F(frmPrefsTest, AFolderIsClickedInTheTreeTypedOrBrowsedFor) {
    for (const char* folder : {"/data", "/usb"}) Files.CreateFolder(folder);
    OpenAt(0);
    EXPECT_EQ(YellowBoxes(), "");
    ClickTree("Main Street");
    EXPECT_EQ(Text(Temp), "/start/Temp/") << "no box is chosen";
    ClickBox(Temp);
    EXPECT_EQ(YellowBoxes(), Temp);
    ClickTree("Main Street");  // the current folder of the tree already
    EXPECT_EQ(Text(Temp), Group);
    ClickBox(FieldData);
    EXPECT_EQ(YellowBoxes(), FieldData);
    ClickTree("Main Street");
    ClickTree("Oak & Elm Ave");
    EXPECT_EQ(Text(FieldData), OakElm);

    TypeInto(Temp, " /data ");
    EXPECT_EQ(YellowBoxes(), Temp);
    PressKey(Qt::Key_Return);
    EXPECT_TRUE(Window->isVisible()) << "Enter takes the folder alone";
    EXPECT_EQ(YellowBoxes(), "");
    ClickTree("Main Street");
    EXPECT_EQ(Text(Temp), "/data");
    ClickBox(Temp);
    EXPECT_EQ(YellowBoxes(), Temp);

    Press("cmdBrowse(3)");
    EXPECT_EQ(DesktopServices.AskedFrom, OakElm);
    EXPECT_EQ(Text(FieldData), OakElm);
    DesktopServices.FolderToChoose = "/usb";
    Press("cmdBrowse(3)");
    ExpectSaved();
    EXPECT_EQ(State.Paths.TempRunsPath, "/data");
    EXPECT_EQ(State.Settings.FieldDataPath, "/usb/");
}

TEST_F(frmPrefsTest, ANewRootIsToldWaitsForTheNextStartAndIsNotForgotten) {
    Files.CreateFolder("/other");
    const std::string question =
        "The Study Group Root Path was to be, from the next start:\n/other\n\nKeep that? No stays with:\n" + Root;
    OpenAt(0);
    TypeInto(GroupRoot, " /other ");
    Messages.Expect(RootTold);
    ExpectSaved();
    EXPECT_EQ(DesktopServices.Beeps, 1);
    EXPECT_EQ(State.Settings.StudyGroupRootPath, "/other");
    EXPECT_EQ(State.Paths.StudyGroupRootPath, Root);

    OpenAt(0);
    EXPECT_EQ(Text("lblNextRoot"), "From the next start: /other");
    EXPECT_EQ(Text(GroupRoot), Root);
    Press("cmdTakeNextRoot");
    EXPECT_EQ(Text(GroupRoot), "/other");
    Press("btnCancel");
    for (const auto answer : {Yes, Cancel, No}) {
        OpenAt(0);
        Messages.Expect(question, answer);
        if (answer == Yes) Messages.Expect(RootTold);
        Press("btnOk");
        EXPECT_EQ(Window->isVisible(), answer == Cancel);
        EXPECT_EQ(State.Settings.StudyGroupRootPath, answer == No ? Root : "/other");
    }
    State.Settings.StudyGroupRootPath = "/other";
    OpenAt(0);
    TypeInto(GroupRoot, "/start/Study Groups");  // the folder in use
    ExpectSaved();
}

TEST_F(frmPrefsTest, AFolderThatIsNoGoodIsTakenOnlyWhenTheUserInsistsAndAMissingOneMade) {
    const std::string tooLong = "/" + std::string(80, 'x');
    OpenAt(1);
    Get<QLineEdit>(FieldData).setText(ToQt(tooLong));
    EXPECT_THAT(Text("lblFilePath(3)"), HasSubstr("Longer than the 80"));
    Press("btnOk");
    EXPECT_TRUE(Window->isVisible());
    EXPECT_TRUE(Get<QWidget>(FieldData).hasFocus());
    Press("cmdUseAnyway(3)");
    TypeInto(Temp, "/new");
    AsksToCreate("/new", Yes);
    AsksToCreate(tooLong, No);
    Press("btnOk");
    EXPECT_TRUE(Files.Find("/new"));
    EXPECT_FALSE(Files.Find(tooLong));
    EXPECT_EQ(State.Paths.FieldDataPath, tooLong);
    EXPECT_EQ(SavedSettings()->FieldDataPath, tooLong.substr(0, 80));

    // What is in use already is told and stays.
    State.Paths.TempRunsPath = "runs";
    OpenAt(0);
    EXPECT_FALSE(IsShown("cmdUseAnyway(1)"));
    TypeInto(Temp, "/other");
    EXPECT_EQ(Text("lblFilePath(1)"), "Where temporary runs are kept");
}

TEST_F(frmPrefsTest, TheBarFillsTheBoxesAndMakesItsFolders) {
    const std::string folder = "/home/me/Documents/Vantor/";
    OpenAt(0);
    Press("cmdUseDocuments");
    EXPECT_THAT(Text("lblDocuments"), HasSubstr(folder));
    EXPECT_EQ(Text(GroupRoot), folder + "Study Groups/");
    Messages.Expect(RootTold);
    ExpectSaved();
    for (const char* made : {"Temp", "Study Groups", "Field Data Files"}) EXPECT_TRUE(Files.Find(folder + made));
    EXPECT_EQ(State.Paths.LastStudyGroupPath, folder + "Study Groups/");
}

TEST_F(frmPrefsTest, RestartIsOfferedForWhatWaitsForTheNextStart) {
    OpenAt(1);
    EXPECT_FALSE(IsShown("fraNextStart"));
    TypeInto("txtStopSpeed", "5");
    for (const char* units : {"optUnits(1)", "optUnits(0)", "optUnits(1)"}) {
        Press(units);
        EXPECT_EQ(IsShown("fraNextStart"), IsChecked("optUnits(1)"));
    }
    EXPECT_EQ(Text("lblStopSpeedUnit"), "MPH = 8 KPH");
    Press("cmdRestart");
    EXPECT_TRUE(IsAccepted() && State.RestartWanted);
    EXPECT_EQ(SavedSettings()->MetricUnits, -1);
}

TEST_F(frmPrefsTest, WhatCannotBeTakenTakesNothingOver) {
    const AppSettings settings = State.Settings;
    OpenAt(1);
    for (const char* box : {Temp, GroupRoot}) TypeInto(box, "/start");
    Press("optUnits(1)");
    Get<QLineEdit>("txtStopSpeed").setText("5 mph");
    Get<QTabWidget>("tabPrefs").setCurrentIndex(2);
    Messages.Expect("Run-time error '13':\nType mismatch\n\nStop Speed Threshold: 5 mph\nCorrect it and try again.");
    Press("btnOk");
    ExpectUntouched(settings);
    EXPECT_EQ(Get<QTabWidget>("tabPrefs").currentIndex(), 1);
    EXPECT_TRUE(Get<QWidget>("txtStopSpeed").hasFocus());

    TypeInto("txtStopSpeed", "5");
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Messages.Expect("Run-time error '61':\nDisk full\n\n/program/VANTOR.bin");
    Press("btnOk");
    ExpectUntouched(settings);
    EXPECT_EQ(DesktopServices.Beeps, 0);
    EXPECT_TRUE(Window->isVisible());
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());
    ExpectUntouched(settings);
}

TEST_F(frmPrefsTest, ListsThePortsThatOpenAndShowsAnotherSavedOneInRed) {
    Serial.Available = {0, 1, 4, 16, 17};
    State.Settings.CommPort = 3;
    OpenAt(1);
    EXPECT_EQ(ItemsOf(*Window, "cmbCommPort"), (Names{"1", "4", "16"}));
    ExpectPort("3", true, "/dev/fake3, USB Serial Converter\nThis port cannot be opened.");

    // By keyboard through the list, and back to the saved port.
    auto& ports = Get<QComboBox>("cmbCommPort");
    QTest::keyClick(&ports, Qt::Key_Down);
    ExpectPort("1", false, "/dev/fake1");
    QTest::keyClick(&ports, Qt::Key_Down);
    ExpectPort("4", false, "/dev/fake4");
    ports.lineEdit()->selectAll();
    QTest::keyClicks(ports.lineEdit(), "3");
    ExpectPort("3", true, "/dev/fake3, USB Serial Converter\nThis port cannot be opened.");
    ExpectSaved();
    EXPECT_EQ(State.Settings.CommPort, 3);

    Serial.Available.clear();
    OpenAt(1);
    EXPECT_THAT(ItemsOf(*Window, "cmbCommPort"), IsEmpty());
    ExpectPort("3", true, "/dev/fake3, USB Serial Converter\nThis port cannot be opened.");
}

TEST_F(frmPrefsTest, TheBaseMapIsLookedAtWhenItIsChosen) {
    Tiles.Path = "/maps/town.mbtiles";
    Open();
    DesktopServices.FileToOpen = "/maps/other.mbtiles";
    Messages.Expect("Run-time error '53':\nFile not found\n\n/maps/other.mbtiles");
    Press("cmdBrowseBaseMap");
    EXPECT_EQ(Text("txtBaseMap"), "") << "what cannot be drawn is not taken";
    DesktopServices.FileToOpen = Tiles.Path;
    Press("cmdBrowseBaseMap");
    EXPECT_EQ(Text("lblBaseMap"), "Streets, zoom levels 0 to 16");
    Press("btnOk");
    EXPECT_EQ(ChoiceOf(LoadUserChoices(Files), BaseMapKey), Tiles.Path);
    Open();
    EXPECT_EQ(Text("txtBaseMap"), Tiles.Path);
    Press("cmdClearBaseMap");
    Press("btnOk");
    EXPECT_EQ(ChoiceOf(State.Choices, BaseMapKey), "");
}

}  // namespace
}  // namespace vantor
