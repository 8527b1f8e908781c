#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "platform/DiskFolder.h"

namespace {

/// Which calls of one kind fail, counted from 0, and how.
struct SystemFault {
    std::string_view Call;
    int First = 0;
    int Count = 1;
    int Error = EIO;
};
std::map<std::string_view, SystemFault> faults;
std::time_t secondsAhead = 0;

bool Fails(std::string_view call) {
    const auto fault = faults.find(call);
    if (fault == faults.end() || fault->second.First-- > 0 || fault->second.Count-- <= 0) return false;
    errno = fault->second.Error;
    return true;
}

}  // namespace

// This program's own calls to the system, in place of the library's.
extern "C" {
int rename(const char* from, const char* to) noexcept {
    return Fails("rename") ? -1 : renameat(AT_FDCWD, from, AT_FDCWD, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    return Fails("rename") ? -1 : static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}
int link(const char* from, const char* to) noexcept {
    return Fails("link") ? -1 : linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}
int remove(const char* path) noexcept {
    if (Fails("remove")) return -1;
    return unlinkat(AT_FDCWD, path, 0) == 0 ? 0 : unlinkat(AT_FDCWD, path, errno == EISDIR ? AT_REMOVEDIR : 0);
}
int fsync(int descriptor) { return Fails("fsync") ? -1 : static_cast<int>(syscall(SYS_fsync, descriptor)); }
std::time_t time(std::time_t* into) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (into != nullptr) *into = now.tv_sec + secondsAhead;
    return now.tv_sec + secondsAhead;
}
}

