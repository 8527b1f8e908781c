#include "core/StudyFile.h"

#include <gtest/gtest.h>

#include "core/ContentHash.h"
#include "core/Layout.h"
#include "core/StudyCompanion.h"
#include "fakes/FakePorts.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using namespace std::string_view_literals;

/// A study of one run, byte by byte.
std::string OneRunStudy() {
    return Layout(320 + 128, ' ')
        .Bytes(0, "\x01\0"sv)
        .Bytes(2, "AM Peak")
        .Bytes(34, "\0\0\0\0\x20\x4c\xe3\x40"sv)
        .Bytes(42, "\x01\0"sv)
        .Bytes(44, "abcdefuvwxyz")
        .Bytes(56, "Signals retimed")
        .Bytes(184, "Main St")
        .Bytes(224, "\x01\0\0\0\x0c\x42\x44"sv)  // SB, 35 seconds, grade D
        .Bytes(231, "12345678\0\0\0\0\0\0\0\x80\xff\xff"sv)
        .Bytes(320, "Main St-NB-001")
        .Bytes(400, "\x2c\x01\0\0\xb0\x1d\0\0\x1e\0\0\0\x23\0\0\0\xfb\xff\xff\xff\x41\x04\0\0\0tail"sv);
}

class StudyFileTest : public testing::Test, protected TestProgram {
protected:
    bool Read(const std::string& name) { return ReadStudyFile(State, Files, DesktopServices, Time, "/g/", name); }
    Study Load(const std::string& name) { return LoadStudy(Files, "/g/", name).value(); }

    const StudyRecord& Record = State.CurrentStudy.Record;
};

TEST_F(StudyFileTest, ReadsAndWritesRecordAndEntriesAtTheirOffsets) {
    Files.PutText("/g/AM Peak.ld2", OneRunStudy() + std::string(1000, 'x'));
    ASSERT_TRUE(Read("AM Peak"));
    EXPECT_TRUE(State.StudyUnchanged);
    Study study = State.CurrentStudy;
    EXPECT_EQ(std::tuple(Record.StudyName, ShortDate(Record.StudyDate), Record.StreetName, Record.Direction),
              std::tuple("AM Peak", "03/14/08", "Main St", 1));
    EXPECT_EQ(std::tuple(Record.StudyAvgControlDelay, Record.StudyLOSGrade, Record.CritLane),
              std::tuple(35.0F, "D", -1));
    EXPECT_EQ(study.Entries.LastIndex(), 1);
    EXPECT_EQ(study.Entries[1], (StudyRunEntry{"Main St-NB-001", 300, 7600, 30, 35, -5, "A", 4, "tail"}));
    EXPECT_EQ(study.RunNames[1], "Main St-NB-001");

    study.Record.StudyFileVersion = 9;
    PutStudyFile(Files, study, "/g/", "AM Peak");
    EXPECT_EQ(Files.Bytes("/g/AM Peak.ld2"), BytesOf(OneRunStudy())) << "replaced wholly, under the same version";
    RemoveRun(study, 1);
    PutStudyFile(Files, study, "/g/", "AM Peak");
    EXPECT_EQ(Files.Bytes("/g/AM Peak.ld2")->size(), 320U);
}

TEST_F(StudyFileTest, MissingFileBeepsAndGivesAnEmptyStudy) {
    Files.PutText("/g/AM Peak.ld2", OneRunStudy());
    Read("AM Peak");
    State.Paths.LastStudyGroupPath.clear();
    EXPECT_FALSE(Read("Gone"));
    EXPECT_EQ(DesktopServices.Beeps, 1);
    EXPECT_EQ(Record, (StudyRecord{.StudyDate = Time.Moment, .Direction = -1, .CritLane = -1}));
    EXPECT_EQ(State.Paths.LastStudyGroupPath, Native("/start/Study Groups/"));
}

