#include "analysis/StudyResults.h"

#include <gtest/gtest.h>

#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

RunListRow Row(const char* controlDelay, const char* stopDelay, RunState state = RunState::Counted) {
    RunListRow row;
    row.ControlDelay = controlDelay;
    row.StopDelay = stopDelay;
    row.State = state;
    return row;
}

TEST(StudyResults, AveragesRoundHalvesToEven) {
    Study study;
    ResultLabels labels;
    ComputeStudyResults(study, {Row("12", " 1"), Row("13", " 4")}, labels);
    EXPECT_EQ(labels.AvgControlDelay, " 12");
    EXPECT_EQ(labels.AvgStopDelay, " 2");
    EXPECT_EQ(labels.Ratio, "6.");
    EXPECT_EQ(study.Record.StudyAvgControlDelay, 12.0F);
    EXPECT_EQ(study.Record.StudyLOSGrade, "B");
    EXPECT_EQ(study.Entries[0].LOSGrade, "B");
    ComputeStudyResults(study, {Row("13", " 7"), Row("14", " 7")}, labels);
    EXPECT_EQ(labels.AvgControlDelay, " 14");
    EXPECT_EQ(labels.Ratio, "2.") << "14 / 7, from the rounded average";
    ComputeStudyResults(study, {Row("-3", " 8"), Row("-6", " 8")}, labels);
    EXPECT_EQ(labels.AvgControlDelay, "-4");
    EXPECT_EQ(labels.LOSGrade, "A");
    EXPECT_EQ(labels.Ratio, "-.5");
}

TEST(StudyResults, OnlyCountedRowsAreAveraged) {
    Study study;
    ResultLabels labels;
    ComputeStudyResults(
        study, {Row("40", " 9"), Row("999", " 99", RunState::NotCounted), Row("", "", RunState::Missing)}, labels);
    EXPECT_EQ(labels.AvgControlDelay, " 40");
    EXPECT_EQ(labels.LOSGrade, "D");
    EXPECT_EQ(labels.AvgStopDelay, " 9");
}

TEST(StudyResults, WithoutCountedRowsNothingChanges) {
    Study study;
    study.Record.StudyAvgControlDelay = 7;
    study.Record.StudyLOSGrade = "A";
    ResultLabels labels;
    labels.AvgControlDelay = " 7";
    ComputeStudyResults(study, {Row("40", " 9", RunState::NotCounted)}, labels);
    ComputeStudyResults(study, {}, labels);
    EXPECT_EQ(labels.AvgControlDelay, " 7");
    EXPECT_FALSE(labels.AvgStopDelay);
    EXPECT_EQ(study.Record.StudyAvgControlDelay, 7.0F);
}

TEST(StudyResults, AverageStopDelayOfZeroLeavesTheRatio) {
    Study study;
    ResultLabels labels;
    labels.Ratio = "2.46";
    ComputeStudyResults(study, {Row("40", " 0"), Row("50", " 1")}, labels);
    EXPECT_EQ(labels.AvgStopDelay, " 0");
    EXPECT_EQ(labels.Ratio, "2.46");
    ComputeStudyResults(study, {Row("40", " 1")}, labels);
    EXPECT_EQ(labels.Ratio, "40.");
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

TEST(StudyResults, SumThatDoesNotFitOverflows) {
    Study study;
    ResultLabels labels;
    EXPECT_ERROR(Overflow, ComputeStudyResults(study, {Row("2147483647", " 0"), Row("1", " 0")}, labels));
}

TEST(StudyResults, RowsShowEntriesAndTheirRunFiles) {
    TestProgram program;
    Study& study = program.State.CurrentStudy;
    RunRecord run;
    run.Header.RunDate = DateOf(2008, 3, 11);
    run.Header.RunTime = TimeOf(7, 5);
    run.Header.HeaderWord1 = -1;
    PutRunFile(program.Files, run, "/start/", "NB-001");
    PutRunFile(program.Files, run, "/start/", "NB-002");
    for (const char* name : {"NB-001", "nb-002", "Gone", "../start/NB-001"}) AppendRun(study, name);
    study.Entries[1].CDStartDist = 300;
    study.Entries[1].CDEndDist = 7600;
    study.Entries[1].ControlDelay = -5;
    study.Entries[1].LOSGrade = "A";
    study.Entries[1].StopDelay = 12;
    study.Entries[2].CDEndDist = 7600;
    const auto rows = MakeRunListRows(study, program.Files, "/start/", program.State.Settings);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].RunName, "NB-001 ");
    EXPECT_EQ(rows[0].RunDate, "03/11/08");
    EXPECT_EQ(rows[0].RunTime, "07:05");
    EXPECT_EQ(rows[0].RunType, "Primary");
    EXPECT_EQ(rows[0].ControlDelay, "-5");
    EXPECT_EQ(rows[0].LOSGrade, "A");
    EXPECT_EQ(rows[0].StopDelay, " 12");
    EXPECT_EQ(rows[0].State, RunState::Counted);
    EXPECT_EQ(rows[1].State, RunState::NotCounted)
        << "a boundary at 0 is not set; the file is found in any letter case";
    EXPECT_EQ(rows[1].RunType, "Primary");
    EXPECT_EQ(rows[2].State, RunState::Missing);
    EXPECT_EQ(rows[2].ControlDelay, "");
    EXPECT_EQ(rows[3].State, RunState::Unreadable) << "a name that leaves the folder is never looked up";
}

}  // namespace
}  // namespace vantor
