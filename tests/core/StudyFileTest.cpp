#include "core/StudyFile.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

/// A study of one run, byte by byte.
std::string OneRunStudy() {
    std::string bytes(320 + 128, ' ');
    const auto put = [&](std::size_t offset, std::string_view literal) {
        bytes.replace(offset, literal.size(), literal);
    };
    put(0, std::string_view("\x01\0", 2));
    put(2, "AM Peak");
    put(34, std::string_view("\0\0\0\0\x20\x4c\xe3\x40", 8));
    put(42, std::string_view("\x01\0", 2));
    put(44, "abcdefuvwxyz");
    put(56, "Signals retimed");
    put(184, "Main St");
    put(224, std::string_view("\x01\0\0\0\x0c\x42"
                              "D",
                              7));  // SB, 35 seconds, grade
    put(231, std::string_view("12345678\0\0\0\0\0\0\0\x80\xff\xff", 18));
    put(320, "Main St-NB-001");
    put(400, std::string_view("\x2c\x01\0\0\xb0\x1d\0\0\x1e\0\0\0\x23\0\0\0\xfb\xff\xff\xff"
                              "A\x04\0\0\0tail",
                              29));
    return bytes;
}

TEST(StudyFile, ReadsRecordAndEntries) {
    TestProgram program;
    program.Files.PutText("/g/AM Peak.ld2", OneRunStudy());
    ASSERT_TRUE(ReadStudyFile(program.State, program.Files, program.DesktopServices, program.Time, "/g/", "AM Peak"));
    const Study& study = program.State.CurrentStudy;
    EXPECT_EQ(study.Record.StudyName, "AM Peak");
    EXPECT_EQ(ShortDate(study.Record.StudyDate), "03/14/08");
    EXPECT_EQ(study.Record.StreetName, "Main St");
    EXPECT_EQ(study.Record.Direction, 1);
    EXPECT_EQ(study.Record.StudyAvgControlDelay, 35.0F);
    EXPECT_EQ(study.Record.StudyLOSGrade, "D");
    EXPECT_EQ(study.Record.CritLane, -1);
    EXPECT_EQ(study.Entries.LastIndex(), 1);
    const StudyRunEntry& entry = study.Entries[1];
    EXPECT_EQ(entry.EntryRunName, "Main St-NB-001");
    EXPECT_EQ(study.RunNames[1], "Main St-NB-001");
    EXPECT_EQ(entry.CDStartDist, 300);
    EXPECT_EQ(entry.CDEndDist, 7600);
    EXPECT_EQ(entry.IdealSpeedCalc, 30);
    EXPECT_EQ(entry.IdealSpeedUser, 35);
    EXPECT_EQ(entry.ControlDelay, -5);
    EXPECT_EQ(entry.LOSGrade, "A");
    EXPECT_EQ(entry.StopDelay, 4);
    EXPECT_TRUE(program.State.StudyUnchanged);
}

TEST(StudyFile, WritesTheSameBytesAndReplacesWholly) {
    TestProgram program;
    program.Files.PutText("/g/AM Peak.ld2", OneRunStudy() + std::string(1000, 'x'));
    Study study = LoadStudy(program.Files, "/g/", "AM Peak").value();
    study.Record.StudyFileVersion = 9;
    PutStudyFile(program.Files, study, "/g/", "AM Peak");
    EXPECT_EQ(program.Files.Bytes("/g/AM Peak.ld2"), BytesOf(OneRunStudy()));
    RemoveRun(study, 1);
    PutStudyFile(program.Files, study, "/g/", "AM Peak");
    EXPECT_EQ(program.Files.Bytes("/g/AM Peak.ld2")->size(), 320U);
}

TEST(StudyFile, MissingFileBeepsAndGivesAnEmptyStudy) {
    TestProgram program;
    program.Files.PutText("/g/AM Peak.ld2", OneRunStudy());
    ReadStudyFile(program.State, program.Files, program.DesktopServices, program.Time, "/g/", "AM Peak");
    program.State.Paths.LastStudyGroupPath.clear();
    EXPECT_FALSE(ReadStudyFile(program.State, program.Files, program.DesktopServices, program.Time, "/g/", "Gone"));
    EXPECT_EQ(program.DesktopServices.Beeps, 1);
    const StudyRecord& record = program.State.CurrentStudy.Record;
    EXPECT_EQ(record.StudyName, "");
    EXPECT_EQ(record.StudyNotes, "");
    EXPECT_EQ(record.RunCount, 0);
    EXPECT_EQ(record.CritLane, -1);
    EXPECT_EQ(record.Direction, -1);
    EXPECT_EQ(record.StudyDate, program.Time.Moment);
    EXPECT_EQ(program.State.Paths.LastStudyGroupPath, Native("/start/Study Groups/"));
}

