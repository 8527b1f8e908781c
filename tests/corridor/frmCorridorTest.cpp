#include "corridor/forms/frmCorridor.h"

#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QInputDialog>
#include <QMenu>
#include <QTimer>
#include <QToolButton>

#include "corridor/CorridorFile.h"
#include "corridor/forms/frmCorridorSettings.h"
#include "corridor/forms/frmSignalTimings.h"
#include "fakes/FormScene.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::Contains, testing::ElementsAre, testing::HasSubstr, testing::StartsWith;

constexpr const char* Path = "/start/Study Groups/Main St.corridor.geojson";

/// Three nodes, 1000 ft apart, and a Study Group with two runs before and two after, with a stop before each node.
class frmCorridorTest : public FormScene<frmCorridor> {
protected:
    frmCorridorTest() {
        State.Settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
        Files.CreateFolder("/start/Study Groups/G");
        for (int number = 1; number <= 4; ++number) {
            std::vector<int> feet(20, 40);
            feet.back() |= NodeFlag;
            for (int section = 0; section < 2; ++section) {
                feet.insert(feet.end(), 24, 40);
                feet.insert(feet.end(), 4 + static_cast<std::size_t>(number) * 2, 0);
                feet.push_back(40);
                feet.back() |= NodeFlag;
            }
            feet.insert(feet.end(), 20, 40);
            RunRecord run = RunOfValues(feet);
            run.Header.Before = number <= 2 ? -1 : 0;
            run.Header.RunDate = DateOf(2008, 3, 11);
            run.Header.RunTime = TimeOf(7, 0);
            PutRunFile(Files, run, "/start/Study Groups/G/", "R" + std::to_string(number));
        }
    }
    void PutCorridor() {
        Corridor corridor;
        for (int i = 0; i < 3; ++i) {
            CorridorNode& node = corridor.Nodes.emplace_back();
            node.Name = std::string(1, static_cast<char>('A' + i));
            node.DistanceFt = 1000.0 * i;
            node.Around = {400, 200};
        }
        for (int number = 1; number <= 4; ++number) {
            CorridorRun& run = corridor.Runs.emplace_back();
            run.Group = "G";
            run.Name = "R" + std::to_string(number);
            run.IsBefore = number <= 2;
        }
        SaveCorridor(Files, Path, corridor, Expected::Nothing());
    }
    void OpenIt() {
        PutCorridor();
        Open(Path);
    }
    void EditNode(int row, int column, const char* text) {
        Get<QTableWidget>("vaNodes").item(row, column)->setText(QLatin1String(text));
        QCoreApplication::processEvents();
    }
    /// Chooses in a menu of a button; "Set Aside/Detour" below another menu.
    template <class Button>
    void PickFromMenu(const char* button, const char* path) {
        QMenu* menu = Get<Button>(button).menu();
        for (const QString& caption : QString::fromLatin1(path).split(QLatin1Char('/'))) {
            emit menu->aboutToShow();
            const auto actions = menu->actions();
            const auto action = std::ranges::find_if(
                actions, [&](const QAction* each) { return WithoutAccessKey(each->text()) == caption; });
            ASSERT_NE(action, actions.end()) << FromQt(caption);
            if ((*action)->menu() == nullptr) return (*action)->trigger();
            menu = (*action)->menu();
        }
    }
    /// Answers the next question for a text.
    static void AnswerNext(const QString& text) {
        QTimer::singleShot(0, [text] {
            auto* box = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
            if (box == nullptr) return;
            box->setTextValue(text);
            box->accept();
        });
    }
    std::string States() {
        std::string states;
        for (const std::string& state : Column(*Window, "vaRuns", 0)) states += state + ",";
        return states;
    }
};

