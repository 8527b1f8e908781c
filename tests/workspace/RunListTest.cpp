#include "core/Paths.h"
#include "workspace/MainWindow.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

struct ResultsCase {
    const char* Title;
    std::vector<RunOfStudy> Runs;
    const char* Avg;
    const char* Grade;
    const char* Stop;
    const char* Ratio;
};

TEST_F(MainWindow, ShowsTheAveragesOfTheCountedRuns) {
    State.Settings.StopSpeedThreshold = 5;
    const ResultsCase cases[] = {
        {"12.5 goes to the even neighbour", {{"R1", 12, 4}, {"R2", 13, 5}}, " 12", "B", " 4", "3."},
        {"13.5 goes to the even neighbour", {{"R1", 13, 3}, {"R2", 14, 3}}, " 14", "B", " 3", "4.67"},
        {"not counted and missing", {{"R1", 36, 8}, {"R2", 900, 90, 0}, {"Gone", 800, 80}}, " 36", "D", " 8", "4.5"},
        {"faster than the ideal speed", {{"R1", -3, 8}}, "-3", "A", " 8", "-.38"},
        {"no stop delay, no ratio", {{"R1", 80, 0}}, " 80", "F", " 0", ""},
        {"none counted", {{"R1", 12, 4, 0}}, "", "", "", ""},
    };
    for (const ResultsCase& expected : cases) {
        SCOPED_TRACE(expected.Title);
        if (expected.Runs.size() == 3) Messages.Expect("Missing Run File: Gone");
        StartWith(expected.Runs);
        EXPECT_EQ(Label("lblAvgContDelay"), expected.Avg);
        EXPECT_EQ(Label("lblLOSGrade"), expected.Grade);
        EXPECT_EQ(Label("lblAvgStopDelay"), expected.Stop);
        EXPECT_EQ(Label("lblControl2StopRatio"), expected.Ratio);
        EXPECT_EQ(Find<QLineEdit>(*Window, "txtStopSpdThreshold").text(), "5");
        EXPECT_TRUE(State.StudyUnchanged);
    }
}

TEST_F(MainWindow, FiguresStayWhenTheLastCountedRunIsGone) {
    StartWith({{"R1", 12, 4}, {"R2", 50, 0, 0}});
    Press("BtnDeleteRun");
    EXPECT_EQ(Label("lblAvgContDelay"), " 12");
    EXPECT_EQ(Label("lblControl2StopRatio"), "3.");
    EXPECT_TRUE(Find<QWidget>(*Window, "lblNoneCounted").isVisible());
    Messages.Expect(AsksAboutChanges, No);
    Choose("mnuFileNew");
    EXPECT_EQ(Label("lblAvgContDelay"), "") << "they belong to the study that was left";
}

TEST_F(MainWindow, StopDelayIsShownOnlyWhereItIsEnabled) {
    StartWith({{"R1", 12, 4}});
    EXPECT_TRUE(List().isColumnHidden(6));
    EXPECT_FALSE(Find<QWidget>(*Window, "frStopDelayStats").isVisible());
    State.Settings.EnableStopDelay = -1;
    Choose("mnuViewStatistics");
    EXPECT_FALSE(List().isColumnHidden(6));
    EXPECT_TRUE(Find<QWidget>(*Window, "frStopDelayStats").isVisible());
}

