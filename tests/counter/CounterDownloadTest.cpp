#include "counter/CounterDownload.h"

#include <gmock/gmock.h>

#include <numeric>

#include "CounterTexts.h"
#include "counter/KeptDumps.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;

const std::string FirstOfDay = Native("/start/Field Data Files/") + "!Kestrel-03-14-08-";
const std::string First = FirstOfDay + "1.tdc";

class CounterDownloadTest : public testing::Test, protected TestProgram {
protected:
    /// The port's events reach the download, as they do in the window.
    CounterDownloadTest() {
        Serial.OnEvent = [this](SerialEvent event) { Download.TakeEvent(event); };
    }
    void ExpectNothingLeft() {
        EXPECT_EQ(Download.Stage(), DownloadStage::Closed);
        EXPECT_FALSE(Serial.Opened);
        EXPECT_EQ(Download.FilePath(), "");
        EXPECT_EQ(FilesWithExtension(Files, FieldData, ".tdc").size(), 0u);
    }

    CounterDownload Download{State, Files, Serial, Time, End};
};

TEST_F(CounterDownloadTest, NamesTheFileAfterTheDayAndIncrementsTheLastDigitAlone) {
    std::vector<int> upTo9(9), upTo19(19);
    std::iota(upTo9.begin(), upTo9.end(), 1);
    std::iota(upTo19.begin(), upTo19.end(), 1);
    const std::vector<std::pair<std::vector<int>, std::string>> cases = {{{}, "1"},     {{1}, "2"},      {{2}, "1"},
                                                                         {upTo9, "10"}, {upTo19, "110"}, {{1, 3}, "2"}};
    Time.Moment = Date{39521.99};
    for (const auto& [there, next] : cases) {
        for (const int number : there)
            Files.PutText(FieldData + "!KESTREL-03-14-08-" + std::to_string(number) + ".TDC", "");
        Download.Begin();
        EXPECT_EQ(Download.FilePath(), FirstOfDay + next + ".tdc");
        Download.Cancel();
        EXPECT_EQ(Files.AllFiles().size(), there.size());
        for (const std::string& path : Files.AllFiles()) Files.Delete(path);
    }
}

TEST_F(CounterDownloadTest, KeepsEveryByteButControlCharacters) {
    std::string all;
    for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
    Download.Begin();
    EXPECT_EQ(Serial.Number, 1);
    EXPECT_EQ(Serial.Settings, "9600,n,8,1");

    Serial.Send(std::string("\x11\x13\0\t", 4));
    EXPECT_EQ(Download.Stage(), DownloadStage::Waiting);
    EXPECT_EQ(Files.Bytes(First), BytesOf(""));
    const auto listener = std::exchange(Serial.OnEvent, nullptr);
    Serial.Send(all);
    listener(static_cast<SerialEvent>(5));
    EXPECT_EQ(Download.Stage(), DownloadStage::Waiting) << "another event";
    listener(SerialEvent::Received);
    EXPECT_EQ(Download.Stage(), DownloadStage::Receiving);
    EXPECT_EQ(Files.Bytes(First), BytesOf("\n\r" + all.substr(32)));
}

TEST_F(CounterDownloadTest, FindsTheEndMarkHoweverItIsSplit) {
    for (std::size_t at = 0; at <= DumpEnd.size(); ++at) {
        Download.Begin();
        Serial.Send("T,1\r\n" + DumpEnd.substr(0, at));
        EXPECT_EQ(Download.Finish().has_value(), at == DumpEnd.size());
        Serial.Send("\x13" + DumpEnd.substr(at) + "\r\n");
        EXPECT_EQ(Download.Finish().has_value(), at < DumpEnd.size()) << at;
        EXPECT_EQ(Files.Bytes(First), BytesOf("T,1\r\n" + DumpEnd + (at == DumpEnd.size() ? "" : "\r\n")));
        Files.Delete(First);
    }
}

TEST_F(CounterDownloadTest, LooksAtTheLastThirtyCharacters) {
    Download.Begin();
    for (const auto& [sent, isEnd] : {std::pair{DumpEnd.substr(1), false},
                                      {"," + DumpEnd.substr(1) + "," + DumpEnd.substr(1), false},
                                      {DumpEnd + "12345678901", false},
                                      {DumpEnd + "1234567890", true}}) {
        Serial.Send(" " + sent);
        EXPECT_EQ(Download.Finish().has_value(), isEnd) << sent;
    }
}

