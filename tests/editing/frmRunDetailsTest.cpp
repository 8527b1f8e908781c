#include "editing/forms/frmRunDetails.h"

#include <gmock/gmock.h>

#include <QMenu>
#include <QScrollBar>
#include <memory>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string Group = "/start/Study Groups/Main/";
const std::string AsksToSave = "The details of run: A\nhave changed. Do you want to save them?";
constexpr auto Yes = MessageAnswer::Yes;
constexpr auto No = MessageAnswer::No;
constexpr int Node = 0x8000;

/// Run "A" of 90 ft, nodes at 30 and 60 ft, keys 11 and 12.
class frmRunDetailsTest : public testing::Test, protected TestProgram {
protected:
    frmRunDetailsTest() {
        Files.CreateFolder(Group);
        State.Paths.LastStudyGroupPath = Group;
        RunRecord& run = State.CurrentRun;
        run = RunOf({10, 0x0B00 | 10, Node | 10, 10, 0x0C00 | 10, Node | 10, 10, 10, 10});
        int node = 0;
        for (const char* name : {"First", "Ash", "Birch", "Last"}) run.Header.SectionName[node++] = name;
        run.Header.RunDate = DateOf(2008, 3, 14);
        run.Header.RunTime = TimeOf(7, 45, 12);
        run.Header.Before = -1;
        PutRunFile(Files, run, Group, "A");
        AppendRun(State.CurrentStudy, "A");
        State.StudyUnchanged = true;
        Bytes = *Files.Bytes(Group + "A.rd2");
    }
    ~frmRunDetailsTest() override { EXPECT_TRUE(Messages.IsDone()); }

    frmRunDetails& Open(int entry = 1) {
        Form = std::make_unique<frmRunDetails>(Context, entry);
        Form->show();
        Form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Form.get()));
        return *Form;
    }
    void Press(const char* button) { Click(*Form, button); }
    void TypeInto(const char* field, const QString& text) { Type(*Form, field, text); }
    NodeTable& Grid() { return Find<NodeTable>(*Form, "vaSectionNames"); }
    QModelIndex CellAt(int row, int column) { return Grid().model()->index(row, column); }
    std::vector<std::string> Column(int column) {
        std::vector<std::string> texts;
        for (int row = 0; row < Grid().model()->rowCount(); ++row)
            texts.push_back(FromQt(CellAt(row, column).data().toString()));
        return texts;
    }
    void ClickCell(int row, int column = NodeTable::Name) {
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, Grid().visualRect(CellAt(row, column)).center());
    }
    /// The open editor of a cell; closed ones wait, hidden, for their deletion.
    QLineEdit* Editor() {
        for (auto* editor : Grid().viewport()->findChildren<QLineEdit*>())
            if (!editor->isHidden()) return editor;
        return nullptr;
    }
    /// Types over a cell, without leaving its editor.
    void TypeIntoCell(int row, int column, const QString& text) {
        ClickCell(row, column);
        QTest::keyClick(&Grid(), Qt::Key_F2);
        QLineEdit* editor = Editor();
        ASSERT_NE(editor, nullptr);
        editor->selectAll();
        QTest::keyClicks(editor, text);
    }
    std::string Label(const char* name) { return FromQt(Find<QLabel>(*Form, name).text()); }
    std::string Box(const char* name) { return FromQt(Find<QLineEdit>(*Form, name).text()); }
    bool IsUntouched() { return Files.Bytes(Group + "A.rd2") == Bytes && State.StudyUnchanged; }

    std::unique_ptr<frmRunDetails> Form;
    std::vector<std::byte> Bytes;
};

TEST_F(frmRunDetailsTest, ShowsTheRun) {
    EXPECT_EQ(Open().windowTitle(), "Run Details");
    EXPECT_EQ(Box("RunDetailsName") + " " + Box("RunDetailsDate") + " " + Label("RunDetailsDay") + " " +
                  Box("RunDetailsTime") + " " + Box("RunDetailsCalConst"),
              "A 03/14/08 Friday 07:45 1000");
    EXPECT_TRUE(Find<QRadioButton>(*Form, "RunDetailsType(1)").isChecked());
    EXPECT_TRUE(Find<QRadioButton>(*Form, "RunDetailsBeforeOrAfter(0)").isChecked());
    EXPECT_EQ(
        Label("RunDetailsNumberOfSections") + ", " + Label("RunDetailsDuration") + ", " + Label("RunDetailsLength"),
        "4, 9 s, 90 ft");
    EXPECT_THAT(Column(NodeTable::Number), ElementsAre("1", "2", "3", "4"));
    EXPECT_THAT(Column(NodeTable::Name), ElementsAre("First", "Ash", "Birch", "Last"));
    EXPECT_THAT(Column(NodeTable::Distance), ElementsAre("0", "30", "60", "90"));
    EXPECT_EQ(Label("ButtonNum(12)") + Box("ButtonLabel(11)") + Box("ButtonLabel(12)"), "12Delay 2Delay 1");
    EXPECT_NE(Form->findChild<QScrollBar*>(QStringLiteral("VScroll2")), nullptr);
    TypeInto("RunDetailsDate", "02/30/08");
    EXPECT_EQ(Label("RunDetailsDay"), "");
    Press("cmdHelp");
    EXPECT_EQ(DesktopServices.Opened.size(), 1u);
}

