#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantor {

/// Texts in memory are UTF-8. A NUL byte counts as a blank at the ends of a text: stored fields may be
/// padded with either.
std::string_view Trim(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string_view TrimLeft(std::string_view text);

bool IsDigit(char character);

/// Upper and lower case letters of Windows-1252 made alike, for comparing names.
std::string FoldCase(std::string_view text);
bool EqualIgnoringCase(std::string_view left, std::string_view right);

/// The first `count` characters of a text.
std::string_view FirstCharacters(std::string_view text, std::size_t count);

std::size_t CharactersIn(std::string_view text);

/// The texts with the separator between them.
std::string Joined(const std::vector<std::string>& texts, std::string_view separator);

/// At most `most` of the texts, parted by `separator`, and how many more there are: "a, b and 3 more".
std::string FirstOf(const std::vector<std::string>& texts, std::size_t most, std::string_view separator = ", ");

/// The text with control characters as "\x1b", those of line feeds aside: what a file holds must not steer a terminal.
std::string Printable(std::string_view text);

/// Line breaks as one line feed, the way message boxes and files show them.
inline constexpr std::string_view LineBreak = "\n";

}  // namespace vantor
