#pragma once

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace vantor {

/// The records of BIFF8 that a workbook of plain tables needs.
enum class Biff : std::uint16_t {
    Eof = 0x000A,
    ExternSheet = 0x0017,
    DefinedName = 0x0018,
    Selection = 0x001D,
    DateMode = 0x0022,
    Font = 0x0031,
    Continue = 0x003C,
    Window1 = 0x003D,
    Pane = 0x0041,
    CodePage = 0x0042,
    ColInfo = 0x007D,
    WsBool = 0x0081,
    BoundSheet = 0x0085,
    Setup = 0x00A1,
    Xf = 0x00E0,
    Sst = 0x00FC,
    LabelSst = 0x00FD,
    SupBook = 0x01AE,
    Dimensions = 0x0200,
    Number = 0x0203,
    Row = 0x0208,
    Window2 = 0x023E,
    Style = 0x0293,
    Format = 0x041E,
    Bof = 0x0809,
};

template <class T>
concept BiffField = std::same_as<T, std::uint8_t> || std::same_as<T, std::uint16_t> || std::same_as<T, std::uint32_t> ||
    std::same_as<T, double>;

/// A stream of records, little-endian: identifier, length of the data, data of at most 8224 bytes.
class BiffStream {
public:
    static constexpr std::size_t MostData = 8224;

    template <BiffField... Fields>
    void Record(Biff id, Fields... fields) {
        constexpr auto Length = static_cast<std::uint16_t>((0U + ... + sizeof(Fields)));
        record_ = bytes_.size();
        Put(static_cast<std::uint16_t>(id), Length, fields...);
    }
    /// Adds to the last record, in which there must be room.
    template <BiffField... Fields>
    void Extend(Fields... fields) {
        Put(fields...);
        UpdateLength();
    }
    /// Adds characters to the last record, two bytes each where `isWide`, else one.
    void ExtendText(std::u16string_view text, bool isWide);

    /// Bytes that may yet be added to the last record.
    std::size_t Room() const { return MostData - (bytes_.size() - record_ - HeaderSize); }
    std::size_t Size() const { return bytes_.size(); }
    std::span<const std::byte> Bytes() const { return bytes_; }

    template <BiffField T>
    void Overwrite(std::size_t at, T value) {
        Store(bytes_.data() + at, value);
    }

private:
    static constexpr std::size_t HeaderSize = 4;
    static_assert(std::endian::native == std::endian::little, "Fields are stored as they lie in memory.");

    void UpdateLength() { Overwrite(record_ + 2, static_cast<std::uint16_t>(bytes_.size() - record_ - HeaderSize)); }
    template <BiffField T>
    static std::byte* Store(std::byte* to, T value) {
        std::memcpy(to, &value, sizeof(T));
        return to + sizeof(T);
    }
    template <BiffField... Fields>
    void Put(Fields... fields) {
        std::array<std::byte, (sizeof(Fields) + ...)> stored;
        std::byte* to = stored.data();
        ((to = Store(to, fields)), ...);
        bytes_.insert(bytes_.end(), stored.begin(), stored.end());
    }

    std::vector<std::byte> bytes_;
    std::size_t record_ = 0;  ///< where the last record begins
};

inline bool IsWideText(std::u16string_view text) {
    for (const char16_t unit : text)
        if (unit > 0xFF) return true;
    return false;
}

}  // namespace vantor