TEST_F(StudyFileTest, ShortAndDamagedFiles) {
    Files.PutText("/g/Short.ld2", OneRunStudy().replace(42, 1, "\x03").substr(0, 320 + 10));
    const Study study = Load("Short");
    EXPECT_EQ(study.RunNames, OneBased<std::string>({"Main St-NB", "", ""}));
    EXPECT_EQ(study.Entries[3].CDStartDist, 0);

    Files.PutText("/g/Bad.ld2", OneRunStudy().replace(42, 2, "\xff\xff"));
    State.CurrentStudy.Record.StudyNotes = "kept";
    EXPECT_ERROR(SubscriptOutOfRange, Read("Bad"));
    EXPECT_EQ(Record.StudyNotes, "kept");
}

TEST_F(StudyFileTest, ListsRunNamesCutAtThirtyTwoCharacters) {
    Files.PutText("/g/S.ld2", OneRunStudy().replace(320, 40, std::string(40, 'n')));
    EXPECT_EQ(ReadStudyRunNames(Files, "/g/", "S").value().RunNames, OneBased<std::string>({std::string(32, 'n')}));
    EXPECT_FALSE(ReadStudyRunNames(Files, "/g/", "T"));
}

TEST_F(StudyFileTest, LargestStudyReadsAndWritesWhole) {
    Study study;
    for (int i = 1; i <= 32767; ++i) AppendRun(study, "Run " + std::to_string(i));
    EXPECT_ERROR(Overflow, AppendRun(study, "One too many"));
    EXPECT_EQ(study.Entries.LastIndex(), 32767);
    Files.CreateFolder("/g");
    PutStudyFile(Files, study, "/g/", "All");
    EXPECT_EQ(Files.Bytes("/g/All.ld2")->size(), 320U + 32767U * 128U);
    const Study read = Load("All");
    EXPECT_EQ(read.RunNames[32767], "Run 32767");
    EXPECT_EQ(FindRun(read, "RUN 32767 "), 32767);
    EXPECT_EQ(FindRun(read, "Run"), 0);
}

TEST_F(StudyFileTest, ANewRunNameMustBeFree) {
    for (const char* path : {"/g/B.rd2", "/g/C.rdf"}) Files.PutText(path, "");
    State.Paths.LastStudyGroupPath = "/g";
    AppendRun(State.CurrentStudy, "A");
    const auto problem = [&](const char* name) { return RunNameProblem(State, Files, name); };
    const std::string keeps = "The run keeps its name. A run \"";
    EXPECT_EQ(problem("a"), keeps + "a\" is already in this study.");
    for (const std::string name : {"b", "c"})
        EXPECT_EQ(problem(name.c_str()), keeps + name + "\" is already in Study Group g.");
    EXPECT_NE(problem("../D"), "");
    EXPECT_EQ(problem("D"), "");
}

TEST_F(StudyFileTest, RemovingARunKeepsTheOthersInOrder) {
    Study study;
    for (const char* name : {"A", "B", "C"}) AppendRun(study, name);
    RemoveRun(study, 2);
    EXPECT_EQ(study.Record.RunCount, 2);
    EXPECT_EQ(study.RunNames, OneBased<std::string>({"A", "C"}));
    EXPECT_EQ(study.Entries[2].EntryRunName, "C");
    for (const int none : {0, 3}) EXPECT_ERROR(SubscriptOutOfRange, RemoveRun(study, none));
}

