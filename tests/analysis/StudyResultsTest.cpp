#include "analysis/StudyResults.h"

#include <gmock/gmock.h>

#include "analysis/StudyTable.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

/// Puts a primary run without samples there, of 11 March 2008, 07:05.
void PutRun(FileSystem& files, const std::string& folder, const std::string& name) {
    RunRecord run;
    run.Header.RunDate = DateOf(2008, 3, 11);
    run.Header.RunTime = TimeOf(7, 5);
    run.Header.HeaderWord1 = -1;
    PutRunFile(files, run, folder, name);
}

RunListRow Row(const char* controlDelay, const char* stopDelay, RunState state = RunState::Counted) {
    RunListRow row;
    row.ControlDelay = controlDelay;
    row.StopDelay = stopDelay;
    row.State = state;
    return row;
}

/// What the labels tell: control delay, grade, stop delay, ratio; "-" for one that is not set.
std::string TextOf(const ResultLabels& labels) {
    std::string text;
    for (const auto& label : {labels.AvgControlDelay, labels.LOSGrade, labels.AvgStopDelay, labels.Ratio})
        text += (text.empty() ? "" : "|") + label.value_or("-");
    return text;
}

TEST(StudyResults, AveragesCountedRowsAndRoundsHalvesToEven) {
    const ResultLabels earlier{" 7", "A", " 3", "2.46"};
    const std::pair<std::vector<RunListRow>, const char*> cases[] = {
        {{Row("12", " 1"), Row("13", " 4")}, " 12|B| 2|6."},
        {{Row("13", " 7"), Row("14", " 7")}, " 14|B| 7|2."},  // 14 / 7, from the rounded average
        {{Row("-3", " 8"), Row("-6", " 8")}, "-4|A| 8|-.5"},
        {{Row("40", " 9"), Row("999", " 99", RunState::NotCounted), Row("", "", RunState::Missing)}, " 40|D| 9|4.44"},
        {{Row("40", " 0"), Row("50", " 1")}, " 45|D| 0|2.46"},  // an average of 0 leaves the ratio
        {{Row("40", " 1")}, " 40|D| 1|40."},
        {{Row("40", " 9", RunState::NotCounted)}, " 7|A| 3|2.46"},
        {{}, " 7|A| 3|2.46"},
    };
    for (const auto& [rows, expected] : cases) {
        ResultLabels labels = earlier;
        Study study;
        ComputeStudyResults(study, rows, labels);
        EXPECT_EQ(TextOf(labels), expected);
    }
    Study study;
    ResultLabels labels;
    ComputeStudyResults(study, {}, labels);
    EXPECT_EQ(TextOf(labels), "-|-|-|-");
    ComputeStudyResults(study, {Row("12", " 1"), Row("13", " 4")}, labels);
    EXPECT_EQ(study.Record.StudyAvgControlDelay, 12.0F);
    EXPECT_EQ(study.Record.StudyLOSGrade + study.Entries[0].LOSGrade, "BB");
    ComputeStudyResults(study, {}, labels);
    EXPECT_EQ(study.Record.StudyAvgControlDelay, 12.0F) << "without counted rows nothing changes";
    EXPECT_ERROR(Overflow, ComputeStudyResults(study, {Row("2147483647", " 0"), Row("1", " 0")}, labels));
}

TEST(StudyResults, WhatTheFiguresHoldUnderIsSaid) {
    std::vector<RunListRow> rows = {Row("40", " 9"), Row("71", " 9"), Row("-3126", " 0"),
                                    Row("999", " 0", RunState::NotCounted)};
    EXPECT_EQ(AverageWithoutWarned(rows), "");
    EXPECT_EQ(OtherThresholds(rows), "");
    rows[2].Warnings = {"end not reached"};
    rows[3].Warnings = {"cut (1 of 2 samples)"};
    EXPECT_EQ(AverageWithoutWarned(rows), "1 of 3 runs has warnings; without them: 56") << "55.5, halves to even";
    rows[0].Basis = StopDelayBasis::Other;
    rows[1].Basis = rows[2].Basis = rows[3].Basis = StopDelayBasis::Unknown;
    EXPECT_EQ(OtherThresholds(rows), "1 run computed with another threshold; 2 runs: threshold not known");
    rows[0].Warnings = rows[1].Warnings = rows[2].Warnings;
    EXPECT_EQ(AverageWithoutWarned(rows), "all counted runs have warnings");
}

