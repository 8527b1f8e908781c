#include "core/RunFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>

#include "core/Backup.h"
#include "core/Paths.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr std::int32_t MostSamples = std::numeric_limits<std::int16_t>::max();

std::string PathOf(const std::string& folder, const std::string& name, const char* extension) {
    if (!IsSafeName(name)) throw RunTimeError(ErrorNumber::PathFileAccessError, UnsafeNameMessage(name));
    return folder + name + extension;
}

std::int32_t CheckedSampleCount(std::int32_t count, const std::string& path) {
    if (count > MostSamples)
        throw RunTimeError(ErrorNumber::Overflow, path + "\nThe file tells of " + std::to_string(count) +
                                                      " samples; a run holds at most 32767. It is damaged.");
    if (count < 0)
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange,
                           path + "\nThe file tells of " + std::to_string(count) + " samples. It is damaged.");
    return count;
}

// The labels of the keys and the names of the sections lie between, which are most of a header.
constexpr std::size_t HeaderFiguresEnd = 128;
constexpr std::size_t NotesBegin = 8320;

/// The fields of the header without its labels and sections.
void DecodeFigures(RunHeader& header, std::span<const std::byte> bytes) {
    const auto decode = [&](const auto& field) {
        if (field.Offset < HeaderFiguresEnd || field.Offset >= NotesBegin) codec::DecodeField(header, field, bytes);
    };
    std::apply([&](const auto&... field) { (decode(field), ...); }, RunHeaderFields);
}

/// Error 62, 6 or 9 for a header that no run has.
void DecodeHeader(RunHeader& header, std::span<const std::byte> bytes, const std::string& path, RunPart part) {
    if (bytes.size() < RunHeaderSize)
        throw RunTimeError(ErrorNumber::InputPastEndOfFile, path + "\nThe file is too short for a run. It is damaged.");
    if (part == RunPart::Values)
        DecodeFigures(header, bytes);
    else
        DecodeRecord(header, RunHeaderFields, bytes.first(RunHeaderSize));
    CheckedSampleCount(header.SampleCount, path);
}

/// The header, and what may be samples behind it, of which the longest run bounds what is read.
std::vector<std::byte> ReadBytes(InputFile& file, RunPart part) {
    const std::size_t most =
        RunHeaderSize + (part == RunPart::Header ? 0 : static_cast<std::size_t>(MostSamples) * SamplePairSize);
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(file.Size(), most)));
    bytes.resize(file.Read(bytes));
    return bytes;
}

RunOutcome OutcomeOf(ErrorNumber number) {
    switch (number) {
        case ErrorNumber::FileNotFound:
        case ErrorNumber::PathNotFound: return RunOutcome::Missing;
        case ErrorNumber::InputPastEndOfFile:
        case ErrorNumber::Overflow:
        case ErrorNumber::SubscriptOutOfRange: return RunOutcome::Damaged;
        default: return RunOutcome::Unreadable;
    }
}

/// Of a sample that is not whole the missing bytes read as zero; those behind the last one keep the zeros they have.
void DecodeSamplePairs(RunRecord& run, std::span<const std::byte> bytes, RunPart part) {
    std::int16_t* value = run.SampleValues.data();
    RunSample* sample = run.RunSamples.data();
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(SamplePairSize, bytes.size()))) {
        const auto pair = bytes.first(std::min(SamplePairSize, bytes.size()));
        codec::Get(*value++, pair.first(std::min<std::size_t>(2, pair.size())), 2);
        if (part == RunPart::Whole && pair.size() > 2) DecodeRecord(*sample++, RunSampleFields, pair.subspan(2));
    }
}

std::uint64_t BitsOf(std::int16_t value) { return std::bit_cast<std::uint16_t>(value); }
std::uint64_t BitsOf(float value) { return std::bit_cast<std::uint32_t>(value); }
std::uint64_t BitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }
std::uint64_t BitsOf(Date value) { return BitsOf(value.Days); }

/// True when every byte of the stored event record is zero, as in all samples of counter runs.
bool IsStoredAsZeros(const RunSample& sample) {
    return std::apply([&](const auto&... field) { return (BitsOf(sample.*field.Pointer) | ...); }, RunSampleFields) ==
           0;
}

