#include <gtest/gtest.h>

#include <deque>

#include "fakes/FakeRemoteApi.h"
#include "fakes/MemoryFileSystem.h"
#include "gpsobd/clsPPCFileTransfer.h"
#include "gpsobd/modWinCERAPIConnectionHandler.h"

namespace vantor {
namespace {

const std::string DevicePath = "\\Program Files\\Roampad\\GPSData.pdb";
const std::string DesktopPath = "/field/GPSData.pdb";

class FileTransferTest : public testing::Test {
protected:
    FileTransferTest() { Files.CreateFolder("/field"); }

    HandheldState State;
    FakeRemoteApi Api;
    MemoryFileSystem Files;
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

    Transfer.Terminate();
    Transfer.Terminate();
    EXPECT_EQ(Api.CountOf("CeRapiUninit"), 1);
    EXPECT_TRUE(Transfer.Initialize());
}

TEST_F(FileTransferTest, InitializeFailsAtEachStepAndEndsTheAttempt) {
    struct Fault {
        std::string Failing, Throwing;
        std::int32_t LateResult;
    };
    for (const Fault& fault : std::vector<Fault>{{"CeRapiInitEx", "", 0},
                                                 {"WaitForSingleObject", "", 0},  // an answer after 10 seconds
                                                 {"", "", -5},
                                                 {"", "CeRapiInitEx", 0},
                                                 {"", "WaitForSingleObject", 0}}) {
        HandheldState state;
        state.ConnectedResult = true;
        FakeRemoteApi api;
        api.Failing = fault.Failing;
        api.Throwing = fault.Throwing;
        api.LateResult = fault.LateResult;
        clsPPCFileTransfer transfer(state, api, Files);
        EXPECT_FALSE(transfer.Initialize()) << fault.Failing << fault.Throwing;
        EXPECT_FALSE(state.ConnectedResult);
        EXPECT_FALSE(state.ConnectionOpen);
        EXPECT_EQ(api.CountOf("CeRapiUninit"), 1) << fault.Failing << fault.Throwing;
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

TEST_F(FileTransferTest, CopyToDesktopFailuresHaveTheirCodes) {
    EXPECT_EQ(Transfer.CopyToDesktop(DevicePath, DesktopPath, true), 6);
    EXPECT_EQ(State.TransferResult, 6);
    EXPECT_TRUE(Api.Calls.empty());

    struct Fault {
        std::string Failing;
        std::int32_t ReportedError, Result;
    };
    for (const Fault& fault : std::vector<Fault>{{"CeCreateFile", 0, 1},
                                                 {"CeCreateFile", -9, 6},
                                                 {"CeGetFileSize", 0, 1},
                                                 {"CeGetFileSize", -9, 6},
                                                 {"CeReadFile", 0, 1},
                                                 {"CeReadFile", -9, 6}}) {
        Api = {};
        Api.Files[DevicePath] = BytesOf("log");
        Transfer.Initialize();
        Api.Failing = fault.Failing;
        Api.ReportedError = fault.ReportedError;
        EXPECT_EQ(Transfer.CopyToDesktop(DevicePath, DesktopPath, true), fault.Result) << fault.Failing;
        EXPECT_EQ(State.TransferResult, fault.Result);
        ExpectEnded();
        EXPECT_FALSE(Files.Bytes(DesktopPath)) << fault.Failing;
    }
}

TEST_F(FileTransferTest, AFullDesktopDiskKeepsTheOldLog) {
    Api.Files[DevicePath] = BytesOf("log");
    Files.PutText(DesktopPath, "old");
    Transfer.Initialize();
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_EQ(Transfer.CopyToDesktop(DevicePath, DesktopPath, true), 5);
    EXPECT_EQ(Files.Bytes(DesktopPath), BytesOf("old"));
    ExpectEnded();
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

TEST_F(FileTransferTest, CopyToDeviceFailuresHaveTheirCodes) {
    EXPECT_EQ(Transfer.CopyToDevice(DesktopPath, DevicePath, true), 6);
    EXPECT_TRUE(Api.Calls.empty());

    struct Fault {
        std::string Failing, Desktop;
        bool Overwrite;
        std::int32_t ReportedError, Result;
    };
    const std::string whole(60, 'x');
    for (const Fault& fault : std::vector<Fault>{{"CeFindFirstFile", whole, false, -9, 6},
                                                 {"", "none", true, 0, 1},
                                                 {"CeCreateFile", whole, true, 0, 7},
                                                 {"CeCreateFile", whole, true, -9, 6},
                                                 {"", "", true, 0, 2},
                                                 {"CeWriteFile", whole, true, 0, 5},
                                                 {"CeWriteFile", whole, true, -9, 6}}) {
        Api = {};
        Files.PutText(DesktopPath, fault.Desktop);
        if (fault.Desktop == "none") Files.Delete(DesktopPath);
        Transfer.Initialize();
        Api.Failing = fault.Failing;
        Api.CallsBeforeFailure = fault.Failing == "CeWriteFile" ? 2 : 0;
        Api.ReportedError = fault.ReportedError;
        EXPECT_EQ(Transfer.CopyToDevice(DesktopPath, DevicePath, fault.Overwrite), fault.Result) << fault.Failing;
        ExpectEnded();
        const int writes = fault.Failing == "CeWriteFile" ? 3 : 0;
        EXPECT_EQ(Api.CountOf("CeWriteFile"), writes) << "stops at the first failure";
    }
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
