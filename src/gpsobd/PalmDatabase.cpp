#include "gpsobd/PalmDatabase.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "core/RunTimeError.h"
#include "core/Windows1252.h"

namespace vantor {
namespace {

constexpr std::size_t HeaderSize = 78;
constexpr std::size_t NameWidth = 32;
constexpr std::size_t AttributesAt = 32;
constexpr std::size_t ApplicationInfoAt = 52;
constexpr std::size_t SortInfoAt = 56;
constexpr std::size_t NextListAt = 72;
constexpr std::size_t RecordCountAt = 76;
constexpr std::size_t EntrySize = 8;
constexpr std::uint32_t ResourceDatabase = 0x0001;  // in the attributes of the header
constexpr unsigned DeletedRecord = 0x80;            // in those of a record
constexpr std::uint64_t LongestRecord = 0xFFFF;
constexpr std::size_t FieldsOfRecord = 9;

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw RunTimeError(ErrorNumber::TypeMismatch, reason + "\n" + path);
}

/// `width` bytes as a whole number, the most significant first.
std::uint32_t BigEndian(std::span<const std::byte> bytes, std::size_t at, std::size_t width) {
    std::uint32_t value = 0;
    for (const std::byte byte : bytes.subspan(at, width)) value = (value << 8) | std::to_integer<std::uint32_t>(byte);
    return value;
}

std::vector<std::byte> ReadWhole(InputFile& file, std::size_t size, const std::string& path) {
    std::vector<std::byte> bytes(size);
    if (file.Read(bytes) != size) Refuse(path, "The file is cut short.");
    return bytes;
}

struct Extent {
    std::uint64_t Start = 0;
    std::uint64_t End = 0;
    bool IsDeleted = false;
};

void CheckHeader(std::span<const std::byte> header, const std::string& path, const std::string& name) {
    const std::string stored = Utf8FromWindows1252(header.first(NameWidth));
    if (stored.substr(0, stored.find('\0')) != name)
        throw NoSuchTable("The file is no database \"" + name + "\".\n" + path);
    if ((BigEndian(header, AttributesAt, 2) & ResourceDatabase) != 0)
        Refuse(path, "The file holds resources in place of records.");
    if (BigEndian(header, NextListAt, 4) != 0) Refuse(path, "The list of records goes on elsewhere.");
}

/// The places that the header and the record entries name, in the order in which they must lie in the file.
std::vector<Extent> ReadExtents(InputFile& file, std::span<const std::byte> header, const std::string& path) {
    const std::size_t count = BigEndian(header, RecordCountAt, 2);
    const std::uint64_t size = file.Size();
    if (HeaderSize + count * EntrySize > size)
        Refuse(path, "The file is too short for its " + std::to_string(count) + " records.");
    const std::vector<std::byte> entries = ReadWhole(file, count * EntrySize, path);
    std::uint64_t last = HeaderSize + entries.size();
    const auto check = [&](std::uint64_t place, const std::string& what) {
        if (place < last) Refuse(path, what + " does not lie where it can.");
        last = place;
    };
    for (const std::size_t at : {ApplicationInfoAt, SortInfoAt})
        if (const std::uint32_t place = BigEndian(header, at, 4); place != 0) check(place, "A block of information");
    if (last > size) Refuse(path, "The file is cut short.");
    std::vector<Extent> extents(count);
    for (std::size_t i = 0; i < count; ++i) {
        extents[i].Start = BigEndian(entries, i * EntrySize, 4);
        extents[i].IsDeleted = (BigEndian(entries, i * EntrySize + 4, 1) & DeletedRecord) != 0;
        check(extents[i].Start, "Record " + std::to_string(i + 1));
        if (i > 0) extents[i - 1].End = extents[i].Start;
    }
    // Where the last one begins behind the end of the file, its length is not known.
    if (count > 0) extents.back().End = std::max(size, extents.back().Start + 1);
    for (std::size_t i = 0; i < count; ++i)
        if (extents[i].End - extents[i].Start > LongestRecord)
            Refuse(path, "Record " + std::to_string(i + 1) + " is longer than a record can be.");
    return extents;
}

class PalmRecords : public RecordSet {
public:
    PalmRecords(std::unique_ptr<InputFile> file, std::string path, const std::string& name)
        : file_(std::move(file)), path_(std::move(path)) {
        const std::vector<std::byte> header = ReadWhole(*file_, HeaderSize, path_);
        CheckHeader(header, path_, name);
        extents_ = ReadExtents(*file_, header, path_);
        at_ = HeaderSize + extents_.size() * EntrySize;
        const auto cut =
            std::ranges::find_if(extents_, [&](const Extent& extent) { return extent.End > file_->Size(); });
        LeaveOut(static_cast<std::size_t>(cut - extents_.begin()));
    }

