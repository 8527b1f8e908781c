#include "reports/ReportTable.h"

#include <algorithm>
#include <numeric>

#include "reports/ReportText.h"

namespace vantor {
namespace {

constexpr double ColumnGap = 6;  ///< between columns, at least
constexpr double GoodGap = 10;   ///< where there is room for it
constexpr double RowPadding = 4;
/// Texts of more words than fit into this are wrapped where the page is narrow.
constexpr double LeastWrapped = 70;

/// The least width of a column: all of a text that must not wrap, in bold for the total.
double LeastWidth(const ReportTable& table, std::size_t column, const TextMeasure& measure) {
    const ReportColumn& shown = table.Columns[column];
    double width = WidestWord(shown.Head, CellHeadStyle, measure);
    for (const auto& row : table.Rows) {
        const bool isTotal = table.HasTotal && &row == &table.Rows.back();
        const TextStyle& style = isTotal ? CellHeadStyle : CellStyle;
        const double text = measure.TextWidth(row[column], style);
        width = std::max(width, shown.Wraps ? std::min(text, LeastWrapped) : text);
    }
    return width;
}

double NaturalWidth(const ReportTable& table, std::size_t column, const TextMeasure& measure) {
    double width = LeastWidth(table, column, measure);
    if (!table.Columns[column].Wraps) return width;
    for (const auto& row : table.Rows) width = std::max(width, measure.TextWidth(row[column], CellHeadStyle));
    return width;
}

}  // namespace

ReportTable WithColumns(const ReportTable& table, const std::vector<std::size_t>& columns) {
    ReportTable part;
    part.HasTotal = table.HasTotal;
    for (const std::size_t column : columns) part.Columns.push_back(table.Columns[column]);
    for (const auto& row : table.Rows) {
        part.Rows.emplace_back();
        for (const std::size_t column : columns) part.Rows.back().push_back(row[column]);
    }
    return part;
}

std::vector<ReportTable> SplitToWidth(const ReportTable& table, double width, const TextMeasure& measure,
                                      std::size_t repeated) {
    std::vector<ReportTable> parts;
    std::vector<std::size_t> leading(std::min(repeated, table.Columns.size()));
    std::iota(leading.begin(), leading.end(), std::size_t{0});
    double leadingWidth = -ColumnGap;
    for (const std::size_t column : leading) leadingWidth += ColumnGap + LeastWidth(table, column, measure);
    std::vector<std::size_t> columns = leading;
    double used = leadingWidth;
    for (std::size_t column = leading.size(); column < table.Columns.size(); ++column) {
        const double needed = ColumnGap + LeastWidth(table, column, measure);
        if (used + needed > width && columns.size() > leading.size()) {
            parts.push_back(WithColumns(table, columns));
            columns = leading;
            used = leadingWidth;
        }
        columns.push_back(column);
        used += needed;
    }
    parts.push_back(WithColumns(table, columns));
    return parts;
}

TableLayout::TableLayout(const ReportTable& table, double width, const TextMeasure& measure)
    : lineHeight_(measure.LineHeight(CellStyle)), hasTotal_(table.HasTotal) {
    std::vector<std::string> heads;
    for (const ReportColumn& column : table.Columns) {
        sides_.push_back(column.Side);
        heads.push_back(column.Head);
    }
    SetWidths(table, width, measure);
    head_ = MakeRow(heads, true, measure);
    for (const auto& row : table.Rows)
        rows_.push_back(MakeRow(row, table.HasTotal && &row == &table.Rows.back(), measure));
}

void TableLayout::SetWidths(const ReportTable& table, double width, const TextMeasure& measure) {
    const std::size_t count = table.Columns.size();
    const auto gaps = static_cast<double>(count - 1);
    std::vector<double> wanted;
    for (std::size_t column = 0; column < count; ++column) {
        widths_.push_back(LeastWidth(table, column, measure));
        wanted.push_back(NaturalWidth(table, column, measure) - widths_.back());
    }
    const auto sum = [](const std::vector<double>& lengths) {
        return std::accumulate(lengths.begin(), lengths.end(), 0.0);
    };
    if (const double allWanted = sum(wanted); allWanted > 0) {
        const double share = std::clamp((width - sum(widths_) - GoodGap * gaps) / allWanted, 0.0, 1.0);
        for (std::size_t column = 0; column < count; ++column) widths_[column] += wanted[column] * share;
    }
    // What is left over goes to the columns and between them alike; the first column stays at the edge.
    const double more = count > 1 ? std::max(0.0, width - sum(widths_) - GoodGap * gaps) / gaps / 2 : 0;
    for (std::size_t column = 1; column < count; ++column) widths_[column] += more;
    const double gap = count > 1 ? (width - sum(widths_)) / gaps : 0;
    double left = 0;
    for (const double columnWidth : widths_) {
        lefts_.push_back(left);
        left += columnWidth + gap;
    }
}

TableLayout::Row TableLayout::MakeRow(const std::vector<std::string>& texts, bool isBold,
                                      const TextMeasure& measure) const {
    Row row;
    row.IsBold = isBold;
    std::size_t most = 1;
    for (std::size_t column = 0; column < texts.size(); ++column) {
        row.Lines.push_back(WrappedLines(texts[column], widths_[column], isBold ? CellHeadStyle : CellStyle, measure));
        most = std::max(most, row.Lines.back().size());
    }
    row.Height = static_cast<double>(most) * lineHeight_ + RowPadding;
    return row;
}

double TableLayout::Height() const {
    return std::accumulate(rows_.begin(), rows_.end(), head_.Height,
                           [](double sum, const Row& row) { return sum + row.Height; });
}

double TableLayout::HeightTogether(std::size_t first) const {
    // The first two rows stay together below the heads, the last two with the total.
    std::size_t last = first == 0 ? 1 : first;
    if (hasTotal_ && last + 2 == rows_.size()) ++last;
    double height = 0;
    for (std::size_t row = first; row <= last && row < rows_.size(); ++row) height += rows_[row].Height;
    return height;
}

double TableLayout::HeightOfStart() const { return head_.Height + HeightTogether(0); }

void TableLayout::AddTo(ReportPages& pages) const {
    pages.Need(HeightOfStart());
    AddHead(pages);
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (row > 0 && pages.Need(HeightTogether(row))) AddHead(pages);
        AddRow(pages, rows_[row]);
    }
}

