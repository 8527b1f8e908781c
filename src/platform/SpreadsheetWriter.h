#pragma once

#include "core/ports/Spreadsheet.h"

namespace vantor {

/// Writes workbooks that spreadsheet programs open without a question. Texts are stored as texts, so none is taken for
/// a formula; what a cell cannot hold is left out: the characters of a text behind the 32,767th, numbers that are not
/// finite, dates that are none. A date before 1 March 1900, where the spreadsheets' calendars differ, becomes its ISO
/// text; a time of day alone stays a number. Characters that a sheet's name must not have become "_", a sheet without
/// a name is called "Sheet" and its number, and one whose name was there before gets " (2)" and so on.
class SpreadsheetWriter : public Spreadsheet {
public:
    /// Error 6, too, where a sheet has more columns than the format holds (256 or 16,384), error 9 where a row has more
    /// cells than the sheet has columns. ".xlsx" needs the system's folder for temporary files; its failures are those
    /// of the file system.
    std::vector<std::byte> Encode(const std::vector<Sheet>& sheets, WorkbookFormat format,
                                  const Progress& progress) const override;
    using Spreadsheet::Encode;
};

}  // namespace vantor
