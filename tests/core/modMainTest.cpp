#include "core/modMain.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

TEST(ModMain, LabelsEventCodes) {
    const char* labels[] = {"",           "Movement 1", "Movement 2", "Movement 3", "",        "U-Turn",
                            "Right Turn", "Left Turn",  "Delay 4",    "Delay 3",    "Delay 2", "Delay 1",
                            "Peds",       "Stop Sign",  "Congestion", "Signal"};
    std::int16_t code = 0;
    for (const char* label : labels) EXPECT_EQ(EventCodeLabel(++code), label) << code;
    for (const std::int16_t other : std::initializer_list<std::int16_t>{-1, 0, 17, 32, 127, 32767})
        EXPECT_EQ(EventCodeLabel(other), "") << other;
}

TEST(ModMain, GradesDelays) {
    const std::pair<std::int32_t, const char*> cases[] = {
        {-2147483647, "A"}, {-5, "A"}, {9, "A"},  {10, "B"}, {19, "B"}, {20, "C"},        {34, "C"},
        {35, "D"},          {54, "D"}, {55, "E"}, {79, "E"}, {80, "F"}, {2147483647, "F"}};
    for (const auto& [delay, grade] : cases) EXPECT_EQ(LOSGradeOf(delay), grade) << delay;

    Study study;
    study.Entries.ResizeTo(1);
    study.Record.RunCount = 1;
    SetRunLOSGrade(study, 35, 1);
    SetRunLOSGrade(study, 5, 0);
    EXPECT_EQ(study.Entries[1].LOSGrade + study.Entries[0].LOSGrade, "DA");
    for (const std::int16_t none : {std::int16_t{-1}, std::int16_t{2}})
        EXPECT_ERROR(SubscriptOutOfRange, SetRunLOSGrade(study, 5, none));
}

TEST(ModMain, SplitsPackedNumbers) {
    std::int32_t middle = -1;
    std::int16_t high = -1;
    std::int16_t low = -1;
    SplitPacked5(100000, middle, high, low);
    EXPECT_EQ(std::tuple(high, middle, low), std::tuple(-1, 100000, -1));
    SplitPacked5(123456, middle, high, low);
    EXPECT_EQ(std::tuple(high, middle, low), std::tuple(1, 23, 456));

    std::int16_t whole = 0;
    float tenths = 0;
    SplitPacked4(123456, whole, tenths);
    EXPECT_EQ(std::tuple(whole, tenths), std::tuple(12, 345.6F));
    EXPECT_ERROR(Overflow, SplitPacked4(2000000000, whole, tenths));
    SplitPacked3(-12345, high, low);
    EXPECT_EQ(std::tuple(high, low), std::tuple(-12, -345));
    EXPECT_EQ(AddHours(-12, {10.75}).Days, 10.25);
}

TEST(ModMain, FindsLongPathNames) {
    MemoryFileSystem files;
    files.PutText("/Data/Study Groups/Run.RD2", "");
    EXPECT_EQ(LongPathName(files, "/data/STUDY groups"), Native("/Data/Study Groups"));
    EXPECT_EQ(LongPathName(files, "/data/study groups/run.rd2"), Native("/Data/Study Groups/Run.RD2"));
    EXPECT_EQ(LongPathName(files, "/data/none"), "");
    EXPECT_TRUE(FileExists(files, "/data/study groups/RUN.rd2"));
    EXPECT_FALSE(FileExists(files, "/Data"));
    EXPECT_TRUE(FolderExists(files, "/data/"));
    EXPECT_FALSE(FolderExists(files, "/Data/Study Groups/Run.RD2"));
}

TEST(ModMain, OpensTheHelpFileInTheProgramFolder) {
    TestProgram program;
    ShowHelp(program.DesktopServices, program.Files, HelpTopic::ReadCounter);
    EXPECT_EQ(program.DesktopServices.Opened, std::vector<std::string>{"/program/VANTOR.HLP#36"});
}

}  // namespace
}  // namespace vantor