TEST_F(MainWindow, RowsTellInTextColourAndWordsWhetherARunCounts) {
    Messages.Expect("Missing Run File: Gone");
    StartWith({{"R1", -3, 4}, {"R2", 50, 0, 0}, {"Gone", 70}});
    const char* first[] = {"R1 ", "03/11/08", "07:05", "Primary", "-3", "B", " 4", "Counted: negative control delay"};
    for (int column = 0; column < 8; ++column) EXPECT_EQ(Cell(0, column), first[column]);
    EXPECT_EQ(Cell(0, 4, Qt::BackgroundRole).value<QColor>(), QColor(0xc0, 0xff, 0xc0));
    EXPECT_EQ(Cell(1, 4, Qt::BackgroundRole).value<QColor>(), QColor(0xff, 0xc0, 0xc0));
    for (int column = 1; column < 7; ++column) EXPECT_EQ(Cell(2, column), "") << "a missing run has no figures";
    EXPECT_TRUE(Cell(0, 0, Qt::ToolTipRole).toString().endsWith("\nWarning: negative control delay"));
    const char* words[] = {"Counted", "Not counted", "Missing"};
    for (int row = 0; row < 3; ++row) {
        EXPECT_TRUE(Cell(row, 2, Qt::ToolTipRole).toString().startsWith(words[row]));
        EXPECT_TRUE(Cell(row, 0, Qt::AccessibleTextRole).toString().contains(words[row]));
        EXPECT_FALSE(Cell(row, 0, Qt::DecorationRole).value<QIcon>().isNull());
    }
    for (const int column : {4, 6}) EXPECT_TRUE(Cell(0, column, Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
}

TEST_F(MainWindow, TheActiveRowIsTheRunHoweverTheListIsSorted) {
    StartWith({{"R1", 9}, {"R2", 100}, {"R3", -20}, {"R4", 30}});
    List().horizontalHeader()->setSortIndicator(4, Qt::AscendingOrder);
    EXPECT_EQ(Cell(0, 0) + Cell(1, 0) + Cell(2, 0) + Cell(3, 0), "R3 R1 R4 R2 ");
    DoubleClickRow(3);
    EXPECT_EQ(State.CurrentRun.Header.RunName, "R2");
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Cell(0, 0) + Cell(1, 0) + Cell(2, 0), "R3 R1 R4 ");
    EXPECT_EQ(Current().RunNames[2], "R3");
    EXPECT_EQ(Label("lblAvgContDelay"), " 6") << "19 / 3";
}

TEST_F(MainWindow, RunsAreAddedAndDeletedButStayOnTheDisk) {
    StartWith({{"R1", 12}});
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"R1", "R2", "R3"}) > 0; };
    PressKey(Qt::Key_Insert);
    EXPECT_EQ(List().model()->rowCount(), 3);
    EXPECT_FALSE(State.StudyUnchanged);
    PressKey(Qt::Key_Down);
    Press("BtnDeleteRun");
    EXPECT_EQ(Cell(1, 0), "R3 ");
    EXPECT_TRUE(HasFile("R2.rd2"));
    Press("BtnDeleteRun");
    Press("BtnDeleteRun");
    EXPECT_EQ(Current().Record.RunCount, 0) << "the row that is left becomes active";
}

TEST_F(MainWindow, MissingRunsAreToldOnceForEachStudyThatIsLoaded) {
    Messages.Expect("Missing Run File: Gone");
    Messages.Expect(UnsafeNameMessage("../R1"));
    StartWith({{"Gone"}, {"../R1"}, {"GONE"}, {"R1", 15}});
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"Later"}) > 0; };
    Messages.Expect("Missing Run File: Later");
    Press("BtnAddRun");
    Choose("mnuViewStatistics");
    Messages.Expect("Missing Run File: Gone");
    Press("BtnShowDetails");
    EXPECT_EQ(OtherScreens.Shown, Names{"frmRunSelect"}) << "no profile of a run that is missing";
    Messages.Expect(AsksAboutChanges, No);
    OtherScreens.OnShow["frmStudyOpen"] = [this] {
        return OpenStudy(State, Files, DesktopServices, Time, Group, "AM");
    };
    Messages.Expect("Missing Run File: Gone");
    Messages.Expect(UnsafeNameMessage("../R1"));
    Choose("mnuFileOpen");
}

TEST_F(MainWindow, TheEditorsGetTheActiveRunWithItsSamples) {
    StartWith({{"R1", 15}, {"R2", 25}});
    PressKey(Qt::Key_Down);
    std::vector<std::string> runs;
    for (const char* screen : {"frmRunDetails", "frmEditPulseData", "frmEditRunFile", "frmRunStatistics"})
        OtherScreens.OnShow[screen] = [&] {
            runs.push_back(State.CurrentRun.Header.RunName);
            EXPECT_GT(State.CurrentRun.SampleValues.size(), 0U);
            return false;
        };
    Press("BtnEditRun");
    for (const char* entry : {"mnuRunDetails", "mnuRunSensorData", "mnuRunFile", "mnuRunStatistics"}) Choose(entry);
    EXPECT_EQ(OtherScreens.Shown,
              (Names{"frmRunDetails", "frmRunDetails", "frmEditPulseData", "frmEditRunFile", "frmRunStatistics"}));
    EXPECT_EQ(runs, Names(5, "R2"));
}

