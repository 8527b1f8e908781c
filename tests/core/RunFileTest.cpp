#include "core/RunFile.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

/// Puts fields together the way the file has them.
class Layout {
public:
    explicit Layout(std::size_t size) : bytes_(size, '\0') {}
    Layout& Text(std::size_t offset, std::string text, std::size_t width) {
        text.resize(width, ' ');
        bytes_.replace(offset, width, text);
        return *this;
    }
    Layout& Bytes(std::size_t offset, std::string_view literal) {
        bytes_.replace(offset, literal.size(), literal);
        return *this;
    }
    std::string Value() const { return bytes_; }

private:
    std::string bytes_;
};

const std::string SampleOne(
    "\x0c\x01"
    "\x00\x00\x00\x00\x00\x00\x46\x40",
    10);  // 268; latitude 44

/// A run of two samples: 12 pulses with key 1 at latitude 44, a node after 7 pulses.
std::string TwoSampleRun() {
    return Layout(8448 + 96)
        .Bytes(0, std::string_view("\x01\0", 2))
        .Text(2, "Old name", 32)
        .Bytes(34, std::string_view("\0\0\0\0\x20\x4c\xe3\x40", 8))  // day 39521
        .Bytes(50, std::string_view("\x02\0\0\0", 4))
        .Text(68, "MAINST", 32)
        .Bytes(100, std::string_view("\xe8\x03", 2))
        .Bytes(1152 + 2 * 15, std::string_view("\xff\xff", 2))
        .Text(1408 + 32, "Elm St", 32)
        .Text(8320, "Wet road", 128)
        .Bytes(8448, SampleOne)
        .Bytes(8448 + 48, std::string_view("\x07\x80", 2))
        .Value();
}

TEST(RunFile, ReadsHeaderAndSamplesFromTheirOffsets) {
    TestProgram program;
    program.Files.PutText("/g/Run 1.rd2", TwoSampleRun());
    RunRecord run;
    ASSERT_TRUE(ReadRunFile(program.Files, program.Messages, run, "/g/", "Run 1", true));
    EXPECT_EQ(run.Header.RunName, "Run 1") << "the file name wins over the stored name";
    EXPECT_EQ(ShortDate(run.Header.RunDate), "03/14/08");
    EXPECT_EQ(run.Header.SampleCount, 2);
    EXPECT_EQ(run.Header.SiteCode, "MAINST");
    EXPECT_EQ(run.Header.CalConstant, 1000);
    EXPECT_EQ(run.Header.ButtonWord[16], -1);
    EXPECT_EQ(run.Header.SectionName[1], "Elm St");
    EXPECT_EQ(run.Header.Notes, "Wet road");
    EXPECT_EQ(run.SampleValues[1], 268);
    EXPECT_EQ(PulsesOf(run.SampleValues[1]), 12);
    EXPECT_TRUE(HasNode(run.SampleValues[2]));
    EXPECT_EQ(run.RunSamples[1].Latitude, 44.0);
    EXPECT_EQ(run.RunSamples[2], RunSample{});
}

TEST(RunFile, WritesTheSameBytesUnderTheNewName) {
    TestProgram program;
    program.Files.PutText("/g/Run 1.rd2", TwoSampleRun());
    RunRecord run;
    ReadRunFile(program.Files, program.Messages, run, "/g/", "Run 1", true);
    run.Header.FileVersion = 2;
    PutRunFile(program.Files, run, "/g/", "Copy");
    EXPECT_EQ(program.Files.Bytes("/g/Copy.rd2"), BytesOf(TwoSampleRun().replace(2, 8, "Copy    ")));
    EXPECT_EQ(run.Header.RunName, "Copy");
}

TEST(RunFile, ShorterRunLeavesTheOldTail) {
    TestProgram program;
    program.Files.PutText("/g/R.rd2", TwoSampleRun());
    RunRecord run;
    ReadRunFile(program.Files, program.Messages, run, "/g/", "R", true);
    run.Header.SampleCount = 0;
    PutRunFile(program.Files, run, "/g/", "Fresh");
    EXPECT_EQ(program.Files.Bytes("/g/Fresh.rd2")->size(), 8448U);
    PutRunFile(program.Files, run, "/g/", "R");
    const auto bytes = program.Files.Bytes("/g/R.rd2").value();
    ASSERT_EQ(bytes.size(), 8448U + 96U);
    EXPECT_EQ(std::vector(bytes.begin() + 8448, bytes.begin() + 8458), BytesOf(SampleOne));
}

TEST(RunFile, LongestRunReadsAndWritesWhole) {
    TestProgram program;
    RunRecord run;
    run.Header.SampleCount = 32767;
    run.SampleValues.ResizeTo(32767);
    run.RunSamples.ResizeTo(32767);
    run.SampleValues[32767] = 77;
    PutRunFile(program.Files, run, "/start/", "Long");
    RunRecord read;
    ASSERT_TRUE(ReadRunFile(program.Files, program.Messages, read, "/start/", "Long", true));
    EXPECT_EQ(read, run);
}

