#include "core/RunFile.h"

#include <gtest/gtest.h>

#include <numeric>
#include <tuple>

#include "core/Layout.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using namespace std::string_view_literals;

constexpr auto SampleOne = "\x0c\x01\x00\x00\x00\x00\x00\x00\x46\x40"sv;  // 268; latitude 44

/// A run of two samples: 12 pulses with key 1 at latitude 44, a node after 7 pulses.
std::string TwoSampleRun() {
    return Layout(8448 + 96)
        .Bytes(0, "\x01\0"sv)
        .Text(2, "Old name", 32)
        .Bytes(34, "\0\0\0\0\x20\x4c\xe3\x40"sv)  // day 39521
        .Bytes(50, "\x02\0\0\0"sv)
        .Text(68, "MAINST", 32)
        .Bytes(100, "\xe8\x03"sv)
        .Bytes(1152 + 2 * 15, "\xff\xff"sv)
        .Text(1408 + 32, "Elm St", 32)
        .Text(8320, "Wet road", 128)
        .Bytes(8448, SampleOne)
        .Bytes(8448 + 48, "\x07\x80"sv);
}

class RunFileTest : public testing::Test, protected TestProgram {
protected:
    std::optional<RunRecord> Read(const std::string& name) { return ReadRunFile(Files, Messages, "/g/", name); }
    std::optional<RunRecord> Convert(const std::string& name) {
        return ConvertVer1RunFile(Files, Messages, "/g/", name);
    }
    void Put(RunRecord& run, const std::string& name) { PutRunFile(Files, run, "/g/", name); }
};

TEST_F(RunFileTest, ReadsAndWritesHeaderAndSamplesAtTheirOffsets) {
    Files.PutText("/g/Run 1.rd2", TwoSampleRun());
    RunRecord run = Read("Run 1").value();
    const RunHeader& header = run.Header;
    EXPECT_EQ(header.RunName, "Run 1") << "the file name wins over the stored name";
    EXPECT_EQ(std::tuple(ShortDate(header.RunDate), header.SampleCount, header.SiteCode, header.CalConstant),
              std::tuple("03/14/08", 2, "MAINST", 1000));
    EXPECT_EQ(std::tuple(header.ButtonWord[16], header.SectionName[1], header.Notes),
              std::tuple(-1, "Elm St", "Wet road"));
    EXPECT_EQ(run.SampleValues[1], 268);
    EXPECT_EQ(PulsesOf(run.SampleValues[1]), 12);
    EXPECT_TRUE(HasNode(run.SampleValues[2]));
    EXPECT_EQ(run.RunSamples[1].Latitude, 44.0);
    EXPECT_EQ(run.RunSamples[2], RunSample{});

    run.Header.FileVersion = 2;
    Put(run, "Copy");
    EXPECT_EQ(Files.Bytes("/g/Copy.rd2"), BytesOf(TwoSampleRun().replace(2, 8, "Copy    ")));
    EXPECT_EQ(run.Header.RunName, "Copy");
    // A shorter run leaves the old tail.
    run.Header.SampleCount = 0;
    Put(run, "Fresh");
    EXPECT_EQ(Files.Bytes("/g/Fresh.rd2")->size(), 8448U);
    Put(run, "Copy");
    const auto bytes = Files.Bytes("/g/Copy.rd2").value();
    ASSERT_EQ(bytes.size(), 8448U + 96U);
    EXPECT_EQ(std::vector(bytes.begin() + 8448, bytes.begin() + 8458), BytesOf(SampleOne));
}

TEST_F(RunFileTest, LongestRunReadsAndWritesWhole) {
    std::vector<int> values(32767);
    std::iota(values.begin(), values.end(), 1);
    RunRecord run = RunOfValues(values);
    Files.CreateFolder("/g");
    Put(run, "Long");
    EXPECT_EQ(Read("Long"), run);
}

class LockedFiles : public MemoryFileSystem {
    std::unique_ptr<InputFile> Open(const std::string& path) const override {
        throw RunTimeError(ErrorNumber::PermissionDenied, path);
    }
};

TEST_F(RunFileTest, WhatCannotBeReadSaysWhy) {
    Messages.Expect("Missing Run File: Nobody");
    EXPECT_FALSE(Read("Nobody"));
    DeleteRunFile(Files, "/g/", "Nobody");
    EXPECT_ERROR(PermissionDenied, (void)ReadRunFile(LockedFiles(), Messages, "/g/", "R")) << "it is not missing";
    Files.PutText("/g/Many.rd2", Layout(8448).Bytes(50, "\x01\x80\x01\x01"sv));
    Files.PutText("/g/Fewer.rd2", Layout(8448).Bytes(50, "\xff\xff\xff\xff"sv));
    Files.PutText("/g/32768.rd2", Layout(8448).Bytes(50, "\0\x80\0\0"sv));
    EXPECT_ERROR(Overflow, Read("Many"));
    EXPECT_ERROR(SubscriptOutOfRange, Read("Fewer"));
    EXPECT_ERROR(Overflow, Read("32768"));
    EXPECT_ERROR(PathFileAccessError, Read("../g/Many"));
}