void TableLayout::AddHead(ReportPages& pages) const {
    const double y = pages.Take(head_.Height);
    DrawCells(pages, head_, y, true);
    pages.DrawRule(y + head_.Height, ReportRule);
}

void TableLayout::AddRow(ReportPages& pages, const Row& row) const {
    const double y = pages.Take(row.Height);
    if (row.IsBold) pages.DrawRule(y, ReportRule);
    DrawCells(pages, row, y, false);
    pages.DrawRule(y + row.Height, row.IsBold ? ReportRule : ReportFaintRule);
}

void TableLayout::DrawCells(ReportPages& pages, const Row& row, double y, bool atBottom) const {
    for (std::size_t column = 0; column < row.Lines.size(); ++column) {
        const TextStyle style = OnSide(row.IsBold ? CellHeadStyle : CellStyle, sides_[column]);
        const auto& lines = row.Lines[column];
        const double ownHeight = static_cast<double>(lines.size()) * lineHeight_;
        double top = y + (atBottom ? row.Height - RowPadding / 2 - ownHeight : RowPadding / 2);
        for (const std::string& line : lines) {
            pages.DrawText({pages.Left() + lefts_[column], top, widths_[column], lineHeight_}, line, style);
            top += lineHeight_;
        }
    }
}

void AddTable(ReportPages& pages, const ReportTable& table, std::size_t repeated) {
    for (const ReportTable& part : SplitToWidth(table, pages.Width(), pages.Measure(), repeated)) {
        TableLayout(part, pages.Width(), pages.Measure()).AddTo(pages);
        pages.Skip(RowPadding);
    }
}

}  // namespace vantor
