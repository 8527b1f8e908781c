#include "workspace/forms/frmPrefs.h"

#include <gmock/gmock.h>

#include <QTabWidget>
#include <numeric>
#include <set>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string Root = "/start/Study Groups/";
const char* const Temp = "txtFilePath(1)";
const char* const GroupRoot = "txtFilePath(2)";
const char* const FieldData = "txtFilePath(3)";

const char* const RootTold =
    "The Study Group Root Path has been changed. The new path won't go into effect until the next time the program is "
    "run.";

class frmPrefsTest : public testing::Test {
protected:
    frmPrefsTest() {
        for (const char* group : {"Main St", "Oak & Elm Ave"}) Program.Files.CreateFolder(Root + group);
    }

    frmPrefs& Open(int tab = 0) {
        const auto available = [this](int port) {
            Tried.push_back(port);
            return Ports.contains(port);
        };
        Form = std::make_unique<frmPrefs>(Program.Context, available,
                                          [](int port) { return "/dev/port" + std::to_string(port); });
        Find<QTabWidget>(*Form, "tabPrefs").setCurrentIndex(tab);
        Form->show();
        Form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Form.get()));
        return *Form;
    }

    /// The record that the settings file holds; nothing without one.
    std::optional<AppSettings> Saved() {
        const auto bytes = Program.Files.Bytes("/program/VANTOR.bin");
        if (!bytes) return std::nullopt;
        return DecodeRecord<AppSettings>(AppSettingsFields, *bytes);
    }
    void ExpectSaved() {
        Click(*Form, "btnOk");
        EXPECT_EQ(Form->result(), QDialog::Accepted);
        EXPECT_TRUE(State.PrefsChanged);
        EXPECT_EQ(Saved(), State.Settings);
    }
    void ExpectUntouched(const AppSettings& settings, const WorkingPaths& paths) {
        EXPECT_TRUE(Form->isVisible());
        EXPECT_EQ(State.Settings, settings);
        EXPECT_EQ(State.Paths.TempRunsPath, paths.TempRunsPath);
        EXPECT_EQ(State.Paths.FieldDataPath, paths.FieldDataPath);
        EXPECT_FALSE(State.PrefsChanged);
        EXPECT_FALSE(Saved());
    }

    std::string Text(const char* box) { return FromQt(Find<QLineEdit>(*Form, box).text()); }
    void ClickBox(const char* box) { QTest::mouseClick(&Find<QWidget>(*Form, box), Qt::LeftButton); }
    void ClickFolder(const QString& name) {
        auto& tree = Find<FolderTree>(*Form, "trePrefs");
        const auto items = tree.findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(items.size(), 1) << FromQt(name);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(items.front()).center());
    }
    std::vector<std::string> YellowBoxes() {
        std::vector<std::string> yellow;
        for (const char* box : {Temp, GroupRoot, FieldData}) {
            const QPalette palette = Find<QLineEdit>(*Form, box).palette();
            if (palette.color(QPalette::Base) == YellowPair(QPalette()).Background) yellow.emplace_back(box);
        }
        return yellow;
    }
    bool IsChecked(const char* name) { return Find<QAbstractButton>(*Form, name).isChecked(); }
    std::vector<std::string> Items(const char* list) {
        std::vector<std::string> items;
        auto& box = Find<QComboBox>(*Form, list);
        for (int i = 0; i < box.count(); ++i) items.push_back(FromQt(box.itemText(i)));
        return items;
    }
    bool IsPortRed() {
        return Find<QComboBox>(*Form, "cmbCommPort").lineEdit()->palette().color(QPalette::Text) == RedText(QPalette());
    }

    TestProgram Program;
    ApplicationState& State = Program.State;
    std::set<int> Ports{1, 4};
    std::vector<int> Tried;
    std::unique_ptr<frmPrefs> Form;
};

