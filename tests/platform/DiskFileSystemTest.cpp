#include "platform/DiskFileSystem.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "core/Paths.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

/// A fresh folder of the real disk for each test.
class DiskFileSystemTest : public testing::Test {
protected:
    DiskFileSystemTest() {
        char pattern[] = "/tmp/vantor-test-XXXXXX";
        folder_ = AsFolder(mkdtemp(pattern));
    }
    ~DiskFileSystemTest() override { std::filesystem::remove_all(folder_); }

    std::string At(const std::string& name) const { return folder_ + name; }
    void Put(const std::string& name, std::string_view text, OldTail tail = OldTail::Dropped) {
        WriteFile(files_, At(name), BytesOf(text), AsItStands(files_, At(name)), tail);
    }
    std::vector<std::byte> Whole(const std::string& name) const { return ReadFirstBytes(files_, At(name), 1 << 20); }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const FileInfo& info : files_.List(folder_)) names.push_back(info.Name);
        return names;
    }

    std::string folder_;
    DiskFileSystem files_{"/"};
};

TEST_F(DiskFileSystemTest, WritesFilesWholeAndLeavesNothingBeside) {
    Put("a.rd2", "first version");
    Put("a.rd2", "second");
    EXPECT_EQ(Whole("a.rd2"), BytesOf("second"));
    Put("a.rd2", "3rd", OldTail::Kept);
    EXPECT_EQ(Whole("a.rd2"), BytesOf("3rdond"));
    Put("a.rd2", "longer than before", OldTail::Kept);
    EXPECT_EQ(Whole("a.rd2"), BytesOf("longer than before"));
    EXPECT_EQ(Names(), std::vector<std::string>{"a.rd2"});
}

TEST_F(DiskFileSystemTest, BatchThatIsNotCommittedLeavesEverything) {
    Put("a", "old");
    {
        const auto batch = files_.BeginWrites();
        batch->Add(At("a"), BytesOf("new"), AsItStands(files_, At("a")));
        batch->Add(At("b"), BytesOf("new"), Expected::Nothing());
    }
    EXPECT_EQ(Whole("a"), BytesOf("old"));
    EXPECT_EQ(Names(), std::vector<std::string>{"a"});
    EXPECT_ERROR(PathNotFound, Put("none/a", "x"));
}

TEST_F(DiskFileSystemTest, LooksNamesUpWithoutLetterCase) {
    files_.CreateFolder(At("Study Groups/Main"));
    Put("Study Groups/Main/S001R001.RD2", "run");
    EXPECT_EQ(ReadFirstBytes(files_, At("STUDY groups/main/s001r001.rd2"), 9), BytesOf("run"));
    EXPECT_EQ(files_.Find(At("study groups/main/s001r001.rd2"))->Name, "S001R001.RD2");
    Put("study groups/MAIN/s001r001.rd2", "new");
    EXPECT_EQ(files_.List(At("Study Groups/Main")).size(), 1U) << "the old file is the one written over";
    Put("exact", "lower");
    std::filesystem::copy(At("exact"), At("EXACT"));
    Put("EXACT", "upper");
    EXPECT_EQ(Whole("exact"), BytesOf("lower"));
    EXPECT_EQ(Whole("EXACT"), BytesOf("upper"));
}

TEST_F(DiskFileSystemTest, WritesOnlyOverWhatIsExpected) {
    Put("a", "old");
    const Expected asRead = AsItStands(files_, At("a"));
    Put("a", "OLD");
    EXPECT_ERROR(PathFileAccessError, WriteFile(files_, At("a"), BytesOf("mine"), asRead));
    EXPECT_ERROR(FileAlreadyExists, WriteFile(files_, At("A"), BytesOf("mine"), Expected::Nothing()));
    files_.Delete(At("a"));
    EXPECT_ERROR(PathFileAccessError, WriteFile(files_, At("a"), BytesOf("mine"), asRead));
    EXPECT_TRUE(Names().empty());

    // A backup that is a link is not written through.
    Put("outside", "safe");
    std::filesystem::create_symlink("nowhere", At("b"));
    EXPECT_ERROR(FileAlreadyExists, WriteFile(files_, At("b"), BytesOf("mine"), Expected::Nothing()));
    EXPECT_FALSE(std::filesystem::exists(At("nowhere")));
}