TEST_F(frmCorridorTest, EditsAreStepsAndAreSaved) {
    OpenIt();
    const auto before = Rows(*Window, "vaDelays");
    ASSERT_EQ(before.size(), 2U);
    EXPECT_FALSE(IsEnabled("btnSave"));
    EditNode(1, 3, "20");
    EXPECT_EQ(Text("lblCorridor"), "Main St (not saved)");
    const auto after = Rows(*Window, "vaDelays");
    EXPECT_NE(after, before) << "most of the stop lies outside of the band";
    Messages.Expect("\"wide\" is no number.\nType digits alone.");
    EditNode(1, 4, "wide");
    EXPECT_EQ(CellText(Get<QTableView>("vaNodes"), 1, 4), "200");
    EditNode(1, 0, "Elm");
    PressKey(Qt::Key_Z, Qt::ControlModifier);
    PressKey(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Rows(*Window, "vaDelays"), before);
    EXPECT_EQ(Text("lblCorridor"), "Main St");
    Press("btnRedo");
    EXPECT_EQ(Rows(*Window, "vaDelays"), after);
    PressKey(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(LoadCorridor(Files, Path).Corridor.Nodes[1].Around.UpstreamFt, 20);
    EXPECT_FALSE(IsEnabled("btnSave"));
    Get<QSpinBox>("spnIdealForward").setValue(27);
    Messages.Expect("The corridor Main St has been changed.\nDo you want to save it?", MessageAnswer::Cancel);
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(Window->isVisible());
    Messages.Expect("The corridor Main St has been changed.\nDo you want to save it?", MessageAnswer::No);
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible());
    EXPECT_FALSE(LoadCorridor(Files, Path).Corridor.Directions[0].IdealSpeedMph);
}

TEST_F(frmCorridorTest, ARunIsSelectedEverywhereAndCorrected) {
    OpenIt();
    ClickRow(*Window, "vaRuns", 1);
    Get<QTabWidget>("tabCorridor").setCurrentWidget(Get<QWidget>("vaMatch").parentWidget());
    EXPECT_THAT(Text("lblRun"), StartsWith("R2 (G), NB"));
    EXPECT_THAT(Column(*Window, "vaMatch", 1), ElementsAre("mark", "mark", "mark"));
    ClickRow(*Window, "vaMatch", 2);
    EXPECT_EQ(Get<QTableWidget>("vaNodes").currentRow(), 2) << "and so is its node";
    Press("btnNotPassed");
    EXPECT_EQ(States(), "ok,gap,ok,ok,");
    Get<QSpinBox>("spnSecond").setValue(81);
    Press("btnSetSecond");
    EXPECT_THAT(Row(*Window, "vaMatch", 2), testing::Contains("user"));
    EXPECT_EQ(CellText(Get<QTableView>("vaMatch"), 2, 2), "81");
    Press("btnAsMatched");
    EXPECT_THAT(Column(*Window, "vaMatch", 1), ElementsAre("mark", "mark", "mark"));
    Get<QSpinBox>("spnOwnUpstream").setValue(50);
    Press("btnOwnBand");
    EXPECT_EQ(Text("lblBand"), "Own band");
    ClickRow(*Window, "vaRuns", 0);
    EXPECT_EQ(Text("lblBand"), "Band of all runs");
    Get<QTabWidget>("tabCorridor").setCurrentIndex(3);
    ClickCell(Get<QTableView>("vaDelays"), 0, 4);
    EXPECT_THAT(Text("lblCell"), StartsWith("NB before at C: 2 runs; mean"));
    EXPECT_THAT(Column(*Window, "vaNodeRuns", 0), ElementsAre("R1", "R2"));
    EXPECT_THAT(Row(*Window, "vaNodeRuns", 1), testing::Contains(HasSubstr("its own band")));
    ClickRow(*Window, "vaNodeRuns", 1);
    EXPECT_THAT(Get<LongList>("vaRuns").SelectedRows(), ElementsAre(1));
    Messages.Expect("The corridor Main St has been changed.\nDo you want to save it?", MessageAnswer::No);
    PressKey(Qt::Key_Escape);
}

