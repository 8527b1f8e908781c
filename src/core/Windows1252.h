#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace vantor {

/// The character of `text` at byte `at`, which moves behind it. Bytes that are no UTF-8 give U+FFFD one by one.
char32_t NextCharacter(std::string_view text, std::size_t& at);
void AppendUtf8(std::string& text, char32_t character);

/// Stored texts are Windows-1252, one byte a character. The five bytes without a character there stand for the
/// control characters of the same number, so that every byte survives a read and a write.
std::string Utf8FromWindows1252(std::span<const std::byte> bytes);

/// A character outside Windows-1252 becomes "?".
std::string Windows1252FromUtf8(std::string_view text);

}  // namespace vantor
