#include "editing/forms/frmRunDetails.h"

#include <gmock/gmock.h>

#include <QMenu>

#include "RunScene.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string AsksToSave = "The details of run: A\nhave changed. Do you want to save them?";
constexpr auto Yes = MessageAnswer::Yes;

RunRecord DetailedRun() {
    RunRecord run = RunOf({10, 0x0B00 | 10, Node | 10, 10, 0x0C00 | 10, Node | 10, 10, 10, 10});
    Name(run.Header, {"First", "Ash", "Birch", "Last"});
    run.Header.RunDate = DateOf(2008, 3, 14);
    run.Header.RunTime = TimeOf(7, 45, 12);
    run.Header.Before = run.Header.HeaderWord1 = -1;
    return run;
}

/// Run "A" of 90 ft, nodes at 30 and 60 ft, keys 11 and 12.
class frmRunDetailsTest : public RunScene<FormScene<frmRunDetails>> {
protected:
    frmRunDetailsTest() : RunScene(DetailedRun()) {}

    NodeTable& Grid() { return Get<NodeTable>("vaSectionNames"); }
    /// Number, name, time and distance of each node.
    std::vector<std::string> Nodes() { return Rows(*Window, "vaSectionNames"); }
    QModelIndex CellAt(int row, int column) { return Grid().model()->index(row, column); }
    void ClickName(int row) { ClickCell(Grid(), row, NodeTable::Name); }
    /// The open editor of a cell; closed ones wait, hidden, for their deletion.
    QLineEdit* Editor() {
        for (auto* editor : Grid().viewport()->findChildren<QLineEdit*>())
            if (!editor->isHidden()) return editor;
        return nullptr;
    }
    /// Types over a cell, without leaving its editor.
    void TypeIntoCell(int row, int column, const QString& text) {
        ClickCell(Grid(), row, column);
        QTest::keyClick(&Grid(), Qt::Key_F2);
        ASSERT_NE(Editor(), nullptr);
        Editor()->selectAll();
        QTest::keyClicks(Editor(), text);
    }
};

TEST_F(frmRunDetailsTest, InsertAndDeleteOnlyBetweenStartAndEnd) {
    Open(1);
    EXPECT_EQ(Text("ButtonNum(12)") + Text("ButtonLabel(11)") + Text("ButtonLabel(12)"), "12Delay 2Delay 1");
    ClickName(0);
    Press("BtnInsert");
    Press("BtnDelete");
    ClickName(3);
    Press("BtnDelete");
    EXPECT_EQ(DesktopServices.Beeps, 3);

    Press("BtnInsert");
    EXPECT_THAT(Nodes(), ElementsAre("1|First|0|0", "2|Ash|3|30", "3|Birch|6|60", "4|||type it", "5|Last|9|90"));
    EXPECT_EQ(Grid().ActiveRow(), 3);
    EXPECT_EQ(Text("RunDetailsNumberOfSections"), "5");
    EXPECT_EQ(CellAt(3, NodeTable::Distance).data(Qt::BackgroundRole).value<QColor>(), QColor(Qt::white));
    EXPECT_FALSE(CellAt(2, NodeTable::Distance).flags().testFlag(Qt::ItemIsEditable));
    ClickName(1);
    Press("BtnDelete");
    EXPECT_THAT(Nodes(), ElementsAre("1|First|0|0", "2|Birch|6|60", "3|||type it", "4|Last|9|90"));
    EXPECT_EQ(Text("RunDetailsNumberOfSections"), "4");
    ExpectNothingStored();

    TypeInto("RunDetailsCalConst", "0");
    TypeInto("ButtonLabel(11)", "Queue");
    ClickName(1);
    PressTold("BtnDelete", "Could not find section node. Call Technical Support for help.");
    EXPECT_EQ(Text("ButtonLabel(11)"), "Queue");
    EXPECT_EQ(Nodes().size(), 4u);
}

TEST_F(frmRunDetailsTest, EveryChangeIsTakenBackAndDoneAgain) {
    Open(1);
    EXPECT_FALSE(IsEnabled("btnUndo"));
    const auto shown = [this] {
        std::vector<std::string> texts = Nodes();
        for (const char* field : {"RunDetailsNotes", "RunDetailsTime", "ButtonLabel(12)"}) texts.push_back(Text(field));
        return texts;
    };
    std::vector<std::vector<std::string>> states = {shown()};
    const auto step = [&](const char* text) {
        EXPECT_EQ(Get<QAction>("mnuUndo").text(), QLatin1String("Undo ") + text);
        states.push_back(shown());
    };
    ClickName(1);
    Press("BtnInsert");
    step("Insert Node");
    TypeIntoCell(3, NodeTable::Name, "Birch Rd");
    QTest::keyClick(Editor(), Qt::Key_Return);
    QCoreApplication::processEvents();
    step("Edit Node");
    TypeInto("RunDetailsNotes", "dry");  // its step begins where the field is left
    ClickName(1);
    Press("BtnDelete");
    Press("BtnReverse");
    Get<QLineEdit>("ButtonLabel(12)").setFocus();
    TypeInto("ButtonLabel(12)", "Queue");
    Grid().setFocus();
    step("Edit Fields");
    Press("btnTrimStart");
    step("Trim Start");

    std::vector<std::vector<std::string>> back;
    while (IsEnabled("btnUndo")) {
        PressKey(Qt::Key_Z, Qt::ControlModifier);
        back.push_back(shown());
    }
    ASSERT_EQ(back.size(), 7U);
    EXPECT_THAT((std::vector{back[0], back[4], back[5], back[6]}),
                ElementsAre(states[3], states[2], states[1], states[0]));
    ExpectNothingStored();
    for (int i = 0; i < 7; ++i) PressKey(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(shown(), states.back());
    Press("RunDetailsSave");
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 6);
}