std::vector<std::byte> EncodeRun(const RunRecord& run) {
    const auto count = static_cast<std::size_t>(CheckedSampleCount(run.Header.SampleCount, run.Header.RunName));
    if (run.SampleValues.size() < count || run.RunSamples.size() < count)
        throw RunTimeError(ErrorNumber::SubscriptOutOfRange, run.Header.RunName);
    std::vector<std::byte> bytes(RunHeaderSize + count * SamplePairSize);
    EncodeRecord(run.Header, RunHeaderFields, bytes.data());
    std::byte* out = bytes.data() + RunHeaderSize;
    for (std::size_t i = 0; i < count; ++i, out += SamplePairSize) {
        codec::Put(run.SampleValues.data()[i], 2, out);
        const RunSample& sample = run.RunSamples.data()[i];
        if (!IsStoredAsZeros(sample)) EncodeRecord(sample, RunSampleFields, out + 2);
    }
    return bytes;
}

void SetWrittenHeader(RunHeader& header, const std::string& name) {
    // The version 2 format is written with version 1 on purpose: earlier readers expect it and none tests it.
    header.FileVersion = 1;
    header.RunName = name;
}

/// The bytes before the first sample: the length of the file tells which of the two header lengths it has.
std::size_t Ver1HeaderSizeOf(std::size_t fileSize, std::int32_t sampleCount) {
    const std::size_t samples = 2 * static_cast<std::size_t>(sampleCount);
    return fileSize == samples + Ver1LongHeaderSize ? Ver1LongHeaderSize : Ver1RunHeaderSize;
}

}  // namespace

std::string MissingRunText(const std::string& name) { return "Missing Run File: " + name; }

void TellMissingRun(MessageBoxes& messages, const std::string& name) {
    messages.Tell(MissingRunText(name), MessageIcon::Warning);
}

std::string CutText(std::int32_t samplesInFile, std::int32_t sampleCount) {
    return "cut (" + std::to_string(samplesInFile) + " of " + std::to_string(sampleCount) + " samples)";
}

RunReading ReadRun(const FileSystem& files, const std::string& path, RunPart part) {
    RunReading reading;
    const auto failed = [&reading](RunOutcome outcome, const RunTimeError& fault) {
        reading.Outcome = outcome;
        reading.Fault = fault;
        reading.Run = {};
        return reading;
    };
    std::uint64_t size = 0;
    std::vector<std::byte> bytes;
    try {
        // Opening alone tells whether the file is there: asking first would double the calls of a long study's list.
        const auto file = files.Open(path);
        size = file->Size();
        bytes = ReadBytes(*file, part);
        DecodeHeader(reading.Run.Header, bytes, path, part);
    } catch (const RunTimeError& fault) {
        return failed(OutcomeOf(fault.Number()), fault);
    }
    reading.Run.Header.RunName = BaseName(path);
    const std::int32_t count = reading.Run.Header.SampleCount;
    const std::uint64_t samples = (size - RunHeaderSize) / SamplePairSize;
    reading.SamplesInFile = static_cast<std::int32_t>(std::min<std::uint64_t>(samples, std::uint64_t{MostSamples}));
    if (part != RunPart::Header) {
        reading.Run.SampleValues.ResizeTo(count);
        if (part == RunPart::Whole) reading.Run.RunSamples.ResizeTo(count);
        const auto pairs = std::span(bytes).subspan(RunHeaderSize);
        DecodeSamplePairs(reading.Run, pairs.first(std::min(pairs.size(), count * SamplePairSize)), part);
    }
    reading.Outcome = RunOutcome::Run;
    return reading;
}

RunReading ReadRun(const FileSystem& files, const std::string& folder, const std::string& name, RunPart part) {
    if (IsSafeName(name)) return ReadRun(files, folder + name + RunExtension, part);
    RunReading unreadable;
    unreadable.Outcome = RunOutcome::Unreadable;
    unreadable.Fault = RunTimeError(ErrorNumber::PathFileAccessError, UnsafeNameMessage(name));
    return unreadable;
}

std::optional<RunRecord> ReadRunFile(const FileSystem& files, MessageBoxes& messages, const std::string& folder,
                                     const std::string& name) {
    RunReading reading = ReadRun(files, folder, name, RunPart::Whole);
    if (reading.Outcome == RunOutcome::Missing) {
        TellMissingRun(messages, name);
        return std::nullopt;
    }
    if (!reading) throw RunTimeError(*reading.Fault);
    return std::move(reading.Run);
}

std::vector<RunBackup> RunBackupsOf(const FileSystem& files, const std::string& folder, const std::string& name) {
    std::vector<RunBackup> backups;
    for (const std::string& path : BackupsOf(files, PathOf(folder, name, RunExtension))) {
        const auto info = files.Find(path);
        RunReading reading = ReadRun(files, path, RunPart::Header);
        if (!info || !reading) continue;
        reading.Run.Header.RunName = name;
        backups.push_back({path, info->Modified, std::move(reading.Run.Header)});
    }
    return backups;
}

