#include "platform/MountedDevice.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "fakes/MemoryFileSystem.h"

namespace vantor {
namespace {

const std::string LogPath = "\\Program Files\\Roampad\\GPSData.pdb";

class MountedDeviceTest : public testing::Test {
protected:
    MountedDeviceTest() {
        Files.PutText("/mnt/pda/program files/ROAMPAD/gpsdata.PDB", "a log");
        Files.PutText("/mnt/secret.txt", "of the desktop");
    }

    RemoteApi::Handle Open(const std::string& path) {
        return Device.CeCreateFile(path, RemoteApi::Access::Read, RemoteApi::Creation::OpenExisting);
    }
    RemoteApi::Handle Make(const std::string& path) {
        return Device.CeCreateFile(path, RemoteApi::Access::Write, RemoteApi::Creation::CreateAlways);
    }
    /// The contents of an open file.
    std::vector<std::byte> Contents(RemoteApi::Handle file) {
        std::vector<std::byte> bytes(Device.CeGetFileSize(file));
        std::uint32_t read = 0;
        EXPECT_TRUE(Device.CeReadFile(file, bytes, read));
        EXPECT_EQ(read, bytes.size());
        return bytes;
    }

    MemoryFileSystem Files;
    MountedDevice Device{Files, "/mnt/pda"};
    RemoteApi::RapiInit Init;
    std::uint32_t Moved = 0;
};

TEST_F(MountedDeviceTest, ReadsFilesWhateverTheirCase) {
    ASSERT_EQ(Device.CeRapiInitEx(Init), 0);
    EXPECT_EQ(Device.WaitForSingleObject(Init.InitEvent, 10000), RemoteApi::WaitResult::Signalled);
    EXPECT_EQ(Init.InitResult, 0);
    const auto file = Open(LogPath);
    ASSERT_NE(file, RemoteApi::InvalidHandle);
    std::vector<std::byte> bytes = Contents(file);
    EXPECT_EQ(bytes, BytesOf("a log"));
    Device.CeCloseHandle(file);
    EXPECT_FALSE(Device.CeReadFile(file, bytes, Moved)) << "closed";
    EXPECT_NE(Device.CeFindFirstFile(LogPath), RemoteApi::InvalidHandle);
}

TEST_F(MountedDeviceTest, WritesInPiecesOverAnOlderFile) {
    const auto file = Make(LogPath);
    ASSERT_NE(file, RemoteApi::InvalidHandle);
    EXPECT_TRUE(Device.CeWriteFile(file, BytesOf("new"), Moved));
    EXPECT_EQ(Moved, 3u);
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_FALSE(Device.CeWriteFile(file, BytesOf("e"), Moved)) << "a single byte is there or not";
    EXPECT_EQ(Moved, 0u);
    EXPECT_TRUE(Device.CeWriteFile(file, BytesOf("er"), Moved));
    Device.CeRapiUninit();
    EXPECT_FALSE(Device.CeWriteFile(file, BytesOf("!"), Moved)) << "the end of the connection closes it";
    EXPECT_EQ(Contents(Open(LogPath)), BytesOf("newer"));
}

TEST_F(MountedDeviceTest, NoPathLeavesTheFolder) {
    const auto before = Files.AllFiles();
    for (const std::string path :
         {"\\..\\secret.txt", "\\Program Files\\..\\..\\secret.txt", "\\../secret.txt", "/mnt/secret.txt", "secret.txt",
          "\\", "", "\\\\mnt\\secret.txt", "\\C:secret.txt", "\\.\\..\\secret.txt"}) {
        EXPECT_EQ(Open(path), RemoteApi::InvalidHandle) << path;
        EXPECT_EQ(Make(path), RemoteApi::InvalidHandle) << path;
        EXPECT_EQ(Device.CeFindFirstFile(path), RemoteApi::InvalidHandle) << path;
    }
    EXPECT_EQ(Files.AllFiles(), before);
}

TEST_F(MountedDeviceTest, MissingFilesAreNoErrorOfTheConnectionAMissingFolderIs) {
    EXPECT_EQ(Open("\\Program Files\\Revpad\\OBDData.pdb"), RemoteApi::InvalidHandle);
    EXPECT_EQ(Device.CeFindFirstFile("\\Program Files\\Revpad\\OBDData.pdb"), RemoteApi::InvalidHandle);
    EXPECT_EQ(Device.CeRapiGetError(), 0);
    for (const std::string folder : {"", "/mnt/gone", "/mnt/secret.txt"}) {
        MountedDevice none(Files, folder);
        EXPECT_NE(none.CeRapiInitEx(Init), 0) << folder;
        EXPECT_NE(none.CeRapiGetError(), 0) << folder;
    }
}

#ifndef _WIN32
TEST_F(MountedDeviceTest, TheEnvironmentNamesTheFolder) {
    setenv("VANTOR_DEVICE_FOLDER", "/mnt/pda", 1);
    EXPECT_EQ(MakeRemoteApi(Files)->CeRapiInitEx(Init), 0);
    unsetenv("VANTOR_DEVICE_FOLDER");
    EXPECT_NE(MakeRemoteApi(Files)->CeRapiInitEx(Init), 0);
}
#endif

}  // namespace
}  // namespace vantor