TEST_F(frmCorridorTest, SeveralRunsAreChangedAtOnce) {
    OpenIt();
    ClickRow(*Window, "vaRuns", 0);
    ClickRow(*Window, "vaRuns", 1, Qt::ShiftModifier);
    PickFromMenu<QToolButton>("btnRun", "Set Aside/Detour");
    EXPECT_EQ(States(), "set aside,set aside,ok,ok,");
    EXPECT_THAT(Column(*Window, "vaDelays", 0), ElementsAre("NB")) << "there is nothing to compare any more";
    EXPECT_THAT(Text("lblWarnings"), HasSubstr("Not counted: R1: set aside: Detour R2: set aside: Detour"));
    EXPECT_EQ(Get<LongList>("vaRuns").SelectedRows().size(), 2U);
    PickFromMenu<QToolButton>("btnRun", "Count Again");
    PickFromMenu<QToolButton>("btnRun", "Period/AM peak");
    EXPECT_THAT(ItemsOf(*Window, "cmbPeriod"), ElementsAre("All", "AM peak", "without a period"));
    Pick("cmbPeriod", "AM peak");
    EXPECT_THAT(Column(*Window, "vaDelays", 0), ElementsAre("NB"));
    EXPECT_EQ(CellText(Get<QTableView>("vaDelays"), 0, 1), "2");
    Get<QWidget>("vaRuns").setFocus();
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(States(), "ok,ok,");
    EXPECT_EQ(Text("cmbPeriod"), "AM peak") << "what is shown is what is chosen";
    PressKey(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(States(), "ok,ok,ok,ok,");
    Messages.Expect(
        "6 studies will be written, one for each node, direction, period and Study Group:\n\nA NB (G)\nB NB (G)\nC NB "
        "(G)\nA NB AM peak (G)\nB NB AM peak (G)\nC NB AM peak (G)\n\nDo you want to write them?",
        MessageAnswer::Yes);
    Messages.Expect("6 studies stand in the Study Groups of their runs.");
    Press("btnStudies");
    EXPECT_TRUE(Files.Find("/start/Study Groups/G/C NB AM peak.ld2"));
    Messages.Expect("The corridor Main St has been changed.\nDo you want to save it?", MessageAnswer::No);
    PressKey(Qt::Key_Escape);
}

TEST_F(frmCorridorTest, BeginsWithNodesAndTakesAStudyGroup) {
    DesktopServices.FileToOpen = "/start/nodes.csv";
    Files.PutText("/start/nodes.csv", "name,distance\nA,0\nB,1000\nC,2000\n");
    Open(std::nullopt);
    EXPECT_TRUE(IsShown("lblStart"));
    Press("btnStartFile");
    EXPECT_THAT(Column(*Window, "vaNodes", 0), ElementsAre("A", "B", "C"));
    PickFromMenu<QPushButton>("btnAddRuns", "All of G");
    EXPECT_EQ(States(), "ok,ok,ok,ok,");
    AnswerNext(QStringLiteral("Main St"));
    Press("btnSave");
    EXPECT_EQ(Text("lblCorridor"), "Main St");
    EXPECT_EQ(LoadCorridor(Files, Path).Corridor.Runs.size(), 4U);
    Press("btnNew");
    EXPECT_TRUE(IsShown("lblStart"));
    Press("btnStartType");
    EXPECT_THAT(Column(*Window, "vaNodes", 0), ElementsAre("Node 1"));
    Press("btnUndo");
    EXPECT_TRUE(IsShown("lblStart"));
    PickFromMenu<QPushButton>("btnOpen", "Main St");
    EXPECT_EQ(States(), "ok,ok,ok,ok,");
    Messages.Expect("The Study Group G has no run that is not in the corridor.");
    PickFromMenu<QPushButton>("btnAddRuns", "All of G");
    PressKey(Qt::Key_Escape);
    Window.reset();
    Open(std::nullopt);
    EXPECT_EQ(Text("lblCorridor"), "Main St") << "the one that was open last";
}

TEST_F(frmCorridorTest, ShowsWhatTracksGaveToItsFile) {
    Files.PutText("/start/nodes.csv", "name,lat,lon\nA,42,-83\nB,42.00274,-83\n");
    DesktopServices.FileToOpen = "/start/nodes.csv";
    Open(std::nullopt);
    Press("btnStartFile");
    AnswerNext(QStringLiteral("Main St"));
    Press("btnImport");
    EXPECT_THAT(OtherScreens.Shown, Contains("frmImportTracks"));
    const std::string path = CorridorPath("/start/Study Groups/", "Main St");
    StoredCorridor stored = LoadCorridor(Files, path);
    stored.Corridor.Runs.push_back({});
    stored.Corridor.Runs.back().Group = "Main St";
    stored.Corridor.Runs.back().Name = "Main St-NB-001";
    SaveCorridor(Files, path, stored.Corridor, Expected::Unchanged(stored.Stamp));
    Press("btnImport");
    EXPECT_THAT(Row(*Window, "vaRuns", 0), Contains("Main St-NB-001"));
    EXPECT_FALSE(Find<QWidget>(*Window, "btnSave").isEnabled());
    PressKey(Qt::Key_Escape);
}

TEST_F(frmCorridorTest, SettingsTellWhatCannotBe) {
    Corridor corridor;
    corridor.Periods = {{"AM", 420, 540}};
    frmCorridorSettings form(Context, corridor);
    EXPECT_EQ(form.Choice(), corridor);
    Find<QPlainTextEdit>(form, "txtPeriods").setPlainText(QStringLiteral("07:00-09:00 AM\nnoon"));
    EXPECT_EQ(TextOf(form, "lblProblem"), "\"noon\" is no period. Write it as 07:00-09:00 AM peak.");
    EXPECT_FALSE(Find<QWidget>(form, "btnOK").isEnabled());
    Find<QPlainTextEdit>(form, "txtPeriods").setPlainText(QStringLiteral("\n15:30-18:00 PM peak\n"));
    Find<QLineEdit>(form, "txtBack").setText(QStringLiteral("NB"));
    EXPECT_THAT(TextOf(form, "lblProblem"), StartsWith("Both directions are called"));
    Find<QLineEdit>(form, "txtBack").setText(QStringLiteral("WB"));
    EXPECT_THAT(form.Choice().Periods, ElementsAre(CorridorPeriod{"PM peak", 930, 1080}));
    EXPECT_EQ(form.Choice().Of(Way::Back).Name, "WB");
}

TEST_F(frmCorridorTest, TheTimingOfASignalIsSetAndShowsItsArrivals) {
    OpenIt();
    Get<QTabWidget>("tabCorridor").setCurrentIndex(1);
    EXPECT_EQ(Text("lblArrivals"), "Enter the timing of a signal (Nodes, Timing...) to see arrivals on green");
    Get<QTableWidget>("vaNodes").setCurrentCell(1, 0);
    QTimer::singleShot(0, [this] {
        QWidget& form = *QApplication::activeModalWidget();
        EXPECT_TRUE(Find<QWidget>(form, "btnOK").isEnabled());
        Click(form, "btnAdd");
        auto& table = Find<QTableWidget>(form, "vaTimings");
        const auto type = [&](int column, const char* text) { table.item(0, column)->setText(QLatin1String(text)); };
        const auto problem = [&] { return TextOf(form, "lblProblem"); };
        EXPECT_EQ(problem(), "The cycle is missing in line 1. Type its seconds.");
        type(3, "80");
        type(4, "07:00:10");
        type(5, "1:30");
        EXPECT_EQ(problem(), "\"1:30\" in line 1 is no number of seconds. Type it as 90 or 42.5.");
        type(5, "81");
        EXPECT_THAT(problem(), StartsWith("The node 2 (\"B\") has in its timing 1 a green that is not above 0"));
        EXPECT_FALSE(Find<QWidget>(form, "btnOK").isEnabled());
        Messages.Expect("The timing of B has been changed.\n" + problem() + "\n\nDo you want to leave it as it was?",
                        MessageAnswer::No);
        QTest::keyClick(&form, Qt::Key_Escape);
        type(5, "35");
        table.setCurrentCell(0, 1);
        QTest::keyClick(&table, Qt::Key_F2);
        auto* box = table.findChild<QComboBox*>();
        ASSERT_TRUE(QTest::qWaitFor([&] { return box->view()->isVisible(); }));
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return})
            QTest::keyClick(box->view(), key);
        EXPECT_TRUE(form.isVisible()) << "Enter ends the choice, not the window";
        Click(form, "btnAdd");
        EXPECT_EQ(problem(), "Line 2 never holds: line 1 is for the same runs.");
        Click(form, "btnDelete");
        Messages.Expect("The timing of B has been changed.\nDo you want to keep it?", MessageAnswer::Yes);
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    Press("btnTiming");
    EXPECT_FALSE(IsShown("lblArrivals"));
    EXPECT_THAT(Row(*Window, "vaArrivals", 0), ElementsAre("NB before", "B", "2", "2", "100"))
        << "they stand from 07:00:44 on, 34 s behind 07:00:10; 07:00 is the beginning of a cycle of 80 s";
    Press("btnSave");
    EXPECT_THAT(LoadCorridor(Files, Path).Corridor.Nodes[1].Timings,
                ElementsAre(SignalTiming{{}, true, "", 80, 10, 35}));
    Press("btnUndo");
    EXPECT_TRUE(IsShown("lblArrivals"));
    Messages.Expect("The corridor Main St has been changed.\nDo you want to save it?", MessageAnswer::No);
    Press("BtnClose");
}

}  // namespace
}  // namespace vantor