TEST_F(frmPrefsTest, OpensWithTheSettingsInForce) {
    State.Settings.UseStartUpScreen = State.Settings.AutoConvertVer1 = State.Settings.ShowPageNumbers = 0;
    State.Settings.MetricUnits = State.Settings.EnableStopDelay = -1;
    State.Settings.StopSpeedThreshold = 7;
    State.Settings.CommPort = 4;
    State.Settings.BaudRate = 115200;
    State.Settings.StudyGroupRootPath = "/elsewhere/";  // takes effect at the next start
    frmPrefs& form = Open();
    EXPECT_EQ(form.windowTitle(), "Vantor Preferences");
    auto& tabs = Find<QTabWidget>(form, "tabPrefs");
    for (int i = 0; const char* caption : {"Path Options", "Default Values", "Report Options"})
        EXPECT_EQ(WithoutAccessKey(tabs.tabText(i++)), caption);
    EXPECT_THAT((std::vector{Text(Temp), Text(GroupRoot), Text(FieldData)}),
                ElementsAre("/start/Temp/", Root, "/start/Field Data Files/"));
    EXPECT_EQ(Find<FolderTree>(form, "trePrefs").topLevelItem(0)->text(0), "Study Groups");
    EXPECT_EQ(Find<QLabel>(form, "txtQuickDirections").text(),
              "1- Click in the text box of the path you want to change.  The text box will turn yellow.\n"
              "2a- Click on the name of the new path folder on the tree diagram. The name in the text box will "
              "change.\nOr\n2b- Type the full path name into the text box, then press Enter.");
    EXPECT_TRUE(IsChecked("OptUseStartUpWizard(1)") && IsChecked("optVer1(1)") && IsChecked("optUnits(1)") &&
                IsChecked("optEnableStopDelay(0)"));
    EXPECT_EQ(Text("txtStopSpeed"), "7");
    EXPECT_THAT(Items("cmbBaudRate"),
                ElementsAre("4800", "9600", "14400", "19200", "28800", "38400", "57600", "115200"));
    EXPECT_EQ(Find<QComboBox>(form, "cmbBaudRate").currentText(), "115200");
    EXPECT_EQ(Text("txtReportHeading(3)"), "Heading Third Line");
    EXPECT_TRUE(IsChecked("chkRepOpt(0)"));
    for (int i = 1; i <= 6; ++i) EXPECT_FALSE(IsChecked(FromQt(QStringLiteral("chkRepOpt(%1)").arg(i)).c_str()));
    Click(form, "cmdHelp");
    EXPECT_THAT(Program.DesktopServices.Opened, ElementsAre("/program/VANTOR.HLP#20"));
}

TEST_F(frmPrefsTest, OkWithoutAChangeKeepsEverySetting) {
    for (int tab : {0, 1, 2}) {
        State.Settings.CommPort = static_cast<std::int16_t>(tab + 3);  // 3 and 5 cannot be opened
        State.Settings.BaudRate = 2400;
        const AppSettings before = State.Settings;
        Open(tab);
        ExpectSaved();
        EXPECT_EQ(State.Settings, before);
        EXPECT_EQ(Program.DesktopServices.Beeps, 0);
    }
}

TEST_F(frmPrefsTest, TakesEveryChoice) {
    AppSettings expected = State.Settings;
    frmPrefs& form = Open(1);
    for (const char* option : {"OptUseStartUpWizard(1)", "optVer1(1)", "optUnits(1)", "optEnableStopDelay(0)"})
        Click(form, option);
    Type(form, "txtStopSpeed", " 5.9 ");
    Find<QComboBox>(form, "cmbBaudRate").setCurrentText("57600");
    Click(form, "chkSignedCoordinates");
    Find<QTabWidget>(form, "tabPrefs").setCurrentIndex(2);
    Type(form, "txtReportHeading(2)", QString(70, 'x'));
    for (const char* option : {"chkRepOpt(0)", "chkRepOpt(3)", "chkRepOpt(6)"}) Click(form, option);
    ExpectSaved();

    expected.UseStartUpScreen = expected.AutoConvertVer1 = 0;
    expected.MetricUnits = expected.EnableStopDelay = -1;
    expected.StopSpeedThreshold = 5;
    expected.CommPort = 1;
    expected.BaudRate = 57600;
    expected.ReportHeading[2] = std::string(64, 'x');
    expected.ShowRunNamesOnStats = expected.ShowPageNumbers = 0;
    EXPECT_EQ(State.Settings, expected);
    EXPECT_EQ(State.SpeedUnitLabel, "MPH");  // the labels change at the next start
    EXPECT_TRUE(Find<QCheckBox>(Open(1), "chkSignedCoordinates").isChecked());
    Open(2);
    EXPECT_FALSE(IsChecked("chkRepOpt(3)"));
}