TEST_F(RunFileTest, TruncatedFilesReadAsZero) {
    for (const std::size_t length : {0U, 1U, 51U, 8447U, 8449U, 8455U, 8448U + 95U}) {
        Files.PutText("/g/Cut.rd2", TwoSampleRun().substr(0, length));
        const RunReading reading = ReadRun(Files, "/g/Cut.rd2");
        EXPECT_EQ(reading.Outcome, length < 8448 ? RunOutcome::Damaged : RunOutcome::Run) << length;
        const RunReading values = ReadRun(Files, "/g/Cut.rd2", RunPart::Values);
        EXPECT_EQ(
            std::tie(values.Outcome, values.SamplesInFile, values.Run.SampleValues, values.Run.Header.RunTime),
            std::tie(reading.Outcome, reading.SamplesInFile, reading.Run.SampleValues, reading.Run.Header.RunTime));
        if (!reading) continue;
        EXPECT_TRUE(reading.IsCut());
        EXPECT_EQ(reading.SamplesInFile, length < 8448 + 48 ? 0 : 1) << "whole ones";
        EXPECT_EQ(reading.Run.SampleValues.LastIndex(), 2);
        EXPECT_EQ(reading.Run.SampleValues[1], length == 8449 ? 12 : 268);
    }
    Files.CreateFolder("/g/Folder.rd2");
    EXPECT_EQ(ReadRun(Files, "/g/Folder.rd2").Outcome, RunOutcome::Unreadable);
    EXPECT_EQ(ReadRun(Files, "/g/Gone.rd2").Outcome, RunOutcome::Missing);
}

/// A version 1 run of two samples with a header of 3840 bytes, or of 3844.
std::string Ver1Run(std::size_t headerSize) {
    return Layout(headerSize + 4)
        .Bytes(0, "\x01\0"sv)
        .Text(2, "Stored", 32)
        .Bytes(50, "\x02\0\0\0dropped"sv)
        .Bytes(60, "\x05\0\x06\0"sv)
        .Text(64, "OLDSITE", 32)
        .Bytes(96, "\xe8\x03\xff\xff\0\0\xff\xff\0\0"sv)
        .Bytes(106, "\x13\0\0\0\x02\0\x03\0\x2a\0\0\0"sv)
        .Bytes(126, "\x01\0"sv)
        .Text(128 + 32 * 15, "Signal", 32)
        .Text(1408, "First St", 32)
        .Text(1408 + 32 * 63, "Last St", 32)
        .Bytes(3456 + 4 * 63, "\x09\0\0\0"sv)
        .Text(3712, "Version 1 notes", 128)
        .Bytes(headerSize, "\x0c\x01\x07\x80"sv);
}

TEST_F(RunFileTest, ConversionFillsEveryFieldAndRenamesTheOldFile) {
    for (const std::size_t headerSize : {3840U, 3844U}) {
        SCOPED_TRACE(headerSize);
        for (const std::string& old : Files.AllFiles()) Files.Delete(old);
        Files.PutText("/g/Old.rdf", Ver1Run(headerSize));
        const RunRecord run = Convert("Old").value();
        EXPECT_EQ(Files.AllFiles(), (std::vector<std::string>{"/g/Old.rd2", "/g/Old.rdx"}));
        EXPECT_EQ(Files.Bytes("/g/Old.rdx"), BytesOf(Ver1Run(headerSize)));
        const RunRecord read = Read("Old").value();
        EXPECT_EQ(read, run);
        const RunHeader& header = read.Header;
        EXPECT_EQ(std::tuple(header.FileVersion, header.RunName, header.CountNumber, header.RunNumber, header.SiteCode,
                             header.CalConstant, header.RunLength, header.Duration, header.NumberOfSections),
                  std::tuple(1, "Old", 5, 6, "OLDSITE", 1000, 19, 2, 3));
        EXPECT_EQ(std::tuple(header.HeaderWord1, header.Before, header.HeaderLong, header.HeaderWord3,
                             header.HeaderWord4, header.ButtonLabel[16], header.SectionName[0], header.SectionName[1],
                             header.SectionName[64], header.SectionDist[64], header.Notes),
                  std::tuple(-1, -1, 42, 1, 0, "Signal", "", "First St", "Last St", 9, "Version 1 notes"));
        EXPECT_EQ(read.SampleValues[1], 268);
        EXPECT_TRUE(HasNode(read.SampleValues[2]));
        EXPECT_EQ(read.RunSamples[2], RunSample{});
    }
    // Any other length counts as that of the short header.
    Files.PutText("/g/Cut.rdf", Ver1Run(3840).substr(0, 3842));
    EXPECT_EQ(ReadVer1Run(Files, "/g/", "Cut").SampleValues, OneBased<std::int16_t>({268, 0}));
    Files.PutText("/g/Bad.rdf", Ver1Run(3840).replace(50, 4, "\x01\x01\x01\x01"));
    EXPECT_ERROR(Overflow, ReadVer1Run(Files, "/g/", "Bad"));
}

TEST_F(RunFileTest, ConversionThatCannotFinishLosesNothing) {
    Messages.Expect("Missing Run File: None");
    EXPECT_FALSE(Convert("None"));

    Files.PutText("/g/Old.rdf", Ver1Run(3840));
    Files.PutText("/g/OLD.RDX", "earlier");
    EXPECT_ERROR(FileAlreadyExists, Convert("Old"));
    EXPECT_FALSE(Files.Bytes("/g/Old.rd2"));
    Files.Delete("/g/OLD.RDX");
    for (const bool isReplaced : {false, true}) {
        if (isReplaced) Files.PutText("/g/Old.rd2", "a run of that name");
        const auto before = Files.AllFiles();
        for (const int changes : {0, 1, 2}) {
            Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
            EXPECT_ERROR(DiskFull, Convert("Old"));
            EXPECT_EQ(Files.AllFiles(), before) << changes;
            EXPECT_EQ(Files.Bytes("/g/Old.rdf"), BytesOf(Ver1Run(3840)));
        }
    }
    EXPECT_EQ(Files.Bytes("/g/Old.rd2"), BytesOf("a run of that name"));
}

}  // namespace
}  // namespace vantor