TEST_F(frmRunDetailsTest, ButtonsHaveTheirCaptionsAndTips) {
    Open();
    for (const auto& [name, caption, tip] : std::initializer_list<std::array<const char*, 3>>{
             {"BtnEditRunData", "Edit", "View spd vs time plot and edit data points and/or De-Spike and Smooth data"},
             {"btnTrimEnd", "Trim End", "Delete data points from end of data to last node."},
             {"btnTrimStart", "Trim Start", "Delete data from start to first node."},
             {"BtnCopy", "Copy", "Get names from another run file on this computer."},
             {"BtnDelete", "Delete", "Delete highlighted node"},
             {"BtnInsert", "Insert", "Insert a new node before highlighted node"},
             {"BtnReverse", "Reverse", "Reverse names from top to bottom."},
             {"BtnShowPlot", "Plot", "Plot graph of data for this run."},
             {"BtnShowStats", "Stats", "Show statistics for this run only."},
             {"RunDetailsSave", "Save", "Save run info to name in Name textbox."},
             {"RunDetailsCancel", "Cancel", "Cancel any changes made to this screen and return to the Summary Screen."},
             {"cmdHelp", "Help", ""}}) {
        const auto& button = Find<QPushButton>(*Form, name);
        EXPECT_EQ(WithoutAccessKey(button.text()), caption);
        EXPECT_EQ(button.toolTip(), tip);
    }
}

TEST_F(frmRunDetailsTest, InsertAndDeleteOnlyBetweenStartAndEnd) {
    Open();
    ClickCell(0);
    Press("BtnInsert");
    Press("BtnDelete");
    ClickCell(3);
    Press("BtnDelete");
    EXPECT_EQ(DesktopServices.Beeps, 3);
    EXPECT_EQ(Column(NodeTable::Number).size(), 4u);

    Press("BtnInsert");
    EXPECT_THAT(Column(NodeTable::Number), ElementsAre("1", "2", "3", "4", "5"));
    EXPECT_EQ(Grid().ActiveRow(), 3);
    EXPECT_EQ(Label("RunDetailsNumberOfSections"), "5");
    EXPECT_EQ(CellAt(3, NodeTable::Distance).data(Qt::BackgroundRole).value<QColor>(), QColor(Qt::white));
    EXPECT_FALSE(CellAt(2, NodeTable::Distance).flags().testFlag(Qt::ItemIsEditable));
    ClickCell(1);
    Press("BtnDelete");
    EXPECT_THAT(Column(NodeTable::Name), ElementsAre("First", "Birch", "", "Last"));
    EXPECT_EQ(Label("RunDetailsNumberOfSections"), "4");
    EXPECT_TRUE(IsUntouched());
    EXPECT_TRUE(HasNode(State.CurrentRun.SampleValues[3]));

    TypeInto("RunDetailsCalConst", "0");
    TypeInto("ButtonLabel(11)", "Queue");
    ClickCell(1);
    Messages.Expect("Could not find section node. Call Technical Support for help.");
    Press("BtnDelete");
    EXPECT_EQ(Box("ButtonLabel(11)"), "Queue");
    EXPECT_EQ(Column(NodeTable::Number).size(), 4u);
}

TEST_F(frmRunDetailsTest, SavesWhatIsTypedByKeyboard) {
    Open();
    TypeIntoCell(1, NodeTable::Name, "Ash - a name that is longer than 32 characters");
    QTest::keyClick(Editor(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Form->isVisible()) << "Enter in the grid is not Save";
    QTest::keyClick(&Grid(), Qt::Key_Down);
    EXPECT_EQ(Grid().ActiveRow(), 2);
    QTest::keyClick(Form.get(), Qt::Key_I, Qt::AltModifier);
    // A button that is pressed by its access key is shown down for a moment first.
    EXPECT_TRUE(QTest::qWaitFor([this] { return Grid().model()->rowCount() == 5; }));
    TypeIntoCell(2, NodeTable::Distance, "51");
    TypeIntoCell(2, NodeTable::Name, "New");
    QTest::keyClick(Form.get(), Qt::Key_S, Qt::AltModifier);  // the editor is still open
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Form->isVisible(); }));
    const RunHeader& header = State.CurrentRun.Header;
    EXPECT_EQ(header.SectionName[1], "Ash - a name that is longer than");
    EXPECT_EQ(header.SectionName[2] + " " + header.SectionName[3], "New Birch");
    EXPECT_TRUE(HasNode(State.CurrentRun.SampleValues[5]));
    EXPECT_EQ(Files.Bytes(Group + "A.rd2.bak"), Bytes);
}

