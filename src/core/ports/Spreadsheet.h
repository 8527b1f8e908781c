#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "core/Date.h"
#include "core/Progress.h"

namespace vantor {

/// A cell: nothing, a text (UTF-8), a number, or a date whose look is its column's.
using SheetCell = std::variant<std::monostate, std::string, double, Date>;

struct SheetColumn {
    std::string Head;
    std::string Format = "General";  ///< of its numbers and dates, as spreadsheets write it: "0.0", "mm/dd/yy"
    int Width = 10;                  ///< characters
};

/// One sheet: a row of heads, kept in view, and rows below it. A row may be shorter than the columns.
struct Sheet {
    std::string Name;
    std::vector<SheetColumn> Columns;
    std::vector<std::vector<SheetCell>> Rows;
};

enum class WorkbookFormat {
    Xls,   ///< BIFF8 in a compound file; at most 65,535 rows below the heads
    Xlsx,  ///< at most 1,048,575 rows below the heads
};

/// Makes spreadsheet files.
class Spreadsheet {
public:
    virtual ~Spreadsheet() = default;
    /// The bytes of the file. Error 6 where a sheet has more rows than the format holds, with how many it may have and
    /// what to do instead. Stopped, there are no bytes.
    std::vector<std::byte> Encode(const std::vector<Sheet>& sheets, WorkbookFormat format) const {
        return Encode(sheets, format, Progress());
    }
    virtual std::vector<std::byte> Encode(const std::vector<Sheet>& sheets, WorkbookFormat format,
                                          const Progress& progress) const = 0;
};

}  // namespace vantor
