#include "counter/CounterDownload.h"

#include <gmock/gmock.h>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string FieldData = Native("/start/Field Data Files/");
const std::string First = FieldData + "!Kestrel-03-14-08-1.tdc";
const std::string EndMark(20, ':');

class CounterDownloadTest : public testing::Test {
protected:
    CounterDownloadTest() {
        Program.State.Settings.CommPort = 3;
        Program.State.Settings.BaudRate = 19200;
    }

    CounterDownload New() { return {Program.State, Program.Files, Program.Serial, Program.Time, Program.End}; }
    /// The port's events reach the download, as they do in the window.
    void Listen(CounterDownload& download) {
        Program.Serial.OnEvent = [&download](SerialEvent event) { download.TakeEvent(event); };
    }
    void Begin(CounterDownload& download) {
        Listen(download);
        download.Begin();
    }
    void ExpectNothingLeft(const CounterDownload& download) {
        EXPECT_EQ(download.Stage(), DownloadStage::Closed);
        EXPECT_FALSE(Program.Serial.Opened);
        EXPECT_EQ(download.FilePath(), "");
        EXPECT_THAT(Program.Files.AllFiles(), IsEmpty());
        EXPECT_FALSE(Program.State.CounterFileChosen);
    }

    TestProgram Program;
};

TEST_F(CounterDownloadTest, NamesTheFileAfterTheDayAndIncrementsTheLastDigitAlone) {
    struct Case {
        std::vector<std::string> There;
        std::string Next;
    };
    std::vector<std::string> upTo9;
    for (int i = 1; i <= 9; ++i) upTo9.push_back("-" + std::to_string(i));
    std::vector<std::string> upTo19 = upTo9;
    for (int i = 10; i <= 19; ++i) upTo19.push_back("-" + std::to_string(i));
    for (const Case& at : {Case{{}, "-1"}, Case{{"-1"}, "-2"}, Case{{"-2"}, "-1"}, Case{upTo9, "-10"},
                           Case{upTo19, "-110"}, Case{{"-1", "-3"}, "-2"}}) {
        TestProgram program;
        program.Time.Moment = Date{39521.99};
        for (const std::string& name : at.There)
            program.Files.PutText(FieldData + "!KESTREL-03-14-08" + name + ".TDC", "");
        CounterDownload download(program.State, program.Files, program.Serial, program.Time, program.End);
        download.Begin();
        EXPECT_EQ(download.FilePath(), FieldData + "!Kestrel-03-14-08" + at.Next + ".tdc");
    }
}

TEST_F(CounterDownloadTest, KeepsEveryByteButControlCharacters) {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    CounterDownload download = New();
    Begin(download);
    EXPECT_EQ(Program.Serial.Number, 3);
    EXPECT_EQ(Program.Serial.Settings, "19200,n,8,1");

    Program.Serial.Send(std::string("\x11\x13\0\t", 4));
    EXPECT_EQ(download.Stage(), DownloadStage::Waiting);
    EXPECT_EQ(Program.Files.Bytes(First), BytesOf(""));
    Program.Serial.Send(all);
    EXPECT_EQ(download.Stage(), DownloadStage::Receiving);
    EXPECT_EQ(Program.Files.Bytes(First), BytesOf("\n\r" + all.substr(32)));
}

TEST_F(CounterDownloadTest, FindsTheEndMarkHoweverItIsSplit) {
    for (std::size_t at = 0; at <= EndMark.size(); ++at) {
        CounterDownload download = New();
        Begin(download);
        Program.Serial.Send("T,1\r\n" + EndMark.substr(0, at));
        EXPECT_EQ(download.Finish(), at == EndMark.size());
        Program.Serial.Send("\x13" + EndMark.substr(at) + "\r\n");
        EXPECT_EQ(download.Finish(), at < EndMark.size()) << at;
        const std::string tail = at == EndMark.size() ? "" : "\r\n";
        EXPECT_EQ(Program.Files.Bytes(First), BytesOf("T,1\r\n" + EndMark + tail));
        Program.Files.Delete(First);
    }
}

TEST_F(CounterDownloadTest, LooksAtTheLastThirtyCharacters) {
    CounterDownload download = New();
    Begin(download);
    for (const auto& [sent, isEnd] : {std::pair<std::string, bool>{EndMark.substr(1), false},
                                      {"," + EndMark.substr(1) + "," + EndMark.substr(1), false},
                                      {EndMark + "12345678901", false},
                                      {EndMark + "1234567890", true}}) {
        Program.Serial.Send(" " + sent);
        EXPECT_EQ(download.Finish(), isEnd) << sent;
    }
}