TEST(RunFile, MissingFileIsToldAndLeavesTheRecord) {
    TestProgram program;
    RunRecord run;
    run.Header.Notes = "kept";
    program.Messages.Expect("Missing Run File: Nobody");
    EXPECT_FALSE(ReadRunFile(program.Files, program.Messages, run, "/start/", "Nobody", true));
    EXPECT_EQ(run.Header.Notes, "kept");
    DeleteRunFile(program.Files, "/start/", "Nobody");
}

class LockedFiles : public MemoryFileSystem {
    std::unique_ptr<InputFile> Open(const std::string& path) const override {
        throw RunTimeError(ErrorNumber::PermissionDenied, path);
    }
};

TEST(RunFile, AFileThatCannotBeOpenedIsNotMissing) {
    TestProgram program;
    RunRecord run;
    EXPECT_ERROR(PermissionDenied, ReadRunFile(LockedFiles(), program.Messages, run, "/g/", "R", true));
}

TEST(RunFile, DamagedCountsNeverChangeTheRecord) {
    TestProgram program;
    RunRecord run;
    run.Header.Notes = "kept";
    program.Files.PutText("/g/Many.rd2", Layout(8448).Bytes(50, "\x01\x80\x01\x01").Value());
    program.Files.PutText("/g/Fewer.rd2", Layout(8448).Bytes(50, "\xff\xff\xff\xff").Value());
    program.Files.PutText("/g/32768.rd2", Layout(8448).Bytes(50, std::string_view("\0\x80\0\0", 4)).Value());
    EXPECT_ERROR(Overflow, ReadRunFile(program.Files, program.Messages, run, "/g/", "Many", true));
    EXPECT_ERROR(SubscriptOutOfRange, ReadRunFile(program.Files, program.Messages, run, "/g/", "Fewer", true));
    EXPECT_ERROR(Overflow, ReadRunFile(program.Files, program.Messages, run, "/g/", "32768", true));
    EXPECT_EQ(run.Header.Notes, "kept");
    EXPECT_ERROR(PathFileAccessError, ReadRunFile(program.Files, program.Messages, run, "/g/", "../g/Many", true));
}

TEST(RunFile, TruncatedFilesReadAsZero) {
    TestProgram program;
    for (const std::size_t length : {0U, 1U, 51U, 8447U, 8449U, 8455U, 8448U + 95U}) {
        program.Files.PutText("/g/Cut.rd2", TwoSampleRun().substr(0, length));
        const RunReading reading = ReadRun(program.Files, "/g/Cut.rd2");
        EXPECT_EQ(reading.Outcome, length < 8448 ? RunOutcome::Damaged : RunOutcome::Run) << length;
        if (!reading) continue;
        EXPECT_TRUE(reading.IsCut());
        EXPECT_EQ(reading.SamplesInFile, length < 8448 + 48 ? 0 : 1) << "whole ones";
        EXPECT_EQ(reading.Run.SampleValues.LastIndex(), 2);
        if (length == 8449) {
            EXPECT_EQ(reading.Run.SampleValues[1], 12);
        }
    }
    program.Files.CreateFolder("/g/Folder.rd2");
    EXPECT_EQ(ReadRun(program.Files, "/g/Folder.rd2").Outcome, RunOutcome::Unreadable);
    EXPECT_EQ(ReadRun(program.Files, "/g/Gone.rd2").Outcome, RunOutcome::Missing);
}

/// A version 1 run of two samples with a header of 3840 bytes, or of 3844.
std::string Ver1Run(std::size_t headerSize) {
    return Layout(headerSize + 4)
        .Bytes(0, std::string_view("\x01\0", 2))
        .Text(2, "Stored", 32)
        .Bytes(50, std::string_view("\x02\0\0\0dropped", 11))
        .Bytes(60, std::string_view("\x05\0\x06\0", 4))
        .Text(64, "OLDSITE", 32)
        .Bytes(96, std::string_view("\xe8\x03\xff\xff\0\0\xff\xff\0\0", 10))
        .Bytes(106, std::string_view("\x13\0\0\0\x02\0\x03\0\x2a\0\0\0", 12))
        .Bytes(126, std::string_view("\x01\0", 2))
        .Text(128 + 32 * 15, "Signal", 32)
        .Text(1408, "First St", 32)
        .Text(1408 + 32 * 63, "Last St", 32)
        .Bytes(3456 + 4 * 63, std::string_view("\x09\0\0\0", 4))
        .Text(3712, "Version 1 notes", 128)
        .Bytes(headerSize, std::string_view("\x0c\x01\x07\x80", 4))
        .Value();
}

