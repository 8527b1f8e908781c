#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantor {

/// The cells of a line. Quotes around a cell are removed and doubled ones inside made single; a quote that is not
/// closed ends with its line. Where the delimiter is a blank, several count as one. The cells hold for as long as
/// `line` and `unquoted`, which keeps those that had quotes.
void SplitCells(std::string_view line, char delimiter, std::vector<std::string_view>& cells, std::string& unquoted);

/// A line without the byte order mark that a file may begin with.
std::string_view WithoutMark(std::string_view line);

/// A text as UTF-8: as it is, or where it is none, taken as Windows-1252, of which Latin-1 is a part.
std::string TextOfCell(std::string_view cell);

}  // namespace vantor
