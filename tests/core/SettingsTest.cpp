#include "core/Settings.h"

#include <gtest/gtest.h>

#include "fakes/MemoryFileSystem.h"

namespace vantor {
namespace {

class SettingsTest : public testing::Test {
protected:
    std::string TextAt(std::size_t offset, std::size_t size) const {
        const auto bytes = Files.Bytes(Path).value();
        return {reinterpret_cast<const char*>(bytes.data()) + offset, size};
    }

    const std::string Path = "/program/VANTOR.bin";
    MemoryFileSystem Files;
    ApplicationState State;
    ApplicationState Again;
};

TEST_F(SettingsTest, FirstRunFormsDefaultsFromTheCurrentFolderAndWritesNothing) {
    Files.CreateFolder("/start/STUDY GROUPS");
    LoadSettings(State, Files);
    EXPECT_TRUE(State.SettingsWereMissing);
    EXPECT_EQ(State.Paths.TempRunsPath, Native("/start")) << "a folder that is missing gives the bare start folder";
    EXPECT_EQ(State.Paths.StudyGroupRootPath, Native("/start/Study Groups/"));
    EXPECT_EQ(State.Paths.LastStudyGroupPath, Native("/start/Study Groups/"));
    const AppSettings& settings = State.Settings;
    EXPECT_EQ(std::tuple(settings.UseStartUpScreen, settings.AutoConvertVer1, settings.ShowRunNamesOnStats,
                         settings.ShowPageNumbers),
              std::tuple(-1, -1, -1, -1));
    EXPECT_EQ(std::tuple(settings.SpeedFactor, settings.CommPort, settings.BaudRate, settings.ReportHeading[1],
                         settings.ReportHeading[2]),
              std::tuple(0.68181818F, 1, 9600, "Organization Title Goes Here", "Heading Second Line"));
    EXPECT_EQ(State.SpeedUnitLabel, "MPH");
    EXPECT_FALSE(Files.Bytes(Path));
}

TEST_F(SettingsTest, FileHoldsTheRecordAtItsOffsets) {
    LoadSettings(State, Files);
    State.Paths.TempRunsPath = "/t/";
    State.Paths.LastStudyName = "AM Peak";
    State.Settings.MetricUnits = -1;
    State.Settings.BaudRate = 115200;
    State.Settings.ReportHeading[3] = "Third";
    SaveSettings(State, Files);
    EXPECT_EQ(Files.Bytes(Path)->size(), 878U);
    EXPECT_EQ(TextAt(0, 80), "/t/" + std::string(77, ' '));
    EXPECT_EQ(TextAt(560, 8), "AM Peak ");
    EXPECT_EQ(TextAt(640, 6), "\xff\xff\xa3\x8b\x2e\x3f");
    EXPECT_EQ(TextAt(650, 8), std::string("\x01\0\0\xc2\x01\0\xff\xff", 8));
    EXPECT_EQ(TextAt(814, 6), "Third ");

    LoadSettings(Again, Files);
    EXPECT_FALSE(Again.SettingsWereMissing);
    EXPECT_EQ(Again.Settings, State.Settings);
    EXPECT_EQ(Again.SpeedUnitLabel + " " + Again.LengthUnitLabel + " " + Again.VolumeUnitLabel, "KPH m l");
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_NO_THROW(SaveSettings(Again, Files)) << "the file holds them already";
}

TEST_F(SettingsTest, NewStudyGroupRootIsStoredButNotYetInUse) {
    State.Paths.StudyGroupRootPath = "/in use/";
    State.Settings.StudyGroupRootPath = "/new root/";
    SaveSettings(State, Files);
    EXPECT_EQ(State.Paths.StudyGroupRootPath, "/in use/");
    LoadSettings(Again, Files);
    EXPECT_EQ(Again.Paths.StudyGroupRootPath, "/new root/");
}

TEST_F(SettingsTest, FoldersThatTheRecordCannotHoldAreKeptWholeBesideIt) {
    const std::string tooLong = "/" + std::string(100, 'x');
    const std::string cut = "/" + std::string(79, 'x');
    const std::string foreign = "/\u0414\u0430\u043d\u043d\u044b\u0435 2/";
    State.Paths.FieldDataPath = tooLong;
    State.Paths.LastStudyGroupPath = foreign;
    State.Paths.TempRunsPath = "/a b/  ";
    State.Settings.StudyGroupRootPath = "/new/" + std::string(90, 'y');
    SaveSettings(State, Files);
    const auto record = DecodeRecord<AppSettings>(AppSettingsFields, Files.Bytes(Path).value());
    EXPECT_EQ(record.FieldDataPath, cut);
    EXPECT_EQ(record.LastStudyGroupPath, "/?????? 2/");
    LoadSettings(State, Files);
    EXPECT_EQ(State.Paths.FieldDataPath, tooLong);
    EXPECT_EQ(State.Paths.LastStudyGroupPath, foreign);
    EXPECT_EQ(State.Paths.StudyGroupRootPath, "/new/" + std::string(90, 'y'));
    EXPECT_EQ(State.Paths.TempRunsPath, "/a b/");
    // Another program wrote another folder into the record: the whole one is of no use, and is not needed later.
    State.Paths.FieldDataPath = "/z/";
    SaveSettings(State, Files);
    EXPECT_EQ(ChoiceOf(LoadUserChoices(Files), "FieldDataPath"), "");
    StoreUserChoices(Files, {{"FieldDataPath", tooLong}});
    LoadSettings(State, Files);
    EXPECT_EQ(State.Paths.FieldDataPath, "/z/");
}

TEST_F(SettingsTest, UserChoicesKeepWhatTheyDoNotKnowAndAnyText) {
    Files.PutText("/program/vantor-user.ini", "Later=1=2\r\nno choice\n=x\nPath=/a\\\\n\\nb\n");
    EXPECT_EQ(LoadUserChoices(Files), (UserChoices{{"Later", "1=2"}, {"Path", "/a\\n\nb"}}));
    StoreUserChoices(Files, {{"SignedCoordinates", ChoiceTaken}, {"Path", ""}});
    EXPECT_EQ(Files.Bytes("/program/vantor-user.ini"), BytesOf("Later=1=2\nSignedCoordinates=yes\n"));
    EXPECT_TRUE(IsTaken(LoadUserChoices(Files), "SignedCoordinates"));
}

TEST_F(SettingsTest, ShortFileReadsAsZero) {
    Files.PutText(Path, "/temp/");
    LoadSettings(State, Files);
    EXPECT_EQ(State.Paths.TempRunsPath, "/temp/");
    EXPECT_EQ(State.Paths.StudyGroupRootPath, "");
    EXPECT_EQ(State.Settings.BaudRate + State.Settings.UseStartUpScreen, 0);
}

}  // namespace
}  // namespace vantor
