#include "platform/DiskFileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/DiskFolder.h"

namespace vantor {
namespace {

struct DiskFileSystemTest : testing::Test, DiskFolder {};

TEST_F(DiskFileSystemTest, WritesFilesWholeAndLeavesNothingBeside) {
    Put("a.rd2", "first version");
    Put("a.rd2", "second");
    EXPECT_EQ(Found(), (Texts{{"a.rd2", "second"}}));
    Put("a.rd2", "3rd", OldTail::Kept);
    EXPECT_EQ(Found(), (Texts{{"a.rd2", "3rdond"}}));
    Put("a.rd2", "longer than before", OldTail::Kept);
    EXPECT_EQ(Found(), (Texts{{"a.rd2", "longer than before"}}));
    {
        const auto batch = Disk.BeginWrites();
        batch->Add(At("a.rd2"), BytesOf("new"), AsItStands(Disk, At("a.rd2")));
        batch->Add(At("b"), BytesOf("new"), Expected::Nothing());
    }
    EXPECT_EQ(Found(), (Texts{{"a.rd2", "longer than before"}})) << "a batch that is not committed";
    EXPECT_ERROR(PathNotFound, Put("none/a", "x"));
}

TEST_F(DiskFileSystemTest, LooksNamesUpWithoutLetterCase) {
    Disk.CreateFolder(At("Study Groups/Main"));
    Put("Study Groups/Main/S001R001.RD2", "run");
    EXPECT_EQ(ReadFirstBytes(Disk, At("STUDY groups/main/s001r001.rd2"), 9), BytesOf("run"));
    EXPECT_EQ(Disk.Find(At("study groups/main/s001r001.rd2"))->Name, "S001R001.RD2");
    Put("study groups/MAIN/s001r001.rd2", "new");
    EXPECT_EQ(Disk.List(At("Study Groups/Main")).size(), 1U) << "the old file is the one written over";
    Put("exact", "lower");
    std::filesystem::copy(At("exact"), At("EXACT"));
    Put("EXACT", "upper");
    EXPECT_EQ(Found(), (Texts{{"exact", "lower"}, {"EXACT", "upper"}, {"Study Groups", ""}}));
}

TEST_F(DiskFileSystemTest, WritesOnlyOverWhatIsExpected) {
    const auto write = [&](const char* name, const Expected& expected) {
        WriteFile(Disk, At(name), BytesOf("mine"), expected);
    };
    Put("a", "old");
    const Expected asRead = AsItStands(Disk, At("a"));
    Put("a", "OLD");
    EXPECT_ERROR(PathFileAccessError, write("a", asRead));
    EXPECT_ERROR(FileAlreadyExists, write("A", Expected::Nothing()));
    Disk.Delete(At("a"));
    EXPECT_ERROR(PathFileAccessError, write("a", asRead));
    EXPECT_EQ(Found(), Texts());

    // A backup that is a link is not written through.
    std::filesystem::create_symlink("nowhere", At("b"));
    EXPECT_ERROR(FileAlreadyExists, write("b", Expected::Nothing()));
    EXPECT_FALSE(std::filesystem::exists(At("nowhere")));
}

TEST_F(DiskFileSystemTest, RenamesAndDeletes) {
    Put("a", "1");
    Put("b", "2");
    EXPECT_ERROR(FileAlreadyExists, Disk.Rename(At("a"), At("B")));
    Disk.Rename(At("A"), At("c"));
    Disk.Rename(At("c"), At("C"));
    EXPECT_EQ(Found(), (Texts{{"C", "1"}, {"b", "2"}}));
    Disk.Delete(At("c"));
    EXPECT_ERROR(FileNotFound, Disk.Delete(At("c")));
    EXPECT_ERROR(FileNotFound, Disk.Rename(At("c"), At("d")));
    EXPECT_ERROR(FileNotFound, Disk.Open(At("c")));
    EXPECT_ERROR(PathNotFound, Disk.Open(At("none/c")));
    EXPECT_ERROR(PathNotFound, Disk.List(At("none")));
}

TEST_F(DiskFileSystemTest, ListsByNameWithoutLetterCase) {
    for (const char* name : {"b", "C", "a"}) Put(name, "");
    std::string names;
    for (const FileInfo& info : Disk.List(Folder)) names += info.Name;
    EXPECT_EQ(names, "abC");
    for (const char* name : {"run.RD2", ".rd2", "run.rd2.bak", "other.rd2"}) Put(name, "");
    names.clear();
    for (const FileInfo& info : Disk.List(Folder, ".rd2")) names += info.Name + " ";
    EXPECT_EQ(names, "other.rd2 run.RD2 ");
}

TEST_F(DiskFileSystemTest, ReadsOnlyFiles) {
    mkfifo(At("pipe").c_str(), 0600);
    EXPECT_ERROR(PathFileAccessError, Disk.Open(At("pipe")));
    EXPECT_ERROR(PathFileAccessError, Disk.Open("/dev/null"));
    std::filesystem::create_symlink("nowhere", At("link"));
    EXPECT_ERROR(FileNotFound, Disk.Open(At("link")));
    EXPECT_ERROR(PathFileAccessError, Disk.Open(Folder));
    EXPECT_FALSE(Disk.Find(At("none")));
    EXPECT_TRUE(Disk.Find(Folder)->IsFolder);
}

TEST_F(DiskFileSystemTest, KeepsPermissionsAndLinks) {
    Put("real", "old");
    chmod(At("real").c_str(), 0640);
    std::filesystem::create_symlink(At("real"), At("link"));
    Put("link", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(At("link")));
    EXPECT_EQ(ContentsOf(At("real")), "new");
    struct stat status {};
    stat(At("real").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(DiskFileSystemTest, AGrowingFileHoldsWhatIsAppendedAtOnce) {
    const auto file = Disk.Create(At("Dump.tdc"));
    std::string whole;
    for (const char* piece : {"", "T", ",001\r\n"}) {
        file->Append(BytesOf(piece));
        whole += piece;
        EXPECT_EQ(Found(), (Texts{{"Dump.tdc", whole}}));
    }
    EXPECT_EQ(ErrorWithFilesUpTo(8, [&] { file->Append(BytesOf("2")); }), std::nullopt);
    EXPECT_EQ(ErrorWithFilesUpTo(8, [&] { file->Append(BytesOf("3")); }), ErrorNumber::DiskFull);
    file->Close();
    EXPECT_ERROR(FileAlreadyExists, Disk.Create(At("DUMP.tdc")));
    EXPECT_ERROR(PathNotFound, Disk.Create(At("none/Dump.tdc")));
    EXPECT_EQ(Found(), (Texts{{"Dump.tdc", "T,001\r\n2"}}));
}

TEST_F(DiskFileSystemTest, SettingsFolderFollowsTheEnvironmentAndPermissions) {
    unsetenv("VANTOR_PROGRAM_FOLDER");
    EXPECT_EQ(DiskFileSystem(Folder).SettingsFolder(), Folder);
    setenv("XDG_CONFIG_HOME", Folder.c_str(), 1);
    EXPECT_EQ(DiskFileSystem("/proc/none/").SettingsFolder(), At("vantor/"));
    setenv("VANTOR_PROGRAM_FOLDER", "/portable", 1);
    EXPECT_EQ(DiskFileSystem(Folder).SettingsFolder(), "/portable/");
    unsetenv("VANTOR_PROGRAM_FOLDER");
    // Whoever may write into the folder of an installed program has settings of his own all the same.
    for (const char* folder : {"bin", "share/vantor"}) Disk.CreateFolder(At(folder));
    Put("share/vantor/VANTOR.HLP", "");
    EXPECT_EQ(DiskFileSystem(At("bin/")).SettingsFolder(), At("vantor/"));
    Put("bin/VANTOR.HLP", "");
    EXPECT_EQ(DiskFileSystem(At("bin/")).SettingsFolder(), At("bin/"));
}

TEST_F(DiskFileSystemTest, FindsFilesOfTheProgramWhereverItIsInstalled) {
    setenv("VANTOR_PROGRAM_FOLDER", At("own").c_str(), 1);
    const DiskFileSystem files(At("bin/"));
    unsetenv("VANTOR_PROGRAM_FOLDER");
    EXPECT_EQ(files.ProgramFile("VANTOR.HLP"), At("own/VANTOR.HLP"));
    for (const char* folder : {"bin", "share/vantor", "own"}) Disk.CreateFolder(At(folder));
    for (const std::string place : {"bin/../share/vantor/", "bin/", "own/"}) {
        Put(place + "VANTOR.HLP", "");
        EXPECT_EQ(files.ProgramFile("VANTOR.HLP"), At(place + "VANTOR.HLP"));
    }
}

}  // namespace
}  // namespace vantor