TEST_F(frmPrefsTest, AFolderClickedInTheTreeGoesIntoTheYellowBox) {
    Open();
    EXPECT_THAT(YellowBoxes(), IsEmpty());
    ClickFolder("Main St");
    EXPECT_EQ(Text(Temp), "/start/Temp/");

    ClickBox(Temp);
    EXPECT_THAT(YellowBoxes(), ElementsAre(Temp));
    ClickFolder("Main St");  // the current folder of the tree already
    EXPECT_EQ(Text(Temp), Root + "Main St/");
    ClickBox(FieldData);
    EXPECT_THAT(YellowBoxes(), ElementsAre(FieldData));
    ClickFolder("Main St");
    ClickFolder("Oak & Elm Ave");
    EXPECT_EQ(Text(FieldData), Root + "Oak & Elm Ave/");
    ExpectSaved();
    EXPECT_EQ(State.Paths.TempRunsPath, Root + "Main St/");
    EXPECT_EQ(State.Settings.FieldDataPath, Root + "Oak & Elm Ave/");
}

TEST_F(frmPrefsTest, EnterAcceptsATypedFolderAndLeavesTheScreenOpen) {
    Program.Files.CreateFolder("/data");
    frmPrefs& form = Open();
    Type(form, Temp, " /data ");
    EXPECT_THAT(YellowBoxes(), ElementsAre(Temp));
    QTest::keyClick(&Find<QWidget>(form, Temp), Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_THAT(YellowBoxes(), IsEmpty());
    ClickFolder("Main St");
    EXPECT_EQ(Text(Temp), "/data");
    ClickBox(Temp);
    EXPECT_THAT(YellowBoxes(), ElementsAre(Temp));
    ExpectSaved();
    EXPECT_EQ(State.Paths.TempRunsPath, "/data");
}

TEST_F(frmPrefsTest, BrowsingChoosesAnyFolder) {
    Program.Files.CreateFolder("/usb");
    frmPrefs& form = Open();
    Click(form, "cmdBrowse(3)");
    EXPECT_EQ(Program.DesktopServices.AskedFrom, "/start/Field Data Files/");
    EXPECT_EQ(Text(FieldData), "/start/Field Data Files/");
    Program.DesktopServices.FolderToChoose = "/usb";
    Click(form, "cmdBrowse(3)");
    EXPECT_EQ(Text(FieldData), "/usb/");
}

TEST_F(frmPrefsTest, ANewRootIsToldOnceAndWaitsForTheNextStart) {
    Program.Files.CreateFolder("/other");
    frmPrefs& form = Open();
    Type(form, GroupRoot, " /other ");
    Program.Messages.Expect(RootTold);
    ExpectSaved();
    EXPECT_EQ(Program.DesktopServices.Beeps, 1);
    EXPECT_EQ(State.Settings.StudyGroupRootPath, "/other");
    EXPECT_EQ(State.Paths.StudyGroupRootPath, Root);

    Open();
    EXPECT_EQ(Text(GroupRoot), Root);
    Type(*Form, GroupRoot, "/start/Study Groups");  // the folder in use
    ExpectSaved();
}

TEST_F(frmPrefsTest, OffersToCreateMissingFolders) {
    frmPrefs& form = Open();
    Type(form, Temp, "/new");
    Type(form, FieldData, "/unplugged");
    Program.Messages.Expect("There is no folder: /new\nDo you want to create it?", MessageAnswer::Yes);
    Program.Messages.Expect("There is no folder: /unplugged\nDo you want to create it?", MessageAnswer::No);
    ExpectSaved();
    EXPECT_TRUE(Program.Files.Find("/new"));
    EXPECT_FALSE(Program.Files.Find("/unplugged"));
    EXPECT_EQ(State.Paths.FieldDataPath, "/unplugged");
}

TEST_F(frmPrefsTest, AFolderThatIsNoGoodIsTakenOnlyWhenTheUserInsists) {
    struct Case {
        QString Folder;
        const char* Reason;
    };
    for (const Case& c : {Case{" ", "No folder"}, Case{"runs", "Not a whole path"}, Case{"~/runs", "\"~\""},
                          Case{"/" + QString(80, 'x'), "Longer than the 80"},
                          Case{"/" + QString(3, QChar(0x0416)), "no room for some of its letters"}}) {
        frmPrefs& form = Open(1);
        Find<QLineEdit>(form, FieldData).setText(c.Folder);
        EXPECT_THAT(FromQt(Find<QLabel>(form, "lblFilePath(3)").text()), testing::HasSubstr(c.Reason));
        Click(form, "btnOk");
        EXPECT_TRUE(form.isVisible()) << c.Reason;
        EXPECT_EQ(form.focusWidget(), &Find<QWidget>(form, FieldData));
        if (c.Folder.startsWith("/" + QString(80, 'x'))) {
            Click(form, "cmdUseAnyway(3)");
            Program.Messages.Expect("There is no folder: " + FromQt(c.Folder) + "\nDo you want to create it?",
                                    MessageAnswer::No);
            Click(form, "btnOk");
            EXPECT_EQ(State.Paths.FieldDataPath, FromQt(c.Folder));
            EXPECT_EQ(Saved()->FieldDataPath, FromQt(c.Folder).substr(0, 80));
        }
    }
    // What is in use already is told and stays.
    State.Paths.TempRunsPath = "runs";
    Program.Files.CreateFolder("/start/runs");
    Open();
    EXPECT_TRUE(Find<QWidget>(*Form, "cmdUseAnyway(1)").isHidden());
    Type(*Form, Temp, "/" + QString(79, 'x'));
    EXPECT_EQ(Find<QLabel>(*Form, "lblFilePath(1)").text(), "Where temporary runs are kept");
}

TEST_F(frmPrefsTest, TheBarFillsTheBoxesAndMakesItsFolders) {
    frmPrefs& form = Open();
    Click(form, "cmdUseDocuments");
    EXPECT_THAT(FromQt(Find<QLabel>(form, "lblDocuments").text()), testing::HasSubstr("/home/me/Documents/Vantor"));
    EXPECT_EQ(Text(GroupRoot), "/home/me/Documents/Vantor/Study Groups/");
    Program.Messages.Expect(RootTold);
    ExpectSaved();
    for (const char* folder : {"Temp", "Study Groups", "Field Data Files"})
        EXPECT_TRUE(Program.Files.Find(std::string("/home/me/Documents/Vantor/") + folder)) << folder;
    EXPECT_EQ(State.Paths.LastStudyGroupPath, "/home/me/Documents/Vantor/Study Groups/");
}

TEST_F(frmPrefsTest, ARootThatWaitsIsShownAndNotForgotten) {
    Program.Files.CreateFolder("/other");
    State.Settings.StudyGroupRootPath = "/other";
    const std::string question =
        "The Study Group Root Path was to be, from the next start:\n/other\n\nKeep that? No stays with:\n" + Root;
    EXPECT_EQ(Find<QLabel>(Open(), "lblNextRoot").text(), "From the next start: /other");
    Program.Messages.Expect(question, MessageAnswer::Yes);
    Program.Messages.Expect(RootTold);
    ExpectSaved();
    EXPECT_EQ(State.Settings.StudyGroupRootPath, "/other");
    Open();
    Click(*Form, "cmdTakeNextRoot");
    EXPECT_EQ(Text(GroupRoot), "/other");
    Click(*Form, "btnCancel");
    Open();
    Program.Messages.Expect(question, MessageAnswer::Cancel);
    Click(*Form, "btnOk");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_EQ(State.Settings.StudyGroupRootPath, "/other");
    Program.Messages.Expect(question, MessageAnswer::No);
    ExpectSaved();
    EXPECT_EQ(State.Settings.StudyGroupRootPath, Root);
}

TEST_F(frmPrefsTest, RestartIsOfferedForWhatWaitsForTheNextStart) {
    frmPrefs& form = Open(1);
    auto& offer = Find<QWidget>(form, "fraNextStart");
    EXPECT_TRUE(offer.isHidden());
    Type(form, "txtStopSpeed", "5");
    Click(form, "optUnits(1)");
    EXPECT_FALSE(offer.isHidden());
    EXPECT_EQ(Find<QLabel>(form, "lblStopSpeedUnit").text(), "MPH = 8 KPH");
    Click(form, "optUnits(0)");
    EXPECT_TRUE(offer.isHidden());
    Click(form, "optUnits(1)");
    Click(form, "cmdRestart");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_TRUE(State.RestartWanted);
    EXPECT_EQ(Saved()->MetricUnits, -1);
}

TEST_F(frmPrefsTest, AWrongNumberTakesNothingOver) {
    const AppSettings settings = State.Settings;
    const WorkingPaths paths = State.Paths;
    for (const auto& [typed, error] : {std::pair{"", "'13':\nType mismatch"},
                                       {"ten", "'13':\nType mismatch"},
                                       {"5 mph", "'13':\nType mismatch"},
                                       {"32768", "'6':\nOverflow"},
                                       {"-32769", "'6':\nOverflow"},
                                       {"99999999999", "'6':\nOverflow"}}) {
        frmPrefs& form = Open(1);
        Type(form, Temp, "/elsewhere");
        Click(form, "optUnits(1)");
        Find<QLineEdit>(form, "txtStopSpeed").setText(typed);
        Find<QTabWidget>(form, "tabPrefs").setCurrentIndex(2);
        Program.Messages.Expect(std::string("Run-time error ") + error + "\n\nStop Speed Threshold: " + typed +
                                "\nCorrect it and try again.");
        Click(form, "btnOk");
        ExpectUntouched(settings, paths);
        EXPECT_EQ(Find<QTabWidget>(form, "tabPrefs").currentIndex(), 1);
        EXPECT_EQ(form.focusWidget(), &Find<QWidget>(form, "txtStopSpeed"));
    }
    Open(1);
    Find<QLineEdit>(*Form, "txtStopSpeed").setText("32767.9");
    ExpectSaved();
    EXPECT_EQ(State.Settings.StopSpeedThreshold, 32767);
}

TEST_F(frmPrefsTest, SettingsThatCannotBeSavedStayAsTheyWere) {
    const AppSettings settings = State.Settings;
    const WorkingPaths paths = State.Paths;
    frmPrefs& form = Open();
    Type(form, GroupRoot, "/start");
    Type(form, Temp, "/start");
    Program.Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n/program/VANTOR.bin");
    Click(form, "btnOk");
    ExpectUntouched(settings, paths);
    EXPECT_EQ(Program.DesktopServices.Beeps, 0);
}

TEST_F(frmPrefsTest, CancelAndEscTakeNothingOver) {
    const AppSettings settings = State.Settings;
    for (const bool byKey : {false, true}) {
        frmPrefs& form = Open();
        Type(form, Temp, "/elsewhere");
        Find<QAbstractButton>(form, "optUnits(1)").click();
        if (byKey)
            QTest::keyClick(&form, Qt::Key_Escape);
        else
            Click(form, "btnCancel");
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(State.Settings, settings);
        EXPECT_FALSE(State.PrefsChanged || Saved());
    }
}

TEST_F(frmPrefsTest, ListsThePortsThatOpenAndShowsAnotherSavedOneInRed) {
    State.Settings.CommPort = 3;
    frmPrefs& form = Open(1);
    std::vector<int> all(16);
    std::iota(all.begin(), all.end(), 1);
    EXPECT_EQ(Tried, all);
    EXPECT_THAT(Items("cmbCommPort"), ElementsAre("1", "4"));
    auto& ports = Find<QComboBox>(form, "cmbCommPort");
    EXPECT_EQ(ports.currentText(), "3");
    EXPECT_TRUE(IsPortRed());
    EXPECT_EQ(ports.toolTip(), "This port cannot be opened.");

    // By keyboard through the list, and back to the saved port.
    QTest::keyClick(&ports, Qt::Key_Down);
    QTest::keyClick(&ports, Qt::Key_Down);
    EXPECT_EQ(ports.currentText(), "4");
    EXPECT_FALSE(IsPortRed());
    EXPECT_EQ(ports.toolTip(), "/dev/port4");
    EXPECT_EQ(ports.itemData(0, Qt::ToolTipRole), "/dev/port1");
    ports.lineEdit()->selectAll();
    QTest::keyClicks(ports.lineEdit(), "3");
    EXPECT_TRUE(IsPortRed());
    ExpectSaved();
    EXPECT_EQ(State.Settings.CommPort, 3);
}

TEST_F(frmPrefsTest, WithoutPortsTheListIsEmpty) {
    Ports.clear();
    Open(1);
    EXPECT_THAT(Items("cmbCommPort"), IsEmpty());
    EXPECT_EQ(Find<QComboBox>(*Form, "cmbCommPort").currentText(), "1");
    EXPECT_TRUE(IsPortRed());
    ExpectSaved();
    EXPECT_EQ(State.Settings.CommPort, 1);
}

}  // namespace
}  // namespace vantor
