#include <QMenu>

#include "core/Paths.h"
#include "workspace/MainWindow.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

struct RunListTest : MainWindow {
    QVariant Cell(int row, int column, int role) { return List().model()->index(row, column).data(role); }
    std::string TextOfCell(int row, int column, int role) { return FromQt(Cell(row, column, role).toString()); }
    Names Figures() {
        return {Text("lblAvgContDelay"), Text("lblLOSGrade"), Text("lblAvgStopDelay"), Text("lblControl2StopRatio")};
    }
};

TEST_F(RunListTest, ShowsTheAveragesOfTheCountedRunsAndStopDelaysWhereTheyAreEnabled) {
    State.Settings.StopSpeedThreshold = 5;
    Messages.Expect("Missing Run File: Gone");
    StartWith({{"R1", 12, 4}, {"R2", 13, 5}, {"R3", 900, 90, 0}, {"Gone", 800, 80}});
    EXPECT_THAT(Figures(), ElementsAre(" 12", "B", " 4", "3.")) << "halves go to the even neighbour";
    EXPECT_EQ(Text("txtStopSpdThreshold"), "5");
    EXPECT_TRUE(State.StudyUnchanged);
    for (const bool isEnabled : {false, true}) {
        State.Settings.EnableStopDelay = isEnabled ? -1 : 0;
        Do("mnuViewStatistics");
        EXPECT_EQ(List().isColumnHidden(6), !isEnabled);
        EXPECT_EQ(IsShown("frStopDelayStats"), isEnabled);
    }

    Press("BtnDeleteRun");
    EXPECT_FALSE(IsShown("lblNoneCounted"));
    Press("BtnDeleteRun");
    EXPECT_THAT(Figures(), ElementsAre(" 13", "B", " 5", "2.6"));
    EXPECT_TRUE(IsShown("lblNoneCounted"));
    Messages.Expect(AsksAboutChanges, No);
    Do("mnuFileNew");
    EXPECT_THAT(Figures(), ElementsAre("", "", "", "")) << "they belong to the study that was left";
}

TEST_F(RunListTest, RowsTellInTextColourAndWordsWhetherARunCounts) {
    Messages.Expect("Missing Run File: Gone");
    StartWith({{"R1", -3, 4}, {"R2", 50, 0, 0}, {"Gone", 70}});
    EXPECT_THAT(Column(*Window, "vaRunList", 7),
                ElementsAre("Counted: negative control delay", "Not counted", "Missing"));
    EXPECT_EQ(Cell(0, 4, Qt::BackgroundRole).value<QColor>(), QColor(0xc0, 0xff, 0xc0));
    EXPECT_EQ(Cell(1, 4, Qt::BackgroundRole).value<QColor>(), QColor(0xff, 0xc0, 0xc0));
    EXPECT_THAT(TextOfCell(0, 0, Qt::ToolTipRole), EndsWith("\nWarning: negative control delay"));
    const char* words[] = {"Counted", "Not counted", "Missing"};
    for (int row = 0; row < 3; ++row) {
        EXPECT_THAT(TextOfCell(row, 2, Qt::ToolTipRole), StartsWith(words[row]));
        EXPECT_THAT(TextOfCell(row, 0, Qt::AccessibleTextRole), HasSubstr(words[row]));
        EXPECT_FALSE(Cell(row, 0, Qt::DecorationRole).value<QIcon>().isNull());
    }
    // Found at 308 ft in second 7, and at 7612 ft in second 172, the start's 44 ft counted twice.
    EXPECT_EQ(CellText(List(), 0, 10) + " s, " + CellText(List(), 0, 11) + " MPH", "165 s, 30.2 MPH");
    EXPECT_EQ(CellText(List(), 1, 10), "") << "a boundary is missing";
    for (const int column : {4, 6}) EXPECT_TRUE(Cell(0, column, Qt::TextAlignmentRole).toInt() & Qt::AlignRight);
}

TEST_F(RunListTest, ColumnsAreAsWideAsTheirWidestTextWhereverItStands) {
    for (const char* name : {"iiiiiiiiiiiiiiiiiiiiiiii", "WWWWWWWWWWWWWWWWWW"})
        Messages.Expect("Missing Run File: " + std::string(name));
    StartWith({{"iiiiiiiiiiiiiiiiiiiiiiii"}, {"R1", -123456789, 4}, {"WWWWWWWWWWWWWWWWWW"}, {"R3", 900, 90, 0}});
    for (const bool isCountedOnly : {false, true}) {
        if (isCountedOnly) Do("mnuViewCounted");
        const QAbstractItemView& view = List();
        for (const int column : {0, 1, 2, 3, 4, 5, 10, 11})
            EXPECT_GE(List().columnWidth(column), view.sizeHintForColumn(column)) << column;
    }
}

