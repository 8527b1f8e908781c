#include "core/Windows1252.h"

#include <algorithm>
#include <array>

namespace vantor {
namespace {

// Bytes 0x80 to 0x9F; all others stand for the character of the same number.
constexpr std::array<char32_t, 32> UpperControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t ReplacementCharacter = 0xFFFD;

char StoredByte(char32_t character) {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
    for (std::size_t i = 0; i < UpperControls.size(); ++i)
        if (UpperControls[i] == character) return static_cast<char>(0x80 + i);
    return '?';
}

}  // namespace

char32_t NextCharacter(std::string_view text, std::size_t& at) {
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(at++);
    if (lead < 0x80) return lead;
    const std::size_t following = lead >= 0xF0 && lead < 0xF8   ? 3
                                  : lead >= 0xE0 && lead < 0xF0 ? 2
                                  : lead >= 0xC2 && lead < 0xE0 ? 1
                                                                : 0;
    if (following == 0 || at + following > text.size()) return ReplacementCharacter;
    char32_t character = lead & (0x3Fu >> following);
    for (std::size_t i = 0; i < following; ++i) {
        if ((byteAt(at + i) & 0xC0) != 0x80) return ReplacementCharacter;
        character = (character << 6) | (byteAt(at + i) & 0x3Fu);
    }
    at += following;
    return character;
}

void AppendUtf8(std::string& text, char32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | (c >> 6));
        text += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | (c >> 12));
        text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        text += static_cast<char>(0xF0 | (c >> 18));
        text += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        text += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        text += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::string Utf8FromWindows1252(std::span<const std::byte> bytes) {
    const auto isAscii = [](std::byte byte) { return (byte & std::byte{0x80}) == std::byte{0}; };
    if (std::all_of(bytes.begin(), bytes.end(), isAscii))
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    std::string text;
    text.reserve(bytes.size());
    for (const std::byte byte : bytes) {
        const auto value = std::to_integer<unsigned>(byte);
        AppendUtf8(text, value >= 0x80 && value < 0xA0 ? UpperControls[value - 0x80] : value);
    }
    return text;
}

std::string Windows1252FromUtf8(std::string_view text) {
    std::string stored;
    stored.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) stored += StoredByte(NextCharacter(text, at));
    return stored;
}

}  // namespace vantor
