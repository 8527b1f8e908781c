#include "tracks/CsvCells.h"

#include <algorithm>
#include <array>
#include <span>

#include "core/Text.h"
#include "core/Windows1252.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr char32_t NoCharacter = 0xFFFD;

/// The cell behind the quote at the start of `rest`, which is taken off it with what follows up to the delimiter.
/// `unquoted` has room for it.
std::string_view QuotedCell(std::string_view& rest, char delimiter, std::string& unquoted) {
    const std::size_t start = unquoted.size();
    std::size_t at = 1;
    for (; at < rest.size(); ++at) {
        if (rest[at] == '"' && (at + 1 == rest.size() || rest[at + 1] != '"')) break;
        if (rest[at] == '"') ++at;
        unquoted += rest[at];
    }
    const std::size_t end = rest.find(delimiter, std::min(at, rest.size()));
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
    return std::string_view(unquoted).substr(start);
}

}  // namespace

void SplitCells(std::string_view line, char delimiter, std::vector<std::string_view>& cells, std::string& unquoted) {
    cells.clear();
    unquoted.clear();
    unquoted.reserve(line.size());
    if (delimiter == ' ') line = Trim(line);
    for (std::string_view rest = line;;) {
        if (delimiter != '\t') rest = TrimLeft(rest);
        if (rest.starts_with('"')) {
            cells.push_back(QuotedCell(rest, delimiter, unquoted));
        } else {
            const std::size_t end = rest.find(delimiter);
            cells.push_back(Trim(rest.substr(0, end)));
            rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
        }
        if (rest.empty()) return;
        rest.remove_prefix(1);
    }
}

std::string_view WithoutMark(std::string_view line) {
    constexpr std::string_view Mark = "\xEF\xBB\xBF";
    if (line.starts_with(Mark)) line.remove_prefix(Mark.size());
    return line;
}

std::string TextOfCell(std::string_view cell) {
    for (std::size_t at = 0; at < cell.size();)
        if (NextCharacter(cell, at) == NoCharacter && !cell.substr(0, at).ends_with("\xEF\xBF\xBD"))
            return Utf8FromWindows1252(std::as_bytes(std::span(cell.data(), cell.size())));
    return std::string(cell);
}

std::optional<double> NumberOfCell(std::string_view cell, bool decimalComma) {
    cell = Trim(cell);
    double sign = 1;
    const auto takeSide = [&](char letter) {
        const char upper = static_cast<char>(letter & ~0x20);
        if (upper != 'N' && upper != 'S' && upper != 'E' && upper != 'W') return false;
        if (upper == 'S' || upper == 'W') sign = -1;
        return true;
    };
    if (!cell.empty() && takeSide(cell.back()))
        cell.remove_suffix(1);
    else if (!cell.empty() && takeSide(cell.front()))
        cell.remove_prefix(1);
    cell = Trim(cell);
    std::array<char, 40> text{};
    if (decimalComma && cell.size() <= text.size()) {
        std::ranges::replace_copy(cell, text.begin(), ',', '.');
        cell = {text.data(), cell.size()};
    }
    const auto number = TrackNumber(cell);
    return number ? std::optional(sign * *number) : std::nullopt;
}

}  // namespace vantor