TEST_F(RunListTest, TheActiveRowIsTheRunHoweverTheListIsSorted) {
    StartWith({{"R1", 9}, {"R2", 100}, {"R3", -20}, {"R4", 30}});
    List().horizontalHeader()->setSortIndicator(4, Qt::AscendingOrder);
    EXPECT_THAT(RunsShown(), ElementsAre("R3 ", "R1 ", "R4 ", "R2 "));
    DoubleClickRow(*Window, "vaRunList", 3);
    EXPECT_EQ(State.CurrentRun.Header.RunName, "R2");
    PressKey(Qt::Key_Delete);
    EXPECT_THAT(RunsShown(), ElementsAre("R3 ", "R1 ", "R4 "));
    EXPECT_EQ(Current().RunNames[2], "R3");
    EXPECT_EQ(Text("lblAvgContDelay"), " 6") << "19 / 3";
}

TEST_F(RunListTest, RunsAreAddedAndDeletedButStayOnTheDisk) {
    StartWith({{"R1", 12}});
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"R1", "R2", "R3"}) > 0; };
    PressKey(Qt::Key_Insert);
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "R2 ", "R3 "));
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(List().selectionModel()->selectedRows().size(), 2) << "the added ones";
    Press("BtnDeleteRun");
    EXPECT_THAT(RunsShown(), ElementsAre("R1 "));
    EXPECT_TRUE(HasFile(Group + "R2.rd2"));
    Press("BtnDeleteRun");
    EXPECT_EQ(Current().Record.RunCount, 0) << "the row that is left becomes active";
}

TEST_F(RunListTest, MissingRunsAreToldOnceForEachStudyThatIsLoaded) {
    Messages.Expect("Missing Run File: Gone");
    Messages.Expect(UnsafeNameMessage("../R1"));
    StartWith({{"Gone"}, {"../R1"}, {"GONE"}, {"R1", 15}});
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"Later"}) > 0; };
    Messages.Expect("Missing Run File: Later");
    Press("BtnAddRun");
    Do("mnuViewStatistics");
    Messages.Expect("Missing Run File: Later");
    Press("BtnShowDetails");
    EXPECT_EQ(OtherScreens.Shown, Names{"frmRunSelect"}) << "no profile of a run that is missing";
    Messages.Expect(AsksAboutChanges, No);
    OtherScreens.OnShow["frmStudyOpen"] = [this] {
        return OpenStudy(State, Files, DesktopServices, Time, Group, "AM");
    };
    Messages.Expect("Missing Run File: Gone");
    Messages.Expect(UnsafeNameMessage("../R1"));
    Do("mnuFileOpen");
}

TEST_F(RunListTest, TheEditorsGetTheActiveRunWithItsSamples) {
    StartWith({{"R1", 15}, {"R2", 25}});
    PressKey(Qt::Key_Down);
    for (const char* command : {"BtnEditRun", "mnuRunDetails", "mnuRunSensorData", "mnuRunFile", "mnuRunStatistics"}) {
        State.CurrentRun = {};
        Do(command);
        EXPECT_EQ(State.CurrentRun.Header.RunName, "R2");
        EXPECT_EQ(State.CurrentRun.SampleValues.size(), 200U);
    }
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("frmRunDetails", "frmRunDetails", "frmEditPulseData", "frmEditRunFile",
                                                "frmRunStatistics"));
}

TEST_F(RunListTest, TheStatisticsBringBackTheirRunAndOptions) {
    StartWith({{"R1", 15}, {"R2", 25}});
    OtherScreens.OnShow["frmStudyStatistics"] = [this] {
        OtherScreens.Statistics = {2, {{.FreeFlowSpeed = 45}, {}}};
        return true;
    };
    Do("mnuViewDetail");
    EXPECT_EQ(Current().Options.FreeFlowSpeed, 45);
    Do("mnuRunStatistics");
    EXPECT_EQ(State.CurrentRun.Header.RunName, "R2");
    Do("mnuRunUndo");
    EXPECT_FALSE(Current().Options.FreeFlowSpeed);
}