class Ver1Conversion : public testing::TestWithParam<std::size_t> {};

TEST_P(Ver1Conversion, FillsEveryFieldAndRenamesTheOldFile) {
    TestProgram program;
    program.Files.PutText("/g/Old.rdf", Ver1Run(GetParam()));
    RunRecord run;
    ASSERT_TRUE(ConvertVer1RunFile(program.Files, program.Messages, run, "/g/", "Old"));
    EXPECT_EQ(program.Files.AllFiles(), (std::vector<std::string>{"/g/Old.rd2", "/g/Old.rdx"}));
    EXPECT_EQ(program.Files.Bytes("/g/Old.rdx"), BytesOf(Ver1Run(GetParam())));
    RunRecord read;
    ReadRunFile(program.Files, program.Messages, read, "/g/", "Old", true);
    EXPECT_EQ(read, run);
    const RunHeader& header = read.Header;
    EXPECT_EQ(header.FileVersion, 1);
    EXPECT_EQ(header.RunName, "Old");
    EXPECT_EQ(header.CountNumber, 5);
    EXPECT_EQ(header.RunNumber, 6);
    EXPECT_EQ(header.SiteCode, "OLDSITE");
    EXPECT_EQ(header.CalConstant, 1000);
    EXPECT_EQ(header.HeaderWord1, -1);
    EXPECT_EQ(header.Before, -1);
    EXPECT_EQ(header.RunLength, 19);
    EXPECT_EQ(header.Duration, 2);
    EXPECT_EQ(header.NumberOfSections, 3);
    EXPECT_EQ(header.HeaderLong, 42);
    EXPECT_EQ(header.HeaderWord3, 1);
    EXPECT_EQ(header.HeaderWord4, 0);
    EXPECT_EQ(header.ButtonLabel[16], "Signal");
    EXPECT_EQ(header.SectionName[0], "");
    EXPECT_EQ(header.SectionName[1], "First St");
    EXPECT_EQ(header.SectionName[64], "Last St");
    EXPECT_EQ(header.SectionDist[64], 9);
    EXPECT_EQ(header.Notes, "Version 1 notes");
    EXPECT_EQ(read.SampleValues[1], 268);
    EXPECT_TRUE(HasNode(read.SampleValues[2]));
    EXPECT_EQ(read.RunSamples[2], RunSample{});
}

INSTANTIATE_TEST_SUITE_P(BothHeaderLengths, Ver1Conversion, testing::Values(3840U, 3844U));

TEST(RunFile, ConversionThatCannotFinishLosesNothing) {
    TestProgram program;
    RunRecord run;
    program.Messages.Expect("Missing Run File: None");
    EXPECT_FALSE(ConvertVer1RunFile(program.Files, program.Messages, run, "/start/", "None"));

    program.Files.PutText("/g/Old.rdf", Ver1Run(3840));
    program.Files.PutText("/g/OLD.RDX", "earlier");
    EXPECT_ERROR(FileAlreadyExists, ConvertVer1RunFile(program.Files, program.Messages, run, "/g/", "Old"));
    EXPECT_FALSE(program.Files.Bytes("/g/Old.rd2"));
    program.Files.Delete("/g/OLD.RDX");
    for (const bool isReplaced : {false, true}) {
        if (isReplaced) program.Files.PutText("/g/Old.rd2", "a run of that name");
        const auto before = program.Files.AllFiles();
        for (const int changes : {0, 1, 2}) {
            program.Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
            EXPECT_ERROR(DiskFull, ConvertVer1RunFile(program.Files, program.Messages, run, "/g/", "Old"));
            EXPECT_EQ(program.Files.AllFiles(), before) << changes;
            EXPECT_EQ(program.Files.Bytes("/g/Old.rdf"), BytesOf(Ver1Run(3840)));
        }
    }
    EXPECT_EQ(program.Files.Bytes("/g/Old.rd2"), BytesOf("a run of that name"));
    EXPECT_EQ(run, RunRecord{});
}

TEST(RunFile, OtherLengthsOfVersion1FilesCountAsTheShortHeader) {
    TestProgram program;
    program.Files.PutText("/g/Cut.rdf", Ver1Run(3840).substr(0, 3842));
    const RunRecord run = ReadVer1Run(program.Files, "/g/", "Cut");
    EXPECT_EQ(run.SampleValues[1], 268);
    EXPECT_EQ(run.SampleValues[2], 0);
    program.Files.PutText("/g/Bad.rdf", Ver1Run(3840).replace(50, 4, "\x01\x01\x01\x01"));
    EXPECT_ERROR(Overflow, ReadVer1Run(program.Files, "/g/", "Bad"));
}

}  // namespace
}  // namespace vantor