RunRecord ReadRunBackup(const FileSystem& files, const RunBackup& backup) {
    RunReading reading = ReadRun(files, backup.Path);
    if (!reading) throw RunTimeError(*reading.Fault);
    reading.Run.Header.RunName = backup.Header.RunName;
    return std::move(reading.Run);
}

std::string ReplaceRunFile(FileSystem& files, RunRecord& run, const std::string& folder, const std::string& name,
                           const Expected& expected) {
    const auto lock = files.Lock(folder);
    const auto batch = files.BeginWrites();
    const std::string backup = AddBackup(*batch, files, PathOf(folder, name, RunExtension)).Backup;
    AddRunFile(*batch, run, folder, name, expected);
    batch->Commit();
    return LastComponent(backup);
}

void AddRunFile(WriteBatch& batch, RunRecord& run, const std::string& folder, const std::string& name,
                const Expected& expected) {
    AddRunBytes(batch, RunBytes(run, name), folder, name, expected);
}

std::vector<std::byte> RunBytes(RunRecord& run, const std::string& name) {
    SetWrittenHeader(run.Header, name);
    return EncodeRun(run);
}

void AddRunBytes(WriteBatch& batch, std::span<const std::byte> bytes, const std::string& folder,
                 const std::string& name, const Expected& expected) {
    batch.Add(PathOf(folder, name, RunExtension), bytes, expected, OldTail::Kept);
}

void WriteRunFile(FileSystem& files, RunRecord& run, const std::string& folder, const std::string& name,
                  const Expected& expected) {
    const auto batch = files.BeginWrites();
    AddRunFile(*batch, run, folder, name, expected);
    batch->Commit();
}

RunRecord ReadVer1Run(const FileSystem& files, const std::string& folder, const std::string& name) {
    const std::string path = PathOf(folder, name, Ver1RunExtension);
    // The longest run that can be kept bounds what is read, whatever the file's length.
    const auto bytes = ReadFirstBytes(files, path, Ver1LongHeaderSize + 2 * std::size_t{MostSamples});
    RunRecord run;
    DecodeRecord(run.Header, Ver1RunHeaderFields, bytes);
    run.Header.RunName = name;
    const std::int32_t count = CheckedSampleCount(run.Header.SampleCount, path);
    const auto fileSize = static_cast<std::size_t>(files.Open(path)->Size());
    run.SampleValues.ResizeTo(count);
    run.RunSamples.ResizeTo(count);
    const std::size_t start = Ver1HeaderSizeOf(fileSize, count);
    for (int i = 1; i <= count; ++i) {
        const std::size_t at = std::min(start + 2 * static_cast<std::size_t>(i - 1), bytes.size());
        codec::Get(run.SampleValues[i], std::span(bytes).subspan(at, std::min<std::size_t>(2, bytes.size() - at)), 2);
    }
    return run;
}

std::optional<RunRecord> ConvertVer1RunFile(FileSystem& files, MessageBoxes& messages, const std::string& folder,
                                            const std::string& name) {
    const std::string path = PathOf(folder, name, "");
    if (!FileExists(files, path + Ver1RunExtension)) {
        TellMissingRun(messages, name);
        return std::nullopt;
    }
    if (FileExists(files, path + ConvertedRunExtension))
        throw RunTimeError(ErrorNumber::FileAlreadyExists,
                           path + ConvertedRunExtension + "\nThe run was converted before. Move that file away first.");
    RunRecord converted = ReadVer1Run(files, folder, name);
    const std::string written = path + RunExtension;
    const auto lock = files.Lock(folder);
    std::optional<std::vector<std::byte>> replaced;
    if (FileExists(files, written)) replaced = ReadWholeFile(files, written);
    std::string backup;
    if (replaced)
        backup = ReplaceRunFile(files, converted, folder, name, Expected::Unchanged(StampOf(*replaced)));
    else
        WriteRunFile(files, converted, folder, name, Expected::Nothing());
    try {
        files.Rename(path + Ver1RunExtension, path + ConvertedRunExtension);
    } catch (const RunTimeError&) {
        if (replaced) {
            WriteFile(files, written, *replaced, AsItStands(files, written));
            files.Delete(folder + backup);
        } else {
            files.Delete(written);
        }
        throw;
    }
    if (replaced) messages.Tell("The run " + name + RunExtension + " that was there is kept as " + backup + ".");
    return converted;
}

void DeleteRunFile(FileSystem& files, const std::string& folder, const std::string& name) {
    const std::string path = PathOf(folder, name, RunExtension);
    if (FileExists(files, path)) files.Delete(path);
}

}  // namespace vantor