TEST_F(RunListTest, DetailsBringBackBoundariesAndANewName) {
    StartWith({{"R1", 12}, {"R2", 50, 0, 0}});
    std::string typed = "R1";
    OtherScreens.OnShow["frmPlotRunSpeedProfileHoriz"] = [&] {
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
    EXPECT_THAT(RunsShown(), ElementsAre("Morning 1 ", "R2 "));
    EXPECT_EQ(State.CurrentRun.Header.RunName, "Morning 1");
    EXPECT_TRUE(HasFile(Group + "Morning 1.rd2"));
    EXPECT_FALSE(State.StudyUnchanged);

    State.StudyUnchanged = true;
    OtherScreens.OnShow.clear();
    StudyRunEntry& changed = OtherScreens.Profiles.Entries[2] = Current().Entries[2];
    changed.CDEndDist = 7000;
    changed.ControlDelay = 16;
    DoubleClickRow(*Window, "vaRunList", 1);
    EXPECT_THAT(CellText(List(), 1, 7), StartsWith("Counted"));
    EXPECT_EQ(Text("lblAvgContDelay"), " 14");
    EXPECT_FALSE(State.StudyUnchanged);
    Do("mnuRunUndo");
    EXPECT_EQ(Current().Entries[2].CDEndDist, 0);
}

TEST_F(RunListTest, ProposedBoundariesOfSeveralRunsAreOneStep) {
    StartWith({{"R1", 12}, {"R2", 50}});
    const Study before = Current();
    for (const int run : {1, 2}) {
        OtherScreens.Proposals[run] = Current().Entries[run];
        OtherScreens.Proposals[run].CDEndDist = 900;
    }
    Do("mnuRunPropose");
    for (const int run : {1, 2}) EXPECT_EQ(Current().Entries[run].CDEndDist, 900);
    EXPECT_EQ(Text("lblDone"), "Boundaries given to 2 runs; Ctrl+Z takes them back");
    Do("mnuRunUndo");
    EXPECT_EQ(Current().Entries, before.Entries);
    OtherScreens.OnShow["frmNodePlaces"] = [] { return true; };
    Do("mnuRunNodes");
    for (const char* step : {"mnuRunUndo", "mnuRunRedo"}) EXPECT_FALSE(Get<QAction>(step).isEnabled()) << step;
}

TEST_F(RunListTest, TakesBackADeletedRunButNoEntryThatFitsTheRunNoMore) {
    StartWith({{"R1", 12}, {"R2", 50}, {"R3", 20}});
    PressKey(Qt::Key_Down);
    const Study before = Current();
    PressKey(Qt::Key_Delete);
    Do("mnuRunUndo");
    EXPECT_EQ(Current().Entries, before.Entries);
    EXPECT_EQ(Current().RunNames, before.RunNames);
    EXPECT_EQ(Current().Record.RunCount, 3);
    EXPECT_TRUE(State.StudyUnchanged) << "as it was saved";
    Do("mnuRunRedo");
    OtherScreens.OnShow["frmRunSelect"] = [this] { return AddRuns(State, {"R2"}) > 0; };
    Press("BtnAddRun");
    TypeInto("txtStreetName", "Elm");
    for (const char* text : {"&Undo Typing in Street Name", "&Undo Adding runs", "&Undo Delete of run R2"}) {
        EXPECT_EQ(Get<QAction>("mnuRunUndo").text(), QLatin1String(text));
        Do("mnuRunUndo");
    }
    EXPECT_EQ(Current().Entries, before.Entries);
    EXPECT_EQ(Text("txtStreetName"), "");

    ClickRow(*Window, "vaRunList", 1);
    OtherScreens.OnShow["frmRunDetails"] = [this] {
        RunRecord run = ReadRun(Files, Group + "R2.rd2").Run;
        run.SampleValues[1] = 0;
        PutRunFile(Files, run, Group, "R2");
        Current().Entries[2].CDStartDist = 256;
        return true;
    };
    Press("BtnEditRun");
    EXPECT_FALSE(Get<QAction>("mnuRunUndo").isEnabled()) << "its samples have changed, too";
}

TEST_F(RunListTest, SeveralRunsAreDeletedMovedAndCopied) {
    StartWith({{"R1", 9}, {"R2", 100}, {"R3", -20}, {"R4", 30}});
    ClickRow(*Window, "vaRunList", 1);
    ClickRow(*Window, "vaRunList", 2, Qt::ShiftModifier);
    QTest::keyClick(&List(), Qt::Key_Down, Qt::AltModifier);
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "R4 ", "R2 ", "R3 "));
    EXPECT_EQ(Current().Entries[4].ControlDelay, -20);
    for (int i = 0; i < 2; ++i) QTest::keyClick(&List(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_THAT(RunsShown(), ElementsAre("R2 ", "R3 ", "R1 ", "R4 "));
    QTest::keyClick(&List(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(DesktopServices.Beeps, 1) << "they are at the top";
    QTest::keyClick(&List(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(DesktopServices.Copied, StartsWith("Run Name\tDate\tTime"));
    EXPECT_THAT(DesktopServices.Copied, HasSubstr("\nR3\t03/11/08\t07:05\tPrimary\t-20\t"));
    PressKey(Qt::Key_Delete);
    EXPECT_THAT(RunsShown(), ElementsAre("R1 ", "R4 "));
    Do("mnuRunUndo");
    EXPECT_EQ(RunsOf(Current()), (Names{"R2", "R3", "R1", "R4"}));
}

TEST_F(RunListTest, SeveralRunsAreMarkedBeforeOrAfterGetAPeriodAndAreSetAside) {
    StartWith({{"R1", 9}, {"R2", 100}, {"R3", -20}});
    auto bytes = Files.Bytes(Group + "R2.rd2").value();
    bytes.resize(9000);  // cut short
    WriteFile(Files, Group + "R2.rd2", bytes, AsItStands(Files, Group + "R2.rd2"));
    List().selectAll();
    Do("mnuRunAfter");
    for (const char* name : {"R1", "R2", "R3"}) {
        const RunHeader header = ReadRun(Files, Group + name + ".rd2").Run.Header;
        EXPECT_EQ(header.Before * 10 + header.After, -1);
    }
    std::ranges::copy(BytesOf(std::string_view("\0\0\xff\xff", 4)), bytes.begin() + 106);
    EXPECT_EQ(Files.Bytes(Group + "R2.rd2"), bytes) << "nothing else of the file changes";
    EXPECT_TRUE(State.StudyUnchanged);
    Do("mnuRunUndo");
    EXPECT_THAT(Column(*Window, "vaRunList", 13), Each("Before"));

    auto& periods = Get<QMenu>("mnuRunPeriod");
    emit periods.aboutToShow();
    periods.actions()[0]->trigger();
    EXPECT_THAT(Column(*Window, "vaRunList", 14), Each("AM peak"));
    const std::string average = Text("lblAvgContDelay");
    auto& reasons = Get<QMenu>("mnuRunSetAside");
    emit reasons.aboutToShow();
    reasons.actions()[0]->trigger();
    EXPECT_THAT(Column(*Window, "vaRunList", 16), Each("Detour"));
    EXPECT_EQ(Text("lblAvgContDelay"), average) << "they go on counting";
    EXPECT_EQ(Text("lblWithoutSetAside"), "30 (– without 3 set aside)");
    OtherScreens.Options.Options.FreeFlowSpeed = 45;
    OtherScreens.OnShow["frmStatisticsOptions"] = [] { return true; };
    Do("mnuViewOptions");
    SaveStudy(State, Files);
    EXPECT_EQ(Saved("AM").Entries[3].Period, "AM peak");
    EXPECT_EQ(Saved("AM").Entries[3].SetAside, "Detour");
    EXPECT_EQ(Saved("AM").Options.FreeFlowSpeed, 45);
    Do("mnuRunUndo");
    EXPECT_FALSE(Current().Options.FreeFlowSpeed);
}

TEST_F(RunListTest, WhatIsKnownOfRunsIsTheirsAndWhole) {
    StartWith({{"R1", 9}, {"R2", 100}, {"R3", -20}});
    Work.AsksBeforeStop = 1;
    Do("mnuViewStatistics");
    EXPECT_THAT(Column(*Window, "vaRunList", 1), ElementsAre("03/11/08", "", ""));
    Work.AsksBeforeStop = 100;
    PressKey(Qt::Key_Delete);
    EXPECT_THAT(Column(*Window, "vaRunList", 1), Each("03/11/08")) << "those that were not read before";
    EXPECT_EQ(Text("lblAvgContDelay"), " 40") << "100 and -20";

    RunRecord other = RunOfValues({44, 44, 44});
    other.Header.RunDate = DateOf(2009, 1, 2);
    PutRunFile(Files, other, OakElm, "R2");
    List().selectAll();
    PressKey(Qt::Key_Delete);
    OtherScreens.Moved = {OakElm, {"R2"}};
    OtherScreens.OnShow["frmUploadSelectTDC"] = [] { return true; };
    Do("mnuFileProcessRuns");
    EXPECT_EQ(CellText(List(), 0, 1), "01/02/09") << "the run of that name in the other group";
    EXPECT_FALSE(Get<QAction>("mnuRunUndo").isEnabled()) << "the runs before lie elsewhere";
}

TEST_F(RunListTest, RunsThatAreShownAreNotReadAgain) {
    StartWith({{"R1", 9}, {"R2", 100}, {"R3", -20}});
    for (const char* name : {"R1", "R2", "R3"}) Files.Delete(Group + name + ".rd2");
    PressKey(Qt::Key_Delete);
    Do("mnuRunUndo");
    EXPECT_THAT(Column(*Window, "vaRunList", 1), Each("03/11/08"));
}

}  // namespace
}  // namespace vantor