TEST_F(CounterDownloadTest, HandsTheWholeFileOver) {
    Program.State.Paths.FieldDataPath = Native("/start/Field Data Files");
    CounterDownload download = New();
    download.SetPortNumber(1);
    download.SetBaudRate(4800);
    Begin(download);
    EXPECT_FALSE(download.Finish());
    Program.Serial.Send(EndMark);
    ASSERT_TRUE(download.Finish());
    EXPECT_EQ(Program.Serial.Settings, "4800,n,8,1");
    EXPECT_FALSE(Program.Serial.Opened);
    EXPECT_TRUE(Program.State.CounterFileChosen);
    EXPECT_EQ(Program.State.ChosenCounterFileFolder, FieldData);
    EXPECT_EQ(Program.State.ChosenCounterFileName, "!Kestrel-03-14-08-1");
    EXPECT_EQ(Program.State.Settings.CommPort, 1);
    EXPECT_EQ(Program.State.Settings.BaudRate, 4800);
    EXPECT_FALSE(download.Finish());
    download.Cancel();
    EXPECT_TRUE(Program.Files.Bytes(First));

    Begin(download);
    EXPECT_EQ(download.FilePath(), FieldData + "!Kestrel-03-14-08-2.tdc");
    Program.Serial.Send("one");
    EXPECT_FALSE(download.Finish()) << "the end mark of the first dump does not end the second";
    download.Cancel();
    EXPECT_THAT(Program.Files.AllFiles(), ElementsAre("/start/Field Data Files/!Kestrel-03-14-08-1.tdc"));
    EXPECT_EQ(Program.State.Settings.CommPort, 1);
}

TEST_F(CounterDownloadTest, ABeginThatFailsLeavesNothing) {
    CounterDownload download = New();
    download.SetPortNumber(5);
    EXPECT_ERROR(InvalidPortNumber, download.Begin());
    ExpectNothingLeft(download);

    download.SetPortNumber(3);
    Program.State.Paths.FieldDataPath = "/start/None/";
    EXPECT_ERROR(PathNotFound, download.Begin());
    ExpectNothingLeft(download);
    EXPECT_THAT(Program.Serial.Tried, ElementsAre(5));
}

TEST_F(CounterDownloadTest, LostDataEndsTheApplicationWithoutAFile) {
    for (const SerialEvent loss : {SerialEvent::Overrun, SerialEvent::ReceiveBufferOverflow})
        for (const char* received : {"", "T,001,0"}) {
            CounterDownload download = New();
            Begin(download);
            Program.Serial.Send(received);
            try {
                Program.Serial.Raise(loss);
                ADD_FAILURE() << "the application goes on";
            } catch (const ApplicationEnded& ended) {
                EXPECT_EQ(ended.Fault.File, First);
            }
            ExpectNothingLeft(download);
        }

    CounterDownload download = New();
    Begin(download);
    Program.Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    EXPECT_THROW(Program.Serial.Raise(SerialEvent::Overrun), ApplicationEnded) << "the file cannot be deleted";
}

TEST_F(CounterDownloadTest, AnotherEventIsIgnored) {
    CounterDownload download = New();
    Begin(download);
    Program.Serial.OnEvent = nullptr;
    Program.Serial.Send("T");
    download.TakeEvent(static_cast<SerialEvent>(5));
    EXPECT_EQ(download.Stage(), DownloadStage::Waiting);
    download.TakeEvent(SerialEvent::Received);
    EXPECT_EQ(download.Stage(), DownloadStage::Receiving);
}

TEST_F(CounterDownloadTest, ADeviceThatIsGoneCancels) {
    CounterDownload download = New();
    Begin(download);
    EXPECT_ERROR(DeviceIoError, Program.Serial.Unplug());
    ExpectNothingLeft(download);
    Begin(download);
    Program.Serial.Send("T,001");
    EXPECT_ERROR(DeviceIoError, Program.Serial.Unplug());
    ExpectNothingLeft(download);

    Begin(download);
    Program.Serial.Send("T,001" + EndMark);
    Program.Serial.Unplug();
    EXPECT_TRUE(download.Finish()) << "all of the dump had arrived";
    EXPECT_EQ(Program.Files.Bytes(First), BytesOf("T,001" + EndMark));
}

TEST_F(CounterDownloadTest, AFullDiskCancels) {
    CounterDownload download = New();
    for (const int whole : {0, 1, 2}) {  // the first and the second piece, and the last flush
        Begin(download);
        Program.Files.FailChangeAfter(whole, ErrorNumber::DiskFull);
        const auto receive = [&] {
            Program.Serial.Send("T,001");
            Program.Serial.Send(EndMark);
            download.Finish();
        };
        EXPECT_ERROR(DiskFull, receive());
        ExpectNothingLeft(download);
    }
}

}  // namespace
}  // namespace vantor