TEST_F(frmRunDetailsTest, SavesWhatIsTypedByKeyboard) {
    Open(1);
    TypeIntoCell(1, NodeTable::Name, "Ash - a name that is longer than 32 characters");
    QTest::keyClick(Editor(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_TRUE(Window->isVisible()) << "Enter in the grid is not Save";
    QTest::keyClick(&Grid(), Qt::Key_Down);
    EXPECT_EQ(Grid().ActiveRow(), 2);
    PressKey(Qt::Key_I, Qt::AltModifier);
    // A button that is pressed by its access key is shown down for a moment first.
    EXPECT_TRUE(QTest::qWaitFor([this] { return Grid().model()->rowCount() == 5; }));
    TypeIntoCell(2, NodeTable::Distance, "51");
    TypeIntoCell(2, NodeTable::Name, "New");
    QTest::keyClick(Window.get(), Qt::Key_S, Qt::AltModifier);  // the editor is still open
    EXPECT_TRUE(Closes());
    EXPECT_EQ(NamesOf(State.CurrentRun.Header, 4), "First|Ash - a name that is longer than|New|Birch");
    EXPECT_TRUE(HasNode(State.CurrentRun.SampleValues[5]));
    EXPECT_EQ(Backup(), FileBefore);
}

TEST_F(frmRunDetailsTest, ARefusedSaveGoesToWhatIsWrong) {
    Open(1);
    ClickName(2);
    Press("BtnInsert");
    PressTold("RunDetailsSave",
              "Row 3: the distance of an inserted node must be a number between 30 ft and 60 ft,\n"
              "the distances of the nodes beside it.\n\nType another distance or delete the row.");
    EXPECT_EQ(Grid().currentIndex(), CellAt(2, NodeTable::Distance));
    EXPECT_NE(Editor(), nullptr);
    TypeInto("RunDetailsTime", "25:00");
    PressTold("RunDetailsSave", "The time must be a time of day in the form hh:mm, for example 07:45.");
    EXPECT_TRUE(Get<QLineEdit>("RunDetailsTime").hasFocus());
    TypeInto("RunDetailsDate", "02/30/08");
    EXPECT_EQ(Text("RunDetailsDay"), "");
    ExpectNothingStored();
}

TEST_F(frmRunDetailsTest, CancelDiscardsAndEscAsks) {
    Open(1);
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());

    Open(1);
    TypeInto("RunDetailsNotes", "wet");
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    PressTold("RunDetailsSave", "Run-time error '61':\nDisk full\n\n" + Group + "A.rd2");
    EXPECT_FALSE(Leaves(AsksToSave, MessageAnswer::Cancel));
    EXPECT_EQ(Text("RunDetailsNotes"), "wet");
    Press("RunDetailsCancel");
    EXPECT_FALSE(Window->isVisible());
    ExpectNothingStored();

    Open(1);
    TypeIntoCell(1, NodeTable::Name, "Oak");
    EXPECT_TRUE(Leaves(AsksToSave, Yes));
    EXPECT_EQ(State.CurrentRun.Header.SectionName[1], "Oak");
}

TEST_F(frmRunDetailsTest, RestoreListsWhatIsKeptAndBringsItBack) {
    Open(1);
    QMenu& menu = *Get<QPushButton>("btnRestore").menu();
    const auto listed = [&menu] {
        emit menu.aboutToShow();
        return FromQt(menu.actions().constFirst()->text());
    };
    EXPECT_EQ(listed(), "No earlier state of this run is kept.");
    Press("btnTrimEnd");
    Press("RunDetailsSave");
    Window->show();
    EXPECT_THAT(listed(), testing::MatchesRegex("A.rd2.bak    kept .*    9 s, 90 ft"));
    Messages.Expect(
        "Do you want to bring back run: A\nas it is kept in A.rd2.bak?\n\nThe run as it is now is kept as A.rd2.bak2.",
        Yes);
    menu.actions().constFirst()->trigger();
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 9);
    EXPECT_EQ(Nodes().size(), 4u);
    EXPECT_EQ(Backup(), FileBefore);
    EXPECT_TRUE(Files.Bytes(Group + "A.rd2.bak2"));
}

