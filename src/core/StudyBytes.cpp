#include "core/StudyBytes.h"

#include <algorithm>

#include "core/RunRecords.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr std::size_t EntryOffset(int index) {
    return StudyRecordSize + static_cast<std::size_t>(index - 1) * StudyRunEntrySize;
}

std::span<const std::byte> Slice(std::span<const std::byte> bytes, std::size_t offset, std::size_t size) {
    const std::size_t from = std::min(offset, bytes.size());
    return bytes.subspan(from, std::min(size, bytes.size() - from));
}

}  // namespace

std::vector<std::byte> EncodeStudy(const Study& study) {
    std::vector<std::byte> bytes(EntryOffset(study.Record.RunCount + 1));
    EncodeRecord(study.Record, StudyRecordFields, bytes.data());
    for (int i = 1; i <= study.Record.RunCount; ++i)
        EncodeRecord(study.Entries[i], StudyRunEntryFields, bytes.data() + EntryOffset(i));
    return bytes;
}

Study DecodeStudy(std::span<const std::byte> file) {
    Study study;
    study.Record = DecodeRecord<StudyRecord>(StudyRecordFields, file);
    study.Entries.ResizeTo(study.Record.RunCount);
    study.RunNames.ResizeTo(study.Record.RunCount);
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        const auto bytes = Slice(file, EntryOffset(i), StudyRunEntrySize);
        auto entry = DecodeRecord<StudyRunEntry>(StudyRunEntryFields, bytes);
        study.RunNames[i] = TrimRight(entry.EntryRunName);
        entry.EntryRunName = study.RunNames[i];
        study.Entries[i] = std::move(entry);
        if (bytes.size() < StudyRunEntrySize) ++study.MissingEntries;
    }
    return study;
}

std::span<const std::byte> StoredRunName(std::span<const std::byte> file, int index) {
    return Slice(file, EntryOffset(index), RunNameWidth);
}

}  // namespace vantor