TEST_F(DiskFileSystemTest, RenamesAndDeletes) {
    Put("a", "1");
    Put("b", "2");
    EXPECT_ERROR(FileAlreadyExists, files_.Rename(At("a"), At("B")));
    files_.Rename(At("A"), At("c"));
    files_.Rename(At("c"), At("C"));
    EXPECT_EQ(Whole("C"), BytesOf("1"));
    EXPECT_EQ(Names(), (std::vector<std::string>{"b", "C"}));
    files_.Delete(At("c"));
    EXPECT_ERROR(FileNotFound, files_.Delete(At("c")));
    EXPECT_ERROR(FileNotFound, files_.Rename(At("c"), At("d")));
    EXPECT_ERROR(FileNotFound, files_.Open(At("c")));
    EXPECT_ERROR(PathNotFound, files_.Open(At("none/c")));
    EXPECT_ERROR(PathNotFound, files_.List(At("none")));
}

TEST_F(DiskFileSystemTest, ReadsOnlyFiles) {
    mkfifo(At("pipe").c_str(), 0600);
    EXPECT_ERROR(PathFileAccessError, files_.Open(At("pipe")));
    EXPECT_ERROR(PathFileAccessError, files_.Open(folder_));
    EXPECT_FALSE(files_.Find(At("none")));
    EXPECT_TRUE(files_.Find(folder_)->IsFolder);
}

TEST_F(DiskFileSystemTest, KeepsPermissionsAndLinks) {
    Put("real", "old");
    chmod(At("real").c_str(), 0640);
    std::filesystem::create_symlink(At("real"), At("link"));
    Put("link", "new");
    EXPECT_TRUE(std::filesystem::is_symlink(At("link")));
    EXPECT_EQ(Whole("real"), BytesOf("new"));
    struct stat status {};
    stat(At("real").c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(DiskFileSystemTest, AGrowingFileHoldsWhatIsAppendedAtOnce) {
    const auto file = files_.Create(At("Dump.tdc"));
    EXPECT_EQ(Whole("Dump.tdc"), BytesOf(""));
    file->Append(BytesOf("T"));
    EXPECT_EQ(Whole("Dump.tdc"), BytesOf("T"));
    file->Append(BytesOf(",001\r\n"));
    EXPECT_EQ(Whole("Dump.tdc"), BytesOf("T,001\r\n"));
    file->Close();
    EXPECT_ERROR(FileAlreadyExists, files_.Create(At("DUMP.tdc")));
    EXPECT_ERROR(PathNotFound, files_.Create(At("none/Dump.tdc")));
    EXPECT_EQ(Whole("Dump.tdc"), BytesOf("T,001\r\n"));
}

TEST_F(DiskFileSystemTest, AGrowingFileTellsOfAFullDiskAtOnce) {
    const auto file = files_.Create(At("Dump.tdc"));
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const auto whole = ErrorOf([&] { file->Append(BytesOf("T,01")); });
    const auto beyond = ErrorOf([&] { file->Append(BytesOf("2")); });
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(whole, std::nullopt);
    EXPECT_EQ(beyond, ErrorNumber::DiskFull);
}

TEST_F(DiskFileSystemTest, SettingsFolderFollowsTheEnvironmentAndPermissions) {
    unsetenv("VANTOR_PROGRAM_FOLDER");
    EXPECT_EQ(DiskFileSystem(folder_).SettingsFolder(), folder_);
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    EXPECT_EQ(DiskFileSystem("/proc/none/").SettingsFolder(), folder_ + "vantor/");
    setenv("VANTOR_PROGRAM_FOLDER", "/portable", 1);
    EXPECT_EQ(DiskFileSystem(folder_).SettingsFolder(), "/portable/");
    unsetenv("VANTOR_PROGRAM_FOLDER");
    // Whoever may write into the folder of an installed program has settings of his own all the same.
    for (const char* folder : {"bin", "share/vantor"}) files_.CreateFolder(At(folder));
    Put("share/vantor/VANTOR.HLP", "");
    EXPECT_EQ(DiskFileSystem(At("bin/")).SettingsFolder(), folder_ + "vantor/");
    Put("bin/VANTOR.HLP", "");
    EXPECT_EQ(DiskFileSystem(At("bin/")).SettingsFolder(), folder_ + "bin/");
}

TEST_F(DiskFileSystemTest, FindsFilesOfTheProgramWhereverItIsInstalled) {
    setenv("VANTOR_PROGRAM_FOLDER", (folder_ + "own").c_str(), 1);
    DiskFileSystem files(folder_ + "bin/");
    unsetenv("VANTOR_PROGRAM_FOLDER");
    EXPECT_EQ(files.ProgramFile("VANTOR.HLP"), folder_ + "own/VANTOR.HLP");
    for (const char* place : {"bin/../share/vantor/", "bin/", "own/"}) {
        files.CreateFolder(folder_ + "bin");
        files.CreateFolder(folder_ + place);
        WriteFile(files, folder_ + place + "VANTOR.HLP", {}, Expected::Nothing());
        EXPECT_EQ(files.ProgramFile("VANTOR.HLP"), folder_ + place + "VANTOR.HLP");
    }
}

}  // namespace
}  // namespace vantor
