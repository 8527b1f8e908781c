#pragma once

#include <string>
#include <utility>

#include "core/AppContext.h"
#include "gpsobd/ReviewGrid.h"

namespace vantor {

/// Export of a review grid, in the order of the grid, to files beside the chosen log or where the user says.
class ReviewExport {
public:
    /// `logPath` has no extension.
    ReviewExport(AppContext& context, std::string logPath, const ReviewGrid& grid)
        : context_(context), logPath_(std::move(logPath)), grid_(grid) {}

    /// To an .xls file of the log's name; tells how it ended. Offers an .xlsx file for more rows than one holds.
    void ToXls() const;
    /// To a workbook or a CSV file that the user names; its path, empty where none is named or it was stopped.
    std::string ToNamedFile() const;

private:
    /// False when it was stopped.
    bool Write(const std::string& path) const;

    AppContext& context_;
    std::string logPath_;
    const ReviewGrid& grid_;
};

}  // namespace vantor