/// The cells of a row and the word of its state.
std::string TextOf(const RunListRow& row) {
    return row.RunName + "|" + row.RunDate + "|" + row.RunTime + "|" + row.RunType + "|" + row.ControlDelay + "|" +
           row.LOSGrade + "|" + row.StopDelay + "|" + StateWord(row.State);
}

TEST(StudyResults, RowsShowEntriesAndTheirRunFiles) {
    TestProgram program;
    Study& study = program.State.CurrentStudy;
    for (const char* name : {"NB-001", "NB-002"}) PutRun(program.Files, "/start/", name);
    for (const char* name : {"NB-001", "nb-002", "Gone", "../start/NB-001"}) AppendRun(study, name);
    study.Entries[1] = {"NB-001", 300, 7600, 0, 0, -5, "A", 12};
    study.Entries[2].CDEndDist = 7600;
    std::vector<std::string> rows;
    for (const RunListRow& row : MakeRunListRows(study, program.Files, "/start/", program.State.Settings))
        rows.push_back(TextOf(row));
    // A boundary at 0 is not set; a file is found in any letter case; a name that leaves the folder is not looked up.
    EXPECT_THAT(rows, testing::ElementsAre("NB-001 |03/11/08|07:05|Primary|-5|A| 12|Counted",
                                           "nb-002 |03/11/08|07:05|Primary|0|| 0|Not counted", "Gone |||||||Missing",
                                           "../start/NB-001 |||||||Unreadable"));
}

TEST(StudyResults, ManyRunsStandInTheOrderOfTheStudy) {
    TestProgram program;
    Study study;
    for (int i = 1; i <= 300; ++i) {
        AppendRun(study, "R" + std::to_string(i));
        if (i % 3 != 0) PutRun(program.Files, "/start/", study.RunNames[i]);
    }
    const auto rows = MakeRunListRows(study, program.Files, "/start/", program.State.Settings);
    ASSERT_EQ(rows.size(), 300U);
    for (int i = 1; i <= 300; ++i)
        EXPECT_EQ(TextOf(rows[static_cast<std::size_t>(i) - 1]),
                  study.RunNames[i] + (i % 3 == 0 ? " |||||||Missing" : " |03/11/08|07:05|Primary|0|| 0|Not counted"));
}

using testing::AllOf, testing::HasSubstr;
using Cells = std::vector<SheetCell>;

/// Two counted runs, one without its end boundary and one whose file is missing.
class StudyTableTest : public testing::Test {
protected:
    StudyTableTest() {
        Files.CreateFolder("/start/AM Peak");
        Contents.Record.StudyName = "=Main, \"NB\"";
        Contents.Record.StudyDate = DateOf(2008, 3, 14);
        Contents.Record.Direction = 1;
        Contents.Record.CritLane = -1;
        for (const char* name : {"NB-1", "NB-2", "NB-3", "gone"}) AppendRun(Contents, name);
        for (int i = 1; i <= 4; ++i) {
            const std::string name = Contents.Entries[i].EntryRunName;
            Contents.Entries[i] = {name, 300, i == 3 ? 0 : 7600, 35, 0, i == 2 ? -4 : 61, "E", 19};
        }
        for (const char* name : {"NB-1", "NB-2", "NB-3"}) PutRun(Files, Folder, name);
    }

    OutgoingTable Table(const Units& units = {}) const {
        return StudyTable(Contents, MakeRunListRows(Contents, Files, Folder, {}), "AM Peak", units);
    }

    const std::string Folder = "/start/AM Peak/";
    MemoryFileSystem Files;
    Study Contents;
};

