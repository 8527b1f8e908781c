#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "reports/ReportPages.h"

namespace vantor {

struct ReportColumn {
    std::string Head;
    TextSide Side = TextSide::Left;
    bool Wraps = false;  ///< its texts may take more lines; others keep their width
};

struct ReportTable {
    std::vector<ReportColumn> Columns;
    std::vector<std::vector<std::string>> Rows;  ///< each with a text for every column
    bool HasTotal = false;                       ///< the last row stands in bold below a rule
};

/// Some columns of a table, by their positions.
ReportTable WithColumns(const ReportTable& table, const std::vector<std::size_t>& columns);
/// The table in as many tables as its columns need to be side by side in a width, each beginning with the first
/// `repeated` columns.
std::vector<ReportTable> SplitToWidth(const ReportTable& table, double width, const TextMeasure& measure,
                                      std::size_t repeated = 1);

/// A table that fits into a width, laid out.
class TableLayout {
public:
    TableLayout(const ReportTable& table, double width, const TextMeasure& measure);

    double Height() const;
    /// Of the heads and the rows that must stay with them.
    double HeightOfStart() const;
    /// Adds the table to the pages. Where it breaks, the heads are repeated; a total does not stand alone.
    void AddTo(ReportPages& pages) const;

private:
    struct Row {
        std::vector<std::vector<std::string>> Lines;  ///< of each cell
        double Height = 0;
        bool IsBold = false;
    };
    Row MakeRow(const std::vector<std::string>& texts, bool isBold, const TextMeasure& measure) const;
    void SetWidths(const ReportTable& table, double width, const TextMeasure& measure);
    void AddHead(ReportPages& pages) const;
    void AddRow(ReportPages& pages, const Row& row) const;
    void DrawCells(ReportPages& pages, const Row& row, double y, bool atBottom) const;
    /// The rows that stay on one page with row `first`.
    double HeightTogether(std::size_t first) const;

    std::vector<TextSide> sides_;
    std::vector<double> lefts_;  ///< of the columns, from the table's left edge
    std::vector<double> widths_;
    Row head_;
    std::vector<Row> rows_;
    double lineHeight_ = 0;
    bool hasTotal_ = false;
};

/// The tables of a wide one, one below the other, each with the first `repeated` columns.
void AddTable(ReportPages& pages, const ReportTable& table, std::size_t repeated = 1);

}  // namespace vantor