TEST_F(frmRunDetailsTest, ARefusedSaveGoesToWhatIsWrong) {
    Open();
    ClickCell(2);
    Press("BtnInsert");
    Messages.Expect(
        "Row 3: the distance of an inserted node must be a number between 30 ft and 60 ft,\n"
        "the distances of the nodes beside it.\n\nType another distance or delete the row.");
    Press("RunDetailsSave");
    EXPECT_EQ(Grid().currentIndex(), CellAt(2, NodeTable::Distance));
    EXPECT_NE(Editor(), nullptr);
    TypeInto("RunDetailsTime", "25:00");
    Messages.Expect("The time must be a time of day in the form hh:mm, for example 07:45.");
    Press("RunDetailsSave");
    EXPECT_TRUE(Find<QLineEdit>(*Form, "RunDetailsTime").hasFocus());
    EXPECT_TRUE(Form->isVisible());
    EXPECT_TRUE(IsUntouched());
}

TEST_F(frmRunDetailsTest, CancelDiscardsAndEscAsks) {
    Open();
    QTest::keyClick(Form.get(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible());

    Open();
    TypeInto("RunDetailsNotes", "wet");
    Messages.Expect(AsksToSave, MessageAnswer::Cancel);
    Form->close();
    EXPECT_TRUE(Form->isVisible());
    Press("RunDetailsCancel");
    EXPECT_FALSE(Form->isVisible());
    EXPECT_TRUE(IsUntouched());

    Open();
    TypeIntoCell(1, NodeTable::Name, "Oak");
    Messages.Expect(AsksToSave, Yes);
    Form->close();
    EXPECT_FALSE(Form->isVisible());
    EXPECT_EQ(State.CurrentRun.Header.SectionName[1], "Oak");
}

TEST_F(frmRunDetailsTest, AFailingDiskLeavesTheScreenOpen) {
    Open();
    TypeInto("RunDetailsNotes", "wet");
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "A.rd2");
    Press("RunDetailsSave");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_EQ(Box("RunDetailsNotes"), "wet");
    EXPECT_TRUE(IsUntouched());
}

TEST_F(frmRunDetailsTest, RestoreListsWhatIsKeptAndBringsItBack) {
    Open();
    QMenu& menu = *Find<QPushButton>(*Form, "btnRestore").menu();
    const auto listed = [&menu] {
        emit menu.aboutToShow();
        return FromQt(menu.actions().constFirst()->text());
    };
    EXPECT_EQ(listed(), "No earlier state of this run is kept.");
    Press("btnTrimEnd");
    Press("RunDetailsSave");
    Form->show();
    EXPECT_THAT(listed(), testing::StartsWith("A.rd2.bak    kept "));
    EXPECT_THAT(listed(), testing::EndsWith("    9 s, 90 ft"));
    Messages.Expect(
        "Do you want to bring back run: A\nas it is kept in A.rd2.bak?\n\nThe run as it is now is kept as A.rd2.bak2.",
        MessageAnswer::Yes);
    menu.actions().constFirst()->trigger();
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 9);
    EXPECT_EQ(Grid().model()->rowCount(), 4);
    EXPECT_EQ(Files.Bytes(Group + "A.rd2.bak"), Bytes);
    EXPECT_TRUE(Files.Bytes(Group + "A.rd2.bak2"));
}

TEST_F(frmRunDetailsTest, TrimsShowTheShorterRunAndSaveIt) {
    Open();
    TypeInto("ButtonLabel(12)", "Queue");
    Press("btnTrimStart");
    EXPECT_EQ(Box("ButtonLabel(12)"), "Queue");
    EXPECT_EQ(Form->findChild<QLineEdit*>(QStringLiteral("ButtonLabel(11)")), nullptr);
    Press("btnTrimEnd");
    EXPECT_THAT(Column(NodeTable::Name), ElementsAre("Ash", "Birch"));
    EXPECT_THAT(Column(NodeTable::Distance), ElementsAre("0", "30"));
    EXPECT_EQ(Label("RunDetailsDuration") + " " + Label("RunDetailsLength"), "3 s 30 ft");
    EXPECT_TRUE(IsUntouched());
    Press("btnTrimStart");
    Press("btnTrimEnd");
    EXPECT_EQ(DesktopServices.Beeps, 2);
    Press("RunDetailsSave");
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 3);
    EXPECT_EQ(State.CurrentRun.Header.ButtonLabel[12], "Queue");
}