TEST(StudyFile, ShortAndDamagedFiles) {
    TestProgram program;
    program.Files.PutText("/g/Short.ld2", OneRunStudy().replace(42, 1, "\x03").substr(0, 320 + 10));
    const Study study = LoadStudy(program.Files, "/g/", "Short").value();
    ASSERT_EQ(study.Entries.LastIndex(), 3);
    EXPECT_EQ(study.RunNames[1], "Main St-NB");
    EXPECT_EQ(study.RunNames[3], "");
    EXPECT_EQ(study.Entries[3].CDStartDist, 0);

    program.Files.PutText("/g/Bad.ld2", OneRunStudy().replace(42, 2, "\xff\xff"));
    program.State.CurrentStudy.Record.StudyNotes = "kept";
    EXPECT_ERROR(SubscriptOutOfRange,
                 ReadStudyFile(program.State, program.Files, program.DesktopServices, program.Time, "/g/", "Bad"));
    EXPECT_EQ(program.State.CurrentStudy.Record.StudyNotes, "kept");
}

TEST(StudyFile, ListsRunNamesCutAtThirtyTwoCharacters) {
    TestProgram program;
    program.Files.PutText("/g/S.ld2", OneRunStudy().replace(320, 40, std::string(40, 'n')));
    StudyRecord header;
    OneBased<std::string> names;
    EXPECT_TRUE(ReadStudyRunNames(program.Files, "/g/", "S", header, names));
    EXPECT_EQ(names[1], std::string(32, 'n'));
    EXPECT_FALSE(ReadStudyRunNames(program.Files, "/g/", "T", header, names));
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_EQ(header.StudyName, "");
}

TEST(StudyFile, LargestStudyReadsAndWritesWhole) {
    TestProgram program;
    Study study;
    for (int i = 1; i <= 32767; ++i) AppendRun(study, "Run " + std::to_string(i));
    EXPECT_ERROR(Overflow, AppendRun(study, "One too many"));
    EXPECT_EQ(study.Entries.LastIndex(), 32767);
    PutStudyFile(program.Files, study, "/start/", "All");
    EXPECT_EQ(program.Files.Bytes("/start/All.ld2")->size(), 320U + 32767U * 128U);
    const Study read = LoadStudy(program.Files, "/start/", "All").value();
    EXPECT_EQ(read.RunNames[32767], "Run 32767");
    EXPECT_EQ(FindRun(read, "RUN 32767 "), 32767);
    EXPECT_EQ(FindRun(read, "Run"), 0);
}

TEST(StudyFile, ANewRunNameMustBeFree) {
    TestProgram program;
    for (const char* path : {"/g/B.rd2", "/g/C.rdf"}) program.Files.PutText(path, "");
    program.State.Paths.LastStudyGroupPath = "/g";
    AppendRun(program.State.CurrentStudy, "A");
    const auto problem = [&](const char* name) { return RunNameProblem(program.State, program.Files, name); };
    EXPECT_EQ(problem("a"), "The run keeps its name. A run \"a\" is already in this study.");
    for (const char* name : {"b", "c"})
        EXPECT_EQ(problem(name),
                  std::string("The run keeps its name. A run \"") + name + "\" is already in Study Group g.");
    EXPECT_NE(problem("../D"), "");
    EXPECT_EQ(problem("D"), "");
}

TEST(StudyFile, RemovingARunKeepsTheOthersInOrder) {
    Study study;
    for (const char* name : {"A", "B", "C"}) AppendRun(study, name);
    RemoveRun(study, 2);
    EXPECT_EQ(study.Record.RunCount, 2);
    EXPECT_EQ(study.RunNames[2], "C");
    EXPECT_EQ(study.Entries[2].EntryRunName, "C");
    EXPECT_ERROR(SubscriptOutOfRange, RemoveRun(study, 3));
    EXPECT_ERROR(SubscriptOutOfRange, RemoveRun(study, 0));
}

}  // namespace
}  // namespace vantor