    int FieldCount() const override { return static_cast<int>(FieldsOfRecord); }
    std::uint64_t DroppedBytes() const override { return dropped_; }
    std::size_t MissingRecords() const override { return missing_; }

    bool Next() override {
        while (next_ < extents_.size() && extents_[next_].IsDeleted) ++next_;
        if (next_ >= extents_.size()) return false;
        const Extent& extent = extents_[next_++];
        PassTo(extent.Start);
        const auto size = static_cast<std::size_t>(extent.End - extent.Start);
        const bool isWhole = SplitRecord(ReadWhole(*file_, size, path_));
        at_ = extent.End;
        // Only of the last one it cannot be told from where it lies whether it is whole.
        if (!isWhole && extent.End != file_->Size())
            Refuse(path_, "Record " + std::to_string(next_) + " has too few fields.");
        if (!isWhole) LeaveOut(next_ - 1);
        return isWhole;
    }

    std::string Text(int position) const override {
        if (position < 0 || position >= FieldCount()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange, path_);
        return texts_[static_cast<std::size_t>(position)];
    }

private:
    /// Files are read from start to end; what lies between the records is read and dropped.
    void PassTo(std::uint64_t place) {
        constexpr std::uint64_t PieceSize = 65536;
        while (at_ < place) {
            const std::uint64_t piece = std::min(place - at_, PieceSize);
            ReadWhole(*file_, static_cast<std::size_t>(piece), path_);
            at_ += piece;
        }
    }

    /// False for a record with too few fields.
    bool SplitRecord(std::span<const std::byte> record) {
        std::size_t start = 0;
        for (std::string& text : texts_) {
            const auto rest = record.subspan(start);
            const auto end = std::find(rest.begin(), rest.end(), std::byte{0});
            if (end == rest.end()) return false;
            const auto length = static_cast<std::size_t>(end - rest.begin());
            text = Utf8FromWindows1252(rest.first(length));
            start += length + 1;
        }
        if (start != record.size()) Refuse(path_, "Record " + std::to_string(next_) + " has too many fields.");
        return true;
    }

    /// Takes the records from that one on for cut off.
    void LeaveOut(std::size_t first) {
        if (first == extents_.size()) return;
        if (first == 0) Refuse(path_, "The file is cut short: it holds none of its records whole.");
        dropped_ = file_->Size() - std::min(file_->Size(), extents_[first].Start);
        missing_ += static_cast<std::size_t>(std::count_if(extents_.begin() + static_cast<std::ptrdiff_t>(first),
                                                           extents_.end(),
                                                           [](const Extent& extent) { return !extent.IsDeleted; }));
        extents_.resize(first);
    }

    std::unique_ptr<InputFile> file_;
    std::string path_;
    std::vector<Extent> extents_;
    std::size_t next_ = 0;
    std::uint64_t at_ = 0;
    std::uint64_t dropped_ = 0;
    std::size_t missing_ = 0;
    std::array<std::string, FieldsOfRecord> texts_;
};

}  // namespace

std::unique_ptr<RecordSet> PalmDatabase::Open(const std::string& path, const std::string& name) const {
    return std::make_unique<PalmRecords>(files_.Open(path), path, name);
}

}  // namespace vantor
