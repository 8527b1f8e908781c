#include "core/CsvCells.h"

#include <algorithm>
#include <span>

#include "core/Text.h"
#include "core/Windows1252.h"

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
        if (NextCharacter(cell, at) == NoCharacter)
            return Utf8FromWindows1252(std::as_bytes(std::span(cell.data(), cell.size())));
    return std::string(cell);
}

}  // namespace vantor