TEST_F(StudyTableTest, TextsAreThoseOfTheRunList) {
    EXPECT_EQ(CsvText(Table().Rows({})),
              "\xEF\xBB\xBFRun Name,Date,Time,Type,Start Boundary (ft),End Boundary (ft),Ideal Speed (MPH),User Ideal "
              "Speed (MPH),Control Delay (s),LOS Grade,Stop Delay (s),Status,Warnings\r\n"
              "NB-1,03/11/08,07:05,Primary,300,7600,35,0,61,E,19,Counted,start not reached; end not reached\r\n"
              "NB-2,03/11/08,07:05,Primary,300,7600,35,0,-4,E,19,Counted,start not reached; end not reached; negative "
              "control delay\r\n"
              "NB-3,03/11/08,07:05,Primary,300,0,35,0,61,E,19,Not counted,\r\n"
              "gone,,,,,,,,,,,Missing,\"Missing Run File: gone. Copy the file back into the Study Group, or delete the "
              "run from the list.\"\r\n");
    // 1609 m are 5280 ft: 91.4 m, 2316.0 m, 56.3 km/h.
    EXPECT_THAT(CsvText(Table({.Metric = true}).Rows({})),
                AllOf(HasSubstr("Boundary (m),Ideal Speed (KPH),User Ideal Speed (KPH),"),
                      HasSubstr("Primary,91,2316,56,0,61,E")));
}

TEST_F(StudyTableTest, CellsHaveTheirKindsAndTheStudyItsSheet) {
    const std::vector<Sheet> sheets = Table().Sheets({});
    ASSERT_EQ(sheets.size(), 2U);
    const std::string warnings = "start not reached; end not reached; negative control delay";
    const Cells second{"NB-2", DateOf(2008, 3, 11), TimeOf(7, 5), "Primary", 300., 7600., 35., 0., -4., "E",
                       19.,    "Counted",           warnings};
    EXPECT_EQ(sheets[0].Rows.at(1), second);
    EXPECT_EQ(sheets[0].Columns.at(1).Format + " " + sheets[0].Columns.at(2).Format, "mm/dd/yy hh:mm");

    // (61 - 4) / 2 = 28.5, halves to even; 28 / 19
    const Cells fields[] = {{"Study Name", "=Main, \"NB\""},
                            {"Study Group", "AM Peak"},
                            {"Direction", "SB"},
                            {"Critical Lane", {}},
                            {"Runs", 4.},
                            {"Runs Counted", 2.},
                            {"Avg. Control Delay (s)", 28.},
                            {"LOS Grade", "C"},
                            {"Avg. Stop Delay (s)", 19.},
                            {"Ratio of Control to Stop Delay", 1.47}};
    for (const Cells& field : fields) EXPECT_THAT(sheets[1].Rows, testing::Contains(field));
}

/// A spreadsheet cuts what the list rounds to the second.
TEST_F(StudyTableTest, DaysAndTimesAreTheListsInBothKinds) {
    RunRecord run = RunOfValues({10, 20});
    run.Header.RunDate = {DateOf(2008, 3, 11).Days + 0.999999};
    run.Header.RunTime = {0.9999988};  // 23:59:59.9
    PutRunFile(Files, run, Folder, "NB-1");
    EXPECT_THAT(CsvText(Table().Rows({})), HasSubstr("NB-1,03/12/08,00:00,"));
    const Cells first = Table().Sheets({})[0].Rows.at(0);
    EXPECT_EQ(Cells({first[1], first[2]}), Cells({DateOf(2008, 3, 12), TimeOf(0, 0)}));
}

TEST_F(StudyTableTest, AStudyWithoutCountedRunsHasNoAverages) {
    Study empty;
    const std::vector<Sheet> sheets = StudyTable(empty, {}, "AM Peak").Sheets({});
    EXPECT_TRUE(sheets[0].Rows.empty());
    EXPECT_EQ(sheets[1].Rows.at(9).at(1), SheetCell());
}

}  // namespace
}  // namespace vantor
