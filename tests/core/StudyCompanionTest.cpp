#include "core/StudyCompanion.h"

#include <gtest/gtest.h>

#include "core/ContentHash.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

/// As a later version may write it.
constexpr const char* Companion = R"({
 "version": 1,
 "runs": [
  {
   "EntryRunName": "NB-001",
   "computed": {
    "movement": "00000000000000ff",
    "CDStartDist": 300,
    "CDEndDist": 7600,
    "IdealSpeedUser": 35,
    "failure": "Overflow"
   },
   "StopSpeedThreshold": 5,
   "period": "AM"
  }
 ],
 "conditions": {
  "weather": "dry"
 }
}
)";

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
                                R"({"runs": [{"EntryRunName": "A", "computed": {"movement": "x"}}]})"}) {
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
    RunRecord run;
    run.Header.CalConstant = 0x6F66;  // "fo"
    for (const int value : {0x6F, 0x8000 | 0x62}) run.SampleValues.Append(static_cast<std::int16_t>(value));
    EXPECT_EQ(MovementHash(run), ContentHash(BytesOf(std::string_view("foo\0b\0", 6))));
}

}  // namespace
}  // namespace vantor