TEST_F(MainWindow, DetailsBringBackBoundariesAndANewName) {
    StartWith({{"R1", 12}, {"R2", 50, 0, 0}});
    std::string typed = "R1";
    OtherScreens.OnShow["frmPlotRunSpeedProfileHoriz"] = [&] {
        EXPECT_EQ(State.CurrentRun.SampleValues.size(), 200U) << "the run is read with its samples";
        State.CurrentRun.Header.RunName = typed;
        return true;
    };
    PressKey(Qt::Key_Return);
    EXPECT_TRUE(State.StudyUnchanged) << "a look changes nothing";
    typed = "R3";
    Messages.Expect("The run keeps its name. A run \"R3\" is already in Study Group Main Street.");
    PressKey(Qt::Key_Enter);
    EXPECT_TRUE(State.StudyUnchanged);
    typed = "  Morning 1 ";
    Press("BtnShowDetails");
    EXPECT_EQ(Cell(0, 0), "Morning 1 ");
    EXPECT_EQ(State.CurrentRun.Header.RunName, "Morning 1");
    EXPECT_TRUE(HasFile("Morning 1.rd2"));
    EXPECT_TRUE(HasFile("R1.rd2"));
    EXPECT_FALSE(State.StudyUnchanged);

    State.StudyUnchanged = true;
    OtherScreens.OnShow["frmPlotRunSpeedProfileHoriz"] = [&] {
        Current().Entries[2].CDEndDist = 7000;
        Current().Entries[2].ControlDelay = 16;
        return true;
    };
    DoubleClickRow(1);
    EXPECT_TRUE(Cell(1, 7).startsWith("Counted"));
    EXPECT_EQ(Label("lblAvgContDelay"), " 14");
    EXPECT_FALSE(State.StudyUnchanged);
    Choose("mnuRunUndo");
    EXPECT_EQ(Current().Entries[2].CDEndDist, 0);
}

TEST_F(MainWindow, TakesBackADeletedRunButNoEntryThatFitsTheRunNoMore) {
    StartWith({{"R1", 12}, {"R2", 50}, {"R3", 20}});
    PressKey(Qt::Key_Down);
    const Study before = Current();
    PressKey(Qt::Key_Delete);
    EXPECT_EQ(Current().Record.RunCount, 2);
    Choose("mnuRunUndo");
    EXPECT_EQ(Current().Entries, before.Entries);
    EXPECT_EQ(Current().RunNames, before.RunNames);
    EXPECT_EQ(Current().Record.RunCount, 3);
    PressKey(Qt::Key_Delete);
    OtherScreens.OnShow["frmRunSelect"] = [] { return true; };
    Press("BtnAddRun");
    EXPECT_FALSE(Find<QAction>(*Window, "mnuRunUndo").isEnabled()) << "it may have been added again";
    Current() = before;
    Choose("mnuViewStatistics");
    PressKey(Qt::Key_Down);

    OtherScreens.OnShow["frmRunDetails"] = [&] {
        RunRecord run = ReadRun(Files, Group + "R2.rd2").Run;
        run.SampleValues[1] = 0;
        PutRunFile(Files, run, Group, "R2");
        Current().Entries[2].CDStartDist = 256;
        return true;
    };
    Press("BtnEditRun");
    EXPECT_FALSE(Find<QAction>(*Window, "mnuRunUndo").isEnabled()) << "its samples have changed, too";

    Files.Delete(Group + "R1.rd2");
    Messages.Expect("Missing Run File: R1");
    Choose("mnuViewStatistics");
    EXPECT_EQ(Label("lblWithoutWarned"), "1 of 3 runs cannot be read and does not count");
}

}  // namespace
}  // namespace vantor