TEST_F(frmRunDetailsTest, CopiesAndReversesNames) {
    RunRecord other = RunOf({10, Node | 10, 10});
    other.Header.SectionName[1] = "Middle";
    PutRunFile(Files, other, Group, "Other");
    PutRunFile(Files, other = RunOf({10}), Group, "Nameless");
    Open();
    Press("BtnCopy");  // nothing is chosen
    EXPECT_EQ(DesktopServices.AskedFrom, Group);
    DesktopServices.FileToOpen = Group + "Other.rd2";
    Press("BtnCopy");
    Press("BtnReverse");
    EXPECT_THAT(Column(NodeTable::Name), ElementsAre("Last", "Birch", "Middle", "First"));
    DesktopServices.FileToOpen = Group + "Nameless.rd2";
    Messages.Expect("No node of run Nameless has a name. Nothing was copied.");
    Press("BtnCopy");
    DesktopServices.FileToOpen = Group + "Gone.rd2";
    Messages.Expect("There is no run file " + Group + "Gone.rd2.");
    Press("BtnCopy");
}

TEST_F(frmRunDetailsTest, OpensTheOtherScreensOfTheRun) {
    Open();
    TypeInto("RunDetailsNotes", "wet");
    Messages.Expect(AsksToSave, MessageAnswer::Cancel);
    Press("BtnShowPlot");
    EXPECT_TRUE(OtherScreens.Shown.empty());
    Messages.Expect(AsksToSave, No);
    Press("BtnShowStats");
    EXPECT_EQ(Box("RunDetailsNotes"), "");
    TypeInto("RunDetailsNotes", "dry");
    OtherScreens.OnShow["frmEditPulseData"] = [this] {
        EXPECT_EQ(State.CurrentRun.Header.Notes, "dry");
        State.CurrentRun.SampleValues[8] = static_cast<std::int16_t>(Node | 10);
        return true;
    };
    Messages.Expect(AsksToSave, Yes);
    Press("BtnEditRunData");
    EXPECT_THAT(Column(NodeTable::Distance), ElementsAre("0", "30", "60", "80", "90"));
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("frmRunStatistics", "frmEditPulseData"));
}

TEST_F(frmRunDetailsTest, ANameGivenOnThePlotIsAnUnsavedChange) {
    OtherScreens.OnShow["frmPlotRunSpeedProfileHoriz"] = [this] {
        State.CurrentRun.Header.RunName = "B";
        return true;
    };
    Open();
    Press("BtnShowPlot");
    EXPECT_EQ(Box("RunDetailsName"), "B");
    EXPECT_EQ(State.CurrentRun.Header.RunName, "A");
    Messages.Expect(AsksToSave, Yes);
    Form->close();
    EXPECT_TRUE(Files.Bytes(Group + "B.rd2").has_value());
    EXPECT_EQ(RunFileName(State.CurrentStudy.Entries[1]), "B");
}

TEST_F(frmRunDetailsTest, OddRunsOpenAndAreUnchanged) {
    for (const std::size_t samples : {0, 1, 2, 3, 4, 190, 400}) {
        State.CurrentRun = RunOf(std::vector<int>(samples, Node | 255), samples == 3 ? 0 : 1000);
        State.CurrentRun.Header.RunName = std::string(32, 'W');
        State.CurrentRun.Header.RunDate = State.CurrentRun.Header.RunTime = {1e12};  // no date
        State.CurrentRun.Header.Notes = "two\nlines";
        State.Settings.MetricUnits = -1;
        Open(0);
        EXPECT_EQ(Grid().model()->rowCount(), static_cast<int>(samples) + 2);
        EXPECT_FALSE(Find<QPushButton>(*Form, "BtnShowPlot").isEnabled());
        EXPECT_EQ(Find<QPushButton>(*Form, "BtnEditRunData").isEnabled(), samples > 0);
        Form->close();
        EXPECT_FALSE(Form->isVisible());
    }
    State.CurrentRun = RunOf(std::vector<int>(10, 200));
    EXPECT_EQ(Open(0).windowTitle(), "Run Details");
    EXPECT_EQ(Label("RunDetailsLength"), "609 m");
    EXPECT_THAT(Column(NodeTable::Distance), ElementsAre("0 m", "609 m"));
}

}  // namespace
}  // namespace vantor
