#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/Date.h"
#include "core/IndexedArray.h"
#include "core/Windows1252.h"

namespace vantor {

/// Bytes of a stored field whose meaning is not known; carried unchanged.
template <std::size_t Count>
using RawBytes = std::array<std::byte, Count>;

/// One field of a stored record: where it lies, what it is called, which member holds it. `Width` is the number
/// of bytes of a text, the other kinds follow from the member's type. Records are little-endian, without padding.
template <class Record, class Member>
struct Field {
    std::size_t Offset;
    const char* Name;
    Member Record::*Pointer;
    std::size_t Width = 0;
};
template <class Record, class Member>
Field(std::size_t, const char*, Member Record::*, std::size_t = 0) -> Field<Record, Member>;

/// A field that holds only a part of an indexed array: its elements First to Last.
template <class Record, class Member>
struct ArrayPart {
    std::size_t Offset;
    const char* Name;
    Member Record::*Pointer;
    int First;
    int Last;
    std::size_t Width = 0;
};
template <class Record, class Member>
ArrayPart(std::size_t, const char*, Member Record::*, int, int, std::size_t = 0) -> ArrayPart<Record, Member>;

/// A field that lies in the file but in no record: blanks when written, passed over when read.
struct Gap {
    std::size_t Offset;
    std::size_t Width;
};

namespace codec {

template <class T>
concept StoredNumber = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t> || std::same_as<T, float> ||
    std::same_as<T, double> || std::same_as<T, Date>;

template <class T>
constexpr bool IsIndexed = false;
template <class E, int First, int Last>
constexpr bool IsIndexed<IndexedArray<E, First, Last>> = true;

template <class T>
constexpr bool IsRaw = false;
template <std::size_t Count>
constexpr bool IsRaw<RawBytes<Count>> = true;

template <class T>
constexpr std::size_t StoredSize(std::size_t width) {
    if constexpr (std::same_as<T, Date>)
        return 8;
    else if constexpr (StoredNumber<T> || IsRaw<T>)
        return sizeof(T);
    else
        return width;
}

template <class T, class Bits>
void PutBits(T value, std::byte* out) {
    auto bits = std::bit_cast<Bits>(value);
    for (std::size_t i = 0; i < sizeof(Bits); ++i) out[i] = static_cast<std::byte>((bits >> (8 * i)) & 0xFF);
}

/// One expression, not a loop: compilers make a single load of it.
template <class T, class Bits>
T GetBits(const std::byte* in) {
    const auto bitsOf = [in]<std::size_t... I>(std::index_sequence<I...>) {
        return static_cast<Bits>(((std::to_integer<Bits>(in[I]) << (8 * I)) | ...));
    };
    return std::bit_cast<T>(bitsOf(std::make_index_sequence<sizeof(Bits)>{}));
}

inline void Put(std::int16_t value, std::size_t, std::byte* out) { PutBits<std::int16_t, std::uint16_t>(value, out); }
inline void Put(std::int32_t value, std::size_t, std::byte* out) { PutBits<std::int32_t, std::uint32_t>(value, out); }
inline void Put(float value, std::size_t, std::byte* out) { PutBits<float, std::uint32_t>(value, out); }
inline void Put(double value, std::size_t, std::byte* out) { PutBits<double, std::uint64_t>(value, out); }
inline void Put(Date value, std::size_t width, std::byte* out) { Put(value.Days, width, out); }

inline void Put(const std::string& text, std::size_t width, std::byte* out) {
    const std::string stored = Windows1252FromUtf8(text);
    for (std::size_t i = 0; i < width; ++i) out[i] = static_cast<std::byte>(i < stored.size() ? stored[i] : ' ');
}

template <std::size_t Count>
void Put(const RawBytes<Count>& bytes, std::size_t, std::byte* out) {
    std::copy(bytes.begin(), bytes.end(), out);
}

/// `in` holds what the file has of the field: fewer bytes than its size at the end of a short file, where the
/// missing ones read as zero bytes (numbers) or as nothing (texts).
template <StoredNumber T>
void Get(T& value, std::span<const std::byte> in, std::size_t) {
    std::array<std::byte, StoredSize<T>(0)> whole{};
    if (in.size() < whole.size()) {
        std::copy(in.begin(), in.end(), whole.begin());
        in = whole;
    }
    if constexpr (std::same_as<T, std::int16_t>)
        value = GetBits<T, std::uint16_t>(in.data());
    else if constexpr (std::same_as<T, Date>)
        value.Days = GetBits<double, std::uint64_t>(in.data());
    else if constexpr (sizeof(T) == 4)
        value = GetBits<T, std::uint32_t>(in.data());
    else
        value = GetBits<T, std::uint64_t>(in.data());
}

/// Only trailing blanks are dropped, so that writing the text again gives the same bytes.
inline void Get(std::string& text, std::span<const std::byte> in, std::size_t) {
    // Most texts of a record are blank: eight blanks at a time.
    constexpr std::uint64_t eightBlanks = 0x2020202020202020;
    while (in.size() >= 8 && GetBits<std::uint64_t, std::uint64_t>(in.last(8).data()) == eightBlanks)
        in = in.first(in.size() - 8);
    while (!in.empty() && in.back() == std::byte{' '}) in = in.first(in.size() - 1);
    if (in.empty())
        text.clear();
    else
        text = Utf8FromWindows1252(in);
}

template <std::size_t Count>
void Get(RawBytes<Count>& bytes, std::span<const std::byte> in, std::size_t) {
    bytes = {};
    std::copy(in.begin(), in.end(), bytes.begin());
}

template <class Record, class Member>
constexpr std::size_t SizeOf(const Field<Record, Member>& field) {
    if constexpr (IsIndexed<Member>)
        return StoredSize<std::remove_cvref_t<decltype(std::declval<Member>()[0])>>(field.Width) * Member::Count;
    else
        return StoredSize<Member>(field.Width);
}

template <class Record, class Member>
constexpr std::size_t SizeOf(const ArrayPart<Record, Member>& part) {
    return StoredSize<std::remove_cvref_t<decltype(std::declval<Member>()[0])>>(part.Width) *
           static_cast<std::size_t>(part.Last - part.First + 1);
}

constexpr std::size_t SizeOf(const Gap& gap) { return gap.Width; }

/// Calls `action(element, offset, size)` for the field, or for each element of an array.
template <class Record, class Member, class Action>
void ForEachElement(Record& record, const Field<std::remove_const_t<Record>, Member>& field, Action action) {
    auto& member = record.*field.Pointer;
    if constexpr (IsIndexed<Member>) {
        const std::size_t size = SizeOf(field) / Member::Count;
        std::size_t offset = field.Offset;
        for (auto& element : member) {
            action(element, offset, size);
            offset += size;
        }
    } else {
        action(member, field.Offset, SizeOf(field));
    }
}

template <class Record, class Member, class Action>
void ForEachElement(Record& record, const ArrayPart<std::remove_const_t<Record>, Member>& part, Action action) {
    const std::size_t size = SizeOf(part) / static_cast<std::size_t>(part.Last - part.First + 1);
    std::size_t offset = part.Offset;
    for (int index = part.First; index <= part.Last; ++index, offset += size)
        action((record.*part.Pointer)[index], offset, size);
}

template <class Record>
void EncodeField(const Record&, const Gap& gap, std::byte* out) {
    std::fill_n(out + gap.Offset, gap.Width, std::byte{' '});
}

template <class Record, class FieldOrPart>
void EncodeField(const Record& record, const FieldOrPart& field, std::byte* out) {
    ForEachElement(record, field, [&](const auto& element, std::size_t offset, std::size_t size) {
        Put(element, size, out + offset);
    });
}

template <class Record>
void DecodeField(Record&, const Gap&, std::span<const std::byte>) {}

template <class Record, class FieldOrPart>
void DecodeField(Record& record, const FieldOrPart& field, std::span<const std::byte> in) {
    ForEachElement(record, field, [&](auto& element, std::size_t offset, std::size_t size) {
        const std::size_t from = std::min(offset, in.size());
        Get(element, in.subspan(from, std::min(size, in.size() - from)), size);
    });
}

}  // namespace codec

/// The stored size of a record: where its last field ends. Used in static assertions together with IsGapless.
template <class... Fields>
constexpr std::size_t RecordSize(const std::tuple<Fields...>& table) {
    return std::apply([](const auto&... field) { return std::max({(field.Offset + codec::SizeOf(field))...}); }, table);
}

/// True when every field of the table begins where the one before it ends, the first at 0.
template <class... Fields>
constexpr bool IsGapless(const std::tuple<Fields...>& table) {
    std::size_t end = 0;
    bool gapless = true;
    std::apply(
        [&](const auto&... field) {
            ((gapless = gapless && field.Offset == end, end = field.Offset + codec::SizeOf(field)), ...);
        },
        table);
    return gapless;
}

/// Writes the record to `out`, which holds RecordSize(table) bytes.
template <class Record, class Table>
void EncodeRecord(const Record& record, const Table& table, std::byte* out) {
    std::apply([&](const auto&... field) { (codec::EncodeField(record, field, out), ...); }, table);
}

template <class Record, class Table>
std::vector<std::byte> EncodeRecord(const Record& record, const Table& table) {
    std::vector<std::byte> bytes(RecordSize(table));
    EncodeRecord(record, table, bytes.data());
    return bytes;
}

/// Reads a record into a new one. Bytes past the end of `in` read as zero: numbers 0, texts empty.
template <class Record, class Table>
void DecodeRecord(Record& record, const Table& table, std::span<const std::byte> in) {
    std::apply([&](const auto&... field) { (codec::DecodeField(record, field, in), ...); }, table);
}

template <class Record, class Table>
Record DecodeRecord(const Table& table, std::span<const std::byte> in) {
    Record record{};
    DecodeRecord(record, table, in);
    return record;
}

}  // namespace vantor