TEST_F(CounterDownloadTest, HandsTheWholeFileOver) {
    State.Paths.FieldDataPath = Native("/start/Field Data Files");
    Download.SetPortNumber(3);
    Download.SetBaudRate(4800);
    Download.Begin();
    EXPECT_EQ(Download.Finish(), std::nullopt);
    Serial.Send(DumpEnd);
    EXPECT_EQ(Download.Finish(), (CounterFileChoice{Native("/start/Field Data Files/"), "!Kestrel-03-14-08-1"}));
    EXPECT_EQ(Serial.Settings, "4800,n,8,1");
    EXPECT_FALSE(Serial.Opened);
    EXPECT_EQ(State.Settings.CommPort, 3);
    EXPECT_EQ(State.Settings.BaudRate, 4800);
    EXPECT_EQ(Download.Finish(), std::nullopt);
    Download.Cancel();

    Download.SetPortNumber(1);
    Download.Begin();
    EXPECT_EQ(Download.FilePath(), FirstOfDay + "2.tdc");
    Serial.Send("one");
    EXPECT_FALSE(Download.Finish()) << "the end mark of the first dump does not end the second";
    Download.Cancel();
    EXPECT_THAT(Files.AllFiles(), ElementsAre(First, FieldData + "Cancelled dumps/!Kestrel-03-14-08-2.cancelled"));
    EXPECT_EQ(State.Settings.CommPort, 3);
}

TEST_F(CounterDownloadTest, WhatWasCancelledIsKeptForAWeek) {
    const std::string kept = FieldData + "Cancelled dumps/!Kestrel-03-14-08-1";
    for (const char* received : {"", "T,1", "T,001,0"}) {
        Download.Begin();
        EXPECT_EQ(Download.ReceivedText(), "The dump will be written to !Kestrel-03-14-08-1.tdc.");
        Serial.Send(received);
        Download.Cancel();
    }
    EXPECT_THAT(Files.AllFiles(), ElementsAre(kept + ".cancelled", kept.substr(0, kept.size() - 1) + "2.cancelled"));

    Files.Modified[kept + ".cancelled"] = Date{Time.Moment.Days - 6.99};
    Files.Modified[kept.substr(0, kept.size() - 1) + "2.cancelled"] = Date{Time.Moment.Days - 7.01};
    DeleteOldDumps(Files, FieldData, Time.Now());
    const auto last = LastKeptDump(Files, FieldData);
    ASSERT_TRUE(last);
    EXPECT_EQ(last->Bytes, 3u);
    Files.PutText(First, "another");
    EXPECT_EQ(BringBack(Files, FieldData, *last), "!Kestrel-03-14-08-2");
    EXPECT_EQ(Files.Bytes(FirstOfDay + "2.tdc"), BytesOf("T,1"));
    EXPECT_FALSE(LastKeptDump(Files, FieldData));
}

TEST_F(CounterDownloadTest, ABeginThatFailsLeavesNothing) {
    Download.SetPortNumber(5);
    EXPECT_ERROR(InvalidPortNumber, Download.Begin());
    ExpectNothingLeft();
    State.Paths.FieldDataPath = "/start/None/";
    EXPECT_ERROR(PathNotFound, Download.Begin());
    ExpectNothingLeft();
    EXPECT_THAT(Serial.Tried, ElementsAre(5));
}

TEST_F(CounterDownloadTest, LostDataEndsTheApplicationWithoutAFile) {
    for (const SerialEvent loss : {SerialEvent::Overrun, SerialEvent::ReceiveBufferOverflow})
        for (const char* received : {"", "T,001,0"}) {
            Download.Begin();
            Serial.Send(received);
            EXPECT_THAT([&] { Serial.Raise(loss); },
                        testing::Throws<ApplicationEnded>(
                            testing::Field(&ApplicationEnded::Fault, testing::Field(&FatalFormatFault::File, First))));
            ExpectNothingLeft();
        }
    Download.Begin();
    Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    EXPECT_THROW(Serial.Raise(SerialEvent::Overrun), ApplicationEnded) << "the file cannot be deleted";
}

TEST_F(CounterDownloadTest, ADeviceThatIsGoneOrAFullDiskCancels) {
    for (const char* received : {"", "T,001"}) {
        Download.Begin();
        Serial.Send(received);
        EXPECT_ERROR(DeviceIoError, Serial.Unplug());
        ExpectNothingLeft();
    }
    Download.Begin();
    Serial.Send(DumpEnd);
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_ERROR(DiskFull, Download.Finish());
    ExpectNothingLeft();
    Download.Begin();
    Serial.Send("T,001" + DumpEnd);
    Serial.Unplug();
    EXPECT_TRUE(Download.Finish()) << "all of the dump had arrived";
    EXPECT_EQ(Files.Bytes(First), BytesOf("T,001" + DumpEnd));
}

}  // namespace
}  // namespace vantor
