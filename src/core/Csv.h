#pragma once

#include <string>
#include <vector>

namespace vantor {

/// One field of a table that goes out to a spreadsheet.
struct SheetField {
    std::string Text;
    bool IsNumber = false;
};
using SheetRow = std::vector<SheetField>;

// A text (not a number) that a spreadsheet would take for a formula, because its first character that is no blank is
// one of = + - @ or a control character, gets an apostrophe in front.

/// Rows as a comma-separated file: UTF-8 with a byte order mark, lines end with CR LF, fields that hold a comma, a
/// quotation mark or a line break stand in quotation marks, which are doubled inside (RFC 4180).
std::string CsvText(const std::vector<SheetRow>& rows);

/// Rows for the clipboard: a tab between fields, a line feed after each row; control characters in a field become
/// blanks.
std::string TabSeparatedText(const std::vector<SheetRow>& rows);

}  // namespace vantor
