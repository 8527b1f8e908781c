#include "core/Settings.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"

namespace vantor {
namespace {

const std::string SettingsPath = "/program/VANTOR.bin";

TEST(Settings, FirstRunFormsDefaultsFromTheCurrentFolderAndWritesNothing) {
    MemoryFileSystem files;
    files.CreateFolder("/start/STUDY GROUPS");
    ApplicationState state;
    LoadSettings(state, files);
    EXPECT_TRUE(state.SettingsWereMissing);
    EXPECT_EQ(state.Paths.TempRunsPath, Native("/start")) << "a folder that is missing gives the bare start folder";
    EXPECT_EQ(state.Paths.StudyGroupRootPath, Native("/start/Study Groups/"));
    EXPECT_EQ(state.Paths.LastStudyGroupPath, Native("/start/Study Groups/"));
    EXPECT_EQ(state.Settings.UseStartUpScreen, -1);
    EXPECT_EQ(state.Settings.SpeedFactor, 0.68181818F);
    EXPECT_EQ(state.Settings.CommPort, 1);
    EXPECT_EQ(state.Settings.BaudRate, 9600);
    EXPECT_EQ(state.Settings.AutoConvertVer1, -1);
    EXPECT_EQ(state.Settings.ShowRunNamesOnStats, -1);
    EXPECT_EQ(state.Settings.ShowPageNumbers, -1);
    EXPECT_EQ(state.Settings.ReportHeading[1], "Organization Title Goes Here");
    EXPECT_EQ(state.SpeedUnitLabel, "MPH");
    EXPECT_FALSE(files.Bytes(SettingsPath));
}

TEST(Settings, FileHoldsTheRecordAtItsOffsets) {
    MemoryFileSystem files;
    ApplicationState state;
    LoadSettings(state, files);
    state.Paths.TempRunsPath = "/t/";
    state.Paths.LastStudyName = "AM Peak";
    state.Settings.MetricUnits = -1;
    state.Settings.BaudRate = 115200;
    state.Settings.ReportHeading[3] = "Third";
    SaveSettings(state, files);
    const auto bytes = files.Bytes(SettingsPath).value();
    ASSERT_EQ(bytes.size(), 878U);
    const auto at = [&](std::size_t offset, std::size_t size) {
        return std::vector(bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                           bytes.begin() + static_cast<std::ptrdiff_t>(offset + size));
    };
    EXPECT_EQ(at(0, 80), BytesOf("/t/" + std::string(77, ' ')));
    EXPECT_EQ(at(560, 8), BytesOf("AM Peak "));
    EXPECT_EQ(at(640, 6), BytesOf("\xff\xff\xa3\x8b\x2e\x3f"));
    EXPECT_EQ(at(650, 8), BytesOf(std::string("\x01\0\0\xc2\x01\0\xff\xff", 8)));
    EXPECT_EQ(at(814, 6), BytesOf("Third "));

    ApplicationState again;
    LoadSettings(again, files);
    EXPECT_FALSE(again.SettingsWereMissing);
    EXPECT_EQ(again.Settings, state.Settings);
    EXPECT_EQ(again.SpeedUnitLabel, "KPH");
    EXPECT_EQ(again.LengthUnitLabel, "m");
    EXPECT_EQ(again.VolumeUnitLabel, "l");
}

TEST(Settings, NewStudyGroupRootIsStoredButNotYetInUse) {
    TestProgram program;
    program.State.Settings.StudyGroupRootPath = "/new root/";
    SaveSettings(program.State, program.Files);
    EXPECT_EQ(program.State.Paths.StudyGroupRootPath, Native("/start/Study Groups/"));
    ApplicationState next;
    LoadSettings(next, program.Files);
    EXPECT_EQ(next.Paths.StudyGroupRootPath, "/new root/");
}

TEST(Settings, FoldersThatTheRecordCannotHoldAreKeptWholeBesideIt) {
    const std::string tooLong = "/" + std::string(100, 'x');
    const std::string cut = "/" + std::string(79, 'x');
    const std::string foreign = "/\u0414\u0430\u043d\u043d\u044b\u0435 2/";
    TestProgram program;
    program.State.Paths.FieldDataPath = tooLong;
    program.State.Paths.LastStudyGroupPath = foreign;
    program.State.Paths.TempRunsPath = "/a b/  ";
    program.State.Settings.StudyGroupRootPath = "/new/" + std::string(90, 'y');
    SaveSettings(program.State, program.Files);
    const auto record =
        DecodeRecord<AppSettings>(AppSettingsFields, program.Files.Bytes("/program/VANTOR.bin").value());
    EXPECT_EQ(record.FieldDataPath, cut);
    EXPECT_EQ(record.LastStudyGroupPath, "/?????? 2/");
    LoadSettings(program.State, program.Files);
    EXPECT_EQ(program.State.Paths.FieldDataPath, tooLong);
    EXPECT_EQ(program.State.Paths.LastStudyGroupPath, foreign);
    EXPECT_EQ(program.State.Paths.StudyGroupRootPath, "/new/" + std::string(90, 'y'));
    EXPECT_EQ(program.State.Paths.TempRunsPath, "/a b/");
    // Another program wrote another folder into the record: the whole one is of no use, and is not needed later.
    program.State.Paths.FieldDataPath = "/z/";
    SaveSettings(program.State, program.Files);
    EXPECT_EQ(ChoiceOf(LoadUserChoices(program.Files), "FieldDataPath"), "");
    StoreUserChoices(program.Files, {{"FieldDataPath", tooLong}});
    LoadSettings(program.State, program.Files);
    EXPECT_EQ(program.State.Paths.FieldDataPath, "/z/");
}

TEST(Settings, UserChoicesKeepWhatTheyDoNotKnowAndAnyText) {
    MemoryFileSystem files;
    files.PutText("/program/vantor-user.ini", "Later=1=2\r\nno choice\n=x\nPath=/a\\\\n\\nb\n");
    EXPECT_EQ(LoadUserChoices(files), (UserChoices{{"Later", "1=2"}, {"Path", "/a\\n\nb"}}));
    StoreUserChoices(files, {{"SignedCoordinates", ChoiceTaken}, {"Path", ""}});
    EXPECT_EQ(files.Bytes("/program/vantor-user.ini"), BytesOf("Later=1=2\nSignedCoordinates=yes\n"));
    EXPECT_TRUE(IsTaken(LoadUserChoices(files), "SignedCoordinates"));
}

TEST(Settings, ShortFileReadsAsZero) {
    MemoryFileSystem files;
    files.PutText(SettingsPath, "/temp/");
    ApplicationState state;
    LoadSettings(state, files);
    EXPECT_EQ(state.Paths.TempRunsPath, "/temp/");
    EXPECT_EQ(state.Paths.StudyGroupRootPath, "");
    EXPECT_EQ(state.Settings.BaudRate, 0);
    EXPECT_EQ(state.Settings.UseStartUpScreen, 0);
}

}  // namespace
}  // namespace vantor
