#include <gtest/gtest.h>

#include <deque>

#include "fakes/FakePorts.h"
#include "gpsobd/DeviceCopy.h"
#include "gpsobd/clsPPCFileTransfer.h"
#include "gpsobd/modWinCERAPIConnectionHandler.h"

namespace vantor {
namespace {

const std::string DevicePath = "\\Program Files\\Roampad\\GPSData.pdb";
const std::string DesktopPath = "/field/GPSData.pdb";

class FileTransferTest : public testing::Test {
protected:
    FileTransferTest() { Files.CreateFolder("/field"); }

    TestProgram Program;
    HandheldState& State = Program.State.Handheld;
    FakeRemoteApi& Api = Program.Device;
    MemoryFileSystem& Files = Program.Files;
    clsPPCFileTransfer Transfer{State, Api, Files};

    /// The failure ended the connection and left no handle behind.
    void ExpectEnded() const {
        EXPECT_FALSE(State.ConnectionOpen);
        EXPECT_EQ(Api.CountOf("CeRapiUninit"), 1);
        const auto closed = std::find(Api.Calls.begin(), Api.Calls.end(), "CeRapiUninit");
        EXPECT_EQ(std::find(closed, Api.Calls.end(), "CeCloseHandle"), Api.Calls.end()) << "closed after the end";
        const bool opened = Api.CountOf("CeCreateFile") > 0 && Api.Failing != "CeCreateFile";
        EXPECT_LE(Api.CountOf("CeCloseHandle"), opened ? 1 : 0);
    }
};

TEST_F(FileTransferTest, InitializeConnectsOnceUntilTerminate) {
    EXPECT_TRUE(Transfer.Initialize());
    EXPECT_TRUE(State.ConnectedResult);
    EXPECT_EQ(State.InitRecord.Size, 12u);
    EXPECT_FALSE(Transfer.Initialize());
    EXPECT_FALSE(State.ConnectedResult);
    EXPECT_TRUE(State.ConnectionOpen);
    EXPECT_EQ(Api.CountOf("CeRapiInitEx"), 1);
    for (int time = 0; time < 2; ++time) Transfer.Terminate();
    EXPECT_EQ(Api.CountOf("CeRapiUninit"), 1);
    EXPECT_TRUE(Transfer.Initialize());
}

TEST_F(FileTransferTest, InitializeFailsAtEachStepAndEndsTheAttempt) {
    const std::function<void()> faults[] = {[&] { Api.Failing = "CeRapiInitEx"; },
                                            [&] { Api.Failing = "WaitForSingleObject"; },  // an answer after 10 seconds
                                            [&] { Api.LateResult = -5; }, [&] { Api.Throwing = "CeRapiInitEx"; },
                                            [&] { Api.Throwing = "WaitForSingleObject"; }};
    for (const auto& fault : faults) {
        Api = {};
        fault();
        SCOPED_TRACE(Api.Failing + "|" + Api.Throwing);
        State.ConnectedResult = true;
        EXPECT_FALSE(Transfer.Initialize());
        EXPECT_FALSE(State.ConnectedResult);
        ExpectEnded();
    }
    Api.Throwing = "CeRapiUninit";
    Api.Failing = "CeRapiInitEx";
    EXPECT_FALSE(Transfer.Initialize());
}

TEST_F(FileTransferTest, CopiesToTheDesktopAndStaysConnected) {
    Api.Files[DevicePath] = BytesOf("whole log");
    Files.PutText(DesktopPath, "an older and longer log");
    Transfer.Initialize();
    EXPECT_EQ(Transfer.CopyToDesktop(DevicePath, DesktopPath, true), 0);
    EXPECT_EQ(Files.Bytes(DesktopPath), BytesOf("whole log"));
    EXPECT_TRUE(State.ConnectionOpen);
    EXPECT_EQ(Api.OpenHandles(), 0u);
    EXPECT_EQ(Api.CountOf("CeReadFile"), 1);
}

TEST_F(FileTransferTest, NothingIsOverwrittenUnasked) {
    Api.Files[DevicePath] = BytesOf("on the device");
    Files.PutText(DesktopPath, "on the desktop");
    Transfer.Initialize();
    Api.Calls.clear();
    EXPECT_EQ(Transfer.CopyToDesktop(DevicePath, DesktopPath, false), 4);
    EXPECT_EQ(Api.Calls, std::vector<std::string>{"CeRapiUninit"});

    Transfer.Initialize();
    Api.Calls.clear();
    EXPECT_EQ(Transfer.CopyToDevice(DesktopPath, DevicePath, false), 4);
    EXPECT_EQ(Api.Calls, (std::vector<std::string>{"CeFindFirstFile", "CeCloseHandle", "CeRapiUninit"}));
    EXPECT_EQ(Api.Files[DevicePath], BytesOf("on the device"));
    EXPECT_EQ(State.TransferResult, 4) << "of CopyToDesktop alone";
}

TEST_F(FileTransferTest, CopiesToTheDeviceInPieces) {
    struct Case {
        std::size_t Length, Pieces, Size, Last;
    };
    // A twentieth of the length, halves to even; 0 is the whole length.
    for (const Case& expected :
         {Case{19, 19, 1, 1}, Case{30, 15, 2, 2}, Case{50, 25, 2, 2}, Case{10, 1, 10, 10}, Case{70, 18, 4, 2}}) {
        Api = {};
        std::string text;
        while (text.size() < expected.Length) text += static_cast<char>('a' + text.size() % 26);
        Files.PutText(DesktopPath, text);
        Transfer.Terminate();
        Transfer.Initialize();
        EXPECT_EQ(Transfer.CopyToDevice(DesktopPath, DevicePath, false), 0);
        std::vector<std::size_t> pieces(expected.Pieces, expected.Size);
        pieces.back() = expected.Last;
        EXPECT_EQ(Api.Pieces, pieces) << expected.Length;
        EXPECT_EQ(Api.Files[DevicePath], BytesOf(text));
        EXPECT_TRUE(State.ConnectionOpen);
        EXPECT_EQ(Api.OpenHandles(), 1u) << "the caller ends it with Terminate";
    }
}

TEST_F(FileTransferTest, FailuresHaveTheirCodes) {
    const auto toDesktop = [&] {
        const std::int32_t result = Transfer.CopyToDesktop(DevicePath, DesktopPath, true);
        EXPECT_EQ(State.TransferResult, result);
        return result;
    };
    const auto toDevice = [&] { return Transfer.CopyToDevice(DesktopPath, DevicePath, true); };
    EXPECT_EQ(toDesktop(), 6);
    EXPECT_EQ(toDevice(), 6);
    EXPECT_TRUE(Api.Calls.empty());

    const std::string whole(60, 'x');
    Files.PutText(DesktopPath, whole);
    const auto expectFailure = [&](std::int32_t result, const std::function<std::int32_t()>& copy,
                                   const std::string& failing = {}, std::int32_t reportedError = 0) {
        SCOPED_TRACE(failing);
        Api = {};
        Api.Files[DevicePath] = BytesOf("log");
        Transfer.Initialize();
        Api.Failing = failing;
        Api.CallsBeforeFailure = failing == "CeWriteFile" ? 2 : 0;
        Api.ReportedError = reportedError;
        EXPECT_EQ(copy(), result);
        ExpectEnded();
    };
    for (const std::int32_t reported : {0, -9}) {
        const auto unlessReported = [&](std::int32_t result) { return reported == 0 ? result : 6; };
        for (const char* call : {"CeCreateFile", "CeGetFileSize", "CeReadFile"})
            expectFailure(unlessReported(1), toDesktop, call, reported);
        expectFailure(unlessReported(7), toDevice, "CeCreateFile", reported);
        expectFailure(unlessReported(5), toDevice, "CeWriteFile", reported);
        EXPECT_EQ(Api.CountOf("CeWriteFile"), 3) << "stops at the first failure";
    }
    const auto toNewOne = [&] { return Transfer.CopyToDevice(DesktopPath, "\\new.pdb", false); };
    expectFailure(6, toNewOne, "CeFindFirstFile", -9);
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    expectFailure(5, toDesktop);
    EXPECT_EQ(Files.Bytes(DesktopPath), BytesOf(whole));
    Files.PutText(DesktopPath, "");
    expectFailure(2, toDevice);
    Files.Delete(DesktopPath);
    expectFailure(1, toDevice);
}

/// Answers every question with Yes.
class PromptRecorder : public MessageBoxes {
public:
    std::string Told;
    MessageAnswer Ask(const Prompt& prompt) override {
        EXPECT_EQ(prompt.Icon, MessageIcon::Warning);
        Told += "[" + prompt.Title + "]" + prompt.Text;
        return prompt.Buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
    }
};

TEST_F(FileTransferTest, TheDatabaseIsCopiedIntoItsFolderOrWhyNotIsTold) {
    PromptRecorder messages;
    TestProgram& of = Program;
    AppContext context{
        of.State,  Files, messages,     of.OtherScreens, of.DesktopServices, of.Time,          of.End,  of.Memory,
        of.Serial, Api,   of.Databases, of.Sheets,       of.Documents,       of.OtherPrograms, of.Work, of.Tiles};
    const LogDevice device{"Roampad", "GPSData.pdb"};
    int delays = 0;
    const auto copy = [&] { CopyFromDevice(context, device, "/field/", [&](int time) { delays += time; }); };
    EXPECT_TRUE(WantsDeviceCopy(messages, device));
    Api.Failing = "CeRapiInitEx";
    copy();
    Api.Failing.clear();
    copy();  // the device has no such file
    EXPECT_EQ(messages.Told,
              "[Pocket-PC Data Transfer Alert]If you wish to have Vantor copy \nRoampad database files into your \n"
              "selected field data folder, place \nyour Pocket-PC device in its cradle now \n& click Yes. Otherwise, "
              "click No.\n[Error Connecting to PDA]Cannot connect with PDA.\nCheck that PDA is in cradle and turned "
              "on.\nAlso check that Active Sync is running.\nIf problem continues, contact Technical Support.\n[Error "
              "Copying Files] Error number 1 detected. Contact Technical Support for help.");
    EXPECT_EQ(delays, 0);
    Api.Files[DevicePath] = BytesOf("new");
    Files.PutText(DesktopPath, "old");
    for (int time = 0; time < 2; ++time) copy();  // the connection is free again for the second
    EXPECT_EQ(delays, 2000);
    EXPECT_FALSE(State.ConnectionOpen);
    EXPECT_EQ(Files.Bytes(DesktopPath), BytesOf("new"));
    EXPECT_EQ(Files.Bytes(DesktopPath + ".bak"), BytesOf("old"));
    EXPECT_EQ(Files.AllFiles().size(), 2U) << "the second copy brought nothing new";
}

TEST(DelayXMsecTest, WaitsUntilStrictlyPastASinglePrecisionTarget) {
    // 50000.1 is 50000.1015625 in single precision.
    std::deque<double> times{50000.0, 50000.1, 50000.1015, 50000.1015625, 50000.1016};
    int events = 0;
    const auto timer = [&] {
        const double now = times.front();
        times.pop_front();
        return now;
    };
    DelayXMsec(100, timer, [&] { ++events; });
    EXPECT_TRUE(times.empty());
    EXPECT_EQ(events, 4);

    // The timer restarts at midnight, and the wait goes on all day.
    times = {86399.5, 0.0, 40000.0, 86399.9, 86401.0};
    DelayXMsec(1000, timer, [] {});
    EXPECT_TRUE(times.empty());
}

}  // namespace
}  // namespace vantor