/// As a later version may write it.
constexpr const char* Companion =
    "{\n \"version\": 1,\n \"statistics\": {\n  \"confidence\": 90.0,\n  \"go\": 15.0,\n  \"error\": 5.0,\n"
    "  \"error_is\": \"absolute\",\n  \"free_flow\": 45.0,\n"
    "  \"grade_limits\": [\n   5.0,\n   10.5,\n   20.0,\n   30.0,\n   40.0\n  ]\n },\n"
    " \"lines\": {\n  \"observer\": \"A. Lee\"\n },\n \"runs\": [\n  {\n   \"EntryRunName\": \"NB-001\",\n   "
    "\"computed\": {\n"
    "    \"movement\": \"00000000000000ff\",\n    \"CDStartDist\": 300,\n    \"CDEndDist\": 7600,\n"
    "    \"IdealSpeedUser\": 35,\n    \"failure\": \"Overflow\"\n   },\n   \"StopSpeedThreshold\": 5,\n"
    "   \"period\": \"AM\",\n   \"set_aside\": \"detour\"\n  }\n ],\n \"conditions\": {\n  \"weather\": \"dry\"\n "
    "}\n}\n";

TEST(StudyCompanion, IsReadKeptAndWrittenAgain) {
    MemoryFileSystem files;
    Study study;
    for (const char* name : {"NB-002", "nb-001"}) AppendRun(study, name);
    PutStudyFile(files, study, "/start/", "AM");
    EXPECT_FALSE(files.Bytes("/start/AM.study.json")) << "there is nothing to keep";

    files.PutText("/start/AM.study.json", Companion);
    Study read = LoadStudy(files, "/start/", "AM").value();
    EXPECT_FALSE(read.Entries[1].Computed);
    EXPECT_EQ(read.Entries[2].Computed, (Computation{0xFF, 300, 7600, 35, "Overflow"}));
    EXPECT_EQ(read.Entries[2].StopDelayThreshold, 5);
    EXPECT_EQ(read.Entries[2].SetAside, "detour");
    EXPECT_EQ(read.Options,
              (StatisticsOptions{
                  90, {PermittedError::Kind::Absolute, 5}, 3, {5, 15}, 45.0, std::array{5.0, 10.5, 20.0, 30.0, 40.0}}));
    EXPECT_EQ(read.Lines.Observer, "A. Lee");
    PutStudyFile(files, read, "/start/", "PM");
    std::string expected = Companion;
    expected.replace(expected.find("NB-001"), 6, "nb-001");
    EXPECT_EQ(files.Bytes("/start/PM.study.json"), BytesOf(expected));

    RemoveRun(read, 2);
    PutStudyFile(files, read, "/start/", "PM");
    EXPECT_FALSE(LoadStudy(files, "/start/", "PM")->OtherFacts.empty());
}

TEST(StudyCompanion, ADamagedOneIsKeptWhenTheStudyIsWritten) {
    for (const char* damaged : {"", "{", "[]", R"({"runs": [{}]})", R"({"runs": [{"EntryRunName": 1}]})",
                                R"({"runs": [{"EntryRunName": "A", "computed": {"movement": "x"}}]})",
                                R"({"runs": [], "statistics": {"confidence": 100}})",
                                R"({"runs": [], "statistics": {"grade_limits": [1, 2, 2, 3, 4]}})"}) {
        MemoryFileSystem files;
        Study study;
        AppendRun(study, "A");
        PutStudyFile(files, study, "/start/", "AM");
        files.PutText("/start/AM.study.json", damaged);
        Study read = LoadStudy(files, "/start/", "AM").value();
        EXPECT_FALSE(read.Entries[1].Computed) << damaged;
        PutStudyFile(files, read, "/start/", "AM");
        EXPECT_EQ(files.Bytes("/start/AM.study.json.bak"), BytesOf(damaged));
    }
}

// The vectors are those that the authors of the hash published.
TEST(ContentHash, IsFnv1a) {
    EXPECT_EQ(ContentHash(BytesOf("")), 0xCBF29CE484222325U);
    EXPECT_EQ(ContentHash(BytesOf("foobar")), 0x85944171F73967E8U);
    // The calibration "fo", then the pulses.
    EXPECT_EQ(MovementHash(RunOfValues({0x6F, 0x8000 | 0x62}, 0x6F66)),
              ContentHash(BytesOf(std::string_view("foo\0b\0", 6))));
}

}  // namespace
}  // namespace vantor