namespace vantor {
namespace {

class DiskFaultsTest : public testing::Test, protected DiskFolder {
protected:
    ~DiskFaultsTest() override {
        faults.clear();
        secondsAhead = 0;
    }
    static void Fail(const SystemFault& fault) { faults[fault.Call] = fault; }
    /// A process that has begun a batch and then does `rest`.
    template <class Rest>
    pid_t Writer(Rest rest) {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            const auto batch = Disk.BeginWrites();
            batch->Add(At("a"), BytesOf("half"), Expected::Nothing());
            close(ready[1]);
            rest();
            std::_Exit(0);
        }
        close(ready[1]);
        char none = 0;
        EXPECT_EQ(read(ready[0], &none, 1), 0);
        close(ready[0]);
        return child;
    }
    /// What is left after a program that is started now has written into the folder.
    std::size_t LeftAfterAWrite() {
        DiskFileSystem later("/");
        WriteFile(later, At("b"), BytesOf("b"), AsItStands(later, At("b")));
        std::size_t left = 0;
        for (const auto& [name, text] : Found()) left += name.ends_with(".tmp") ? 1 : 0;
        return left;
    }
};

TEST_F(DiskFaultsTest, ABatchIsStoredWholeOrNotAtAll) {
    for (const bool hasHardLinks : {true, false}) {
        SCOPED_TRACE(hasHardLinks ? "hard links" : "no hard links");
        Texts old{{"old1", "first"}, {"old2", "second"}};
        for (const auto& [name, text] : old) Put(name, text);
        int failing = 0;
        for (bool isStored = false; !isStored; ++failing) {
            ASSERT_LT(failing, 9);
            if (!hasHardLinks) Fail({"link", 0, 99, EPERM});
            Fail({"rename", failing});
            const auto error = ErrorOf([&] {
                const auto batch = Disk.BeginWrites();
                for (const char* name : {"new1", "old1", "new2", "old2"})
                    batch->Add(At(name), BytesOf("replaced"), AsItStands(Disk, At(name)));
                batch->Commit();
            });
            isStored = !error;
            if (error) {
                EXPECT_EQ(Found(), old) << "rename " << failing;
            }
        }
        EXPECT_EQ(failing, 5) << "each of the four renames has failed once";
        EXPECT_EQ(Found(),
                  (Texts{{"new1", "replaced"}, {"new2", "replaced"}, {"old1", "replaced"}, {"old2", "replaced"}}));
        faults.clear();
        for (const char* name : {"new1", "new2"}) Disk.Delete(At(name));
    }
}

TEST_F(DiskFaultsTest, AnErrorMeansThatNothingWasDone) {
    Put("a", "old");
    Fail({"fsync", 0});
    EXPECT_ERROR(DeviceIoError, Put("a", "new"));
    EXPECT_EQ(Found(), (Texts{{"a", "old"}}));
    // The second flush is the folder's; the file is in place by then.
    Fail({"fsync", 1});
    Put("a", "new");
    EXPECT_EQ(Found(), (Texts{{"a", "new"}}));
    Fail({"fsync", 0});
    Disk.Rename(At("a"), At("b"));
    EXPECT_EQ(Found(), (Texts{{"b", "new"}}));
    Fail({"rename", 0, 1, EACCES});
    EXPECT_ERROR(PermissionDenied, Disk.Rename(At("b"), At("c")));
    EXPECT_EQ(Found(), (Texts{{"b", "new"}}));
}

TEST_F(DiskFaultsTest, ADiskThatCannotRenameWithoutReplacingReplacesNothing) {
    for (const bool hasHardLinks : {true, false}) {
        Put("a", "text");
        if (!hasHardLinks) Fail({"link", 0, 99, EPERM});
        Fail({"rename", 0, 1, EINVAL});
        Disk.Rename(At("a"), At("b"));
        Put("a", "new");
        Fail({"rename", 0, 1, EINVAL});
        EXPECT_ERROR(FileAlreadyExists, WriteFile(Disk, At("b"), BytesOf("mine"), Expected::Nothing()));
        EXPECT_EQ(Found(), (Texts{{"a", "new"}, {"b", "text"}}));
        faults.clear();
        Disk.Delete(At("b"));
    }
}

TEST_F(DiskFaultsTest, RenamesOntoAnotherDisk) {
    Put("a", "text");
    Fail({"rename", 0, 1, EXDEV});
    Disk.Rename(At("a"), At("b"));
    EXPECT_EQ(Found(), (Texts{{"b", "text"}}));
    Fail({"rename", 0, 1, EXDEV});
    Fail({"remove", 0, 1, EACCES});
    EXPECT_ERROR(PermissionDenied, Disk.Rename(At("b"), At("c")));
    EXPECT_EQ(Found(), (Texts{{"b", "text"}}));
    Fail({"rename", 0, 2, EXDEV});
    EXPECT_TRUE(ErrorOf([&] { Disk.Rename(At("b"), At("c")); })) << "the copy cannot be stored";
    EXPECT_EQ(Found(), (Texts{{"b", "text"}}));
}

TEST_F(DiskFaultsTest, FilesAreRenamedAllOrNone) {
    const Texts old{{"a", "first"}, {"b", "second"}, {"c", "third"}};
    for (const auto& [name, text] : old) Put(name, text);
    const auto rename = [&](const std::vector<std::pair<const char*, const char*>>& names, std::uint64_t asks = 99) {
        std::vector<FileMove> moves;
        for (const auto& [from, to] : names) moves.push_back({At(from), At(to)});
        return Disk.RenameAll(moves, Progress([&](double) { return asks-- > 0; }));
    };
    EXPECT_ERROR(FileAlreadyExists, rename({{"a", "x"}, {"b", "C"}}));
    EXPECT_ERROR(FileAlreadyExists, rename({{"a", "x"}, {"b", "X"}}));
    Fail({"rename", 1, 1, EACCES});
    EXPECT_ERROR(PermissionDenied, rename({{"a", "x"}, {"b", "y"}}));
    EXPECT_FALSE(rename({{"a", "x"}, {"b", "y"}}, 1));
    EXPECT_EQ(Found(), old);
    EXPECT_TRUE(rename({{"a", "A"}, {"b", "x"}, {"c", "b"}}));
    EXPECT_EQ(Found(), (Texts{{"A", "first"}, {"b", "third"}, {"x", "second"}}));
}

TEST_F(DiskFaultsTest, OnlyLeftoversOfProgramsThatEndedAreRemoved) {
    constexpr std::time_t Day = 24 * 60 * 60;
    Put(".vantor-notes.tmp", "the user's");
    const std::string ofOtherComputer = ".vantor-0badcafe-999999-1.tmp";
    Put(ofOtherComputer, "being written");
    const pid_t killed = Writer([] {});
    waitpid(killed, nullptr, 0);
    const pid_t writing = Writer([] { pause(); });
    EXPECT_EQ(LeftAfterAWrite(), 3U) << "of the one that was killed nothing is left";
    EXPECT_EQ(Found().count(ofOtherComputer), 1U) << "a writer on another computer may be alive";
    secondsAhead = Day + 60;
    EXPECT_EQ(LeftAfterAWrite(), 2U);
    kill(writing, SIGKILL);
    waitpid(writing, nullptr, 0);
    EXPECT_EQ(LeftAfterAWrite(), 1U);
    EXPECT_EQ(Found().count(".vantor-notes.tmp"), 1U);
}

TEST_F(DiskFaultsTest, ALeftoverIsNotTakenForAFileOfTheBatch) {
    // The process has had the number of this one.
    const auto first = [&] {
        const auto batch = Disk.BeginWrites();
        batch->Add(At("a"), {}, Expected::Nothing());
        return Found().begin()->first;
    }();
    const int number = std::stoi(first.substr(first.rfind('-') + 1));
    const std::string leftover = first.substr(0, first.rfind('-') + 1) + std::to_string(number + 1) + ".tmp";
    std::ofstream(At(leftover)).close();
    Put("a", "text");
    EXPECT_EQ(Found(), (Texts{{leftover, ""}, {"a", "text"}}));
}

}  // namespace
}  // namespace vantor