TEST_F(frmRunDetailsTest, TrimsShowTheShorterRunAndSaveIt) {
    Open(1);
    TypeInto("ButtonLabel(12)", "Queue");
    Press("btnTrimStart");
    EXPECT_EQ(Text("ButtonLabel(12)"), "Queue");
    EXPECT_EQ(Window->findChild<QLineEdit*>(QStringLiteral("ButtonLabel(11)")), nullptr);
    Press("btnTrimEnd");
    EXPECT_THAT(Nodes(), ElementsAre("1|Ash|0|0", "2|Birch|3|30"));
    EXPECT_EQ(Text("RunDetailsDuration") + " " + Text("RunDetailsLength"), "3 s 30 ft");
    ExpectNothingStored();
    Press("RunDetailsSave");
    EXPECT_EQ(State.CurrentRun.Header.SampleCount, 3);
    EXPECT_EQ(State.CurrentRun.Header.ButtonLabel[12], "Queue");
}

TEST_F(frmRunDetailsTest, CopiesAndReversesNames) {
    RunRecord other = RunOf({10, Node | 10, 10});
    other.Header.SectionName[1] = "Middle";
    PutRunFile(Files, other, Group, "Other");
    PutRunFile(Files, other = RunOf({10}), Group, "Nameless");
    Open(1);
    Press("BtnCopy");  // nothing is chosen
    EXPECT_EQ(DesktopServices.AskedFrom, Group);
    DesktopServices.FileToOpen = Group + "Other.rd2";
    Press("BtnCopy");
    Press("BtnReverse");
    EXPECT_THAT(Nodes(), ElementsAre("1|Last|0|0", "2|Birch|3|30", "3|Middle|6|60", "4|First|9|90"));
    for (const auto& [file, told] :
         {std::pair{"Nameless.rd2", "No node of run Nameless has a name. Nothing was copied."},
          {"Gone.rd2", "There is no run file /start/Study Groups/Main/Gone.rd2."}}) {
        DesktopServices.FileToOpen = Group + file;
        PressTold("BtnCopy", told);
    }
}

TEST_F(frmRunDetailsTest, OpensTheOtherScreensOfTheRun) {
    Open(1);
    TypeInto("RunDetailsNotes", "wet");
    PressTold("BtnShowPlot", AsksToSave, MessageAnswer::Cancel);
    EXPECT_TRUE(OtherScreens.Shown.empty());
    PressTold("BtnShowStats", AsksToSave, MessageAnswer::No);
    EXPECT_EQ(Text("RunDetailsNotes"), "");
    TypeInto("RunDetailsNotes", "dry");
    OtherScreens.OnShow["frmEditPulseData"] = [this] {
        EXPECT_EQ(State.CurrentRun.Header.Notes, "dry");
        State.CurrentRun.SampleValues[8] = static_cast<std::int16_t>(Node | 10);
        return true;
    };
    PressTold("BtnEditRunData", AsksToSave, Yes);
    EXPECT_THAT(Nodes(), ElementsAre("1|First|0|0", "2|Ash|3|30", "3|Birch|6|60", "4|Last|8|80", "5||9|90"));

    // A name that is given on the plot is a change that is not saved yet.
    OtherScreens.Profiles.Entries[1] = Entry();
    OtherScreens.Profiles.Entries[1].StopDelay = 5;
    OtherScreens.OnShow["frmPlotRunSpeedProfileHoriz"] = [this] {
        State.CurrentRun.Header.RunName = "B";
        return true;
    };
    Press("BtnShowPlot");
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("frmRunStatistics", "frmEditPulseData", "frmPlotRunSpeedProfileHoriz"));
    EXPECT_EQ(Text("RunDetailsName") + State.CurrentRun.Header.RunName, "BA");
    EXPECT_EQ(Entry().StopDelay, 5);
    EXPECT_TRUE(Leaves(AsksToSave, Yes));
    EXPECT_EQ(OnDisk(RunFileName(Entry())).Header.RunName, "B");
}

TEST_F(frmRunDetailsTest, OddRunsOpenAndAreUnchanged) {
    State.Settings.MetricUnits = -1;
    for (const std::size_t samples : {0, 1, 2, 3, 4, 190, 400}) {
        State.CurrentRun = RunOf(std::vector<int>(samples, Node | 255), samples == 3 ? 0 : 1000);
        State.CurrentRun.Header.RunName = std::string(32, 'W');
        State.CurrentRun.Header.RunDate = State.CurrentRun.Header.RunTime = {1e12};  // no date
        State.CurrentRun.Header.Notes = "two\nlines";
        Open(0);
        EXPECT_EQ(Nodes().size(), samples + 2);
        EXPECT_EQ(std::pair(IsEnabled("BtnShowPlot"), IsEnabled("BtnEditRunData")), std::pair(false, samples > 0));
        EXPECT_TRUE(Window->close());
    }
    // 400 * 255 = 102000 ft, at 1609 m a mile.
    EXPECT_EQ(Text("RunDetailsLength") + ", " + Nodes().back(), "31083 m, 402||400|31083 m");
}

}  // namespace
}  // namespace vantor
