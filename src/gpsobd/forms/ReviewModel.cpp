#include "gpsobd/forms/ReviewModel.h"

#include <QGuiApplication>
#include <limits>
#include <utility>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

bool IsText(ColumnLook look) { return look == ColumnLook::Direction || look == ColumnLook::Text; }

bool IsNumber(ColumnLook look) { return !IsText(look) && look != ColumnLook::Day && look != ColumnLook::Time; }

int AlignmentOf(ColumnLook look) {
    return static_cast<int>((IsNumber(look) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

/// Cells without a value stand before all others.
double NumberKey(const SheetCell& cell) {
    if (const double* number = std::get_if<double>(&cell)) return *number;
    if (const Date* date = std::get_if<Date>(&cell)) return date->Days;
    return -std::numeric_limits<double>::infinity();
}

std::string TextKey(const SheetCell& cell) {
    const std::string* text = std::get_if<std::string>(&cell);
    return text == nullptr ? std::string() : *text;
}

}  // namespace

ReviewModel::ReviewModel(FieldLog log, LongWork& work) : grid_(std::move(log)) {
    SortIn(work);
    ShowRows(grid_.RowCount());
}

void ReviewModel::Change(const std::function<void(ReviewGrid&)>& change) {
    const auto show = [this] {
        if (IsSorted() || grid_.RowCount() != rowCount())
            ShowRows(grid_.RowCount());
        else if (rowCount() > 0)
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    };
    try {
        change(grid_);
    } catch (...) {
        show();
        throw;
    }
    show();
}

void ReviewModel::ShowProblems(std::vector<LogProblem> problems, const Units& units) {
    problems_ = std::move(problems);
    units_ = units;
    if (rowCount() > 0) emit headerDataChanged(Qt::Vertical, 0, rowCount() - 1);
}

QString ReviewModel::ProblemOf(int gridRow) const {
    return ToQt(ProblemText(ProblemsOfRow(problems_, static_cast<std::size_t>(gridRow - 1)), units_));
}

QModelIndex ReviewModel::ActiveIndex() const {
    const int row = grid_.ActiveRow() - 1;
    if (row < 0 || row >= rowCount()) return {};
    return index(Places()[static_cast<std::size_t>(row)], grid_.ActiveColumn() - 1);
}

void ReviewModel::SetActive(const QModelIndex& index) {
    if (index.isValid()) grid_.SetActive(GridRow(index.row()), index.column() + 1);
}

int ReviewModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.ColumnCount(); }

QVariant ReviewModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || IsArranging()) return {};
    const int row = GridRow(index.row());
    const int column = index.column() + 1;
    if (role == Qt::DisplayRole) return ToQt(grid_.Text(row, column));
    if (role == Qt::TextAlignmentRole) return AlignmentOf(grid_.Column(column).Look);
    if (role == Qt::AccessibleDescriptionRole) return ProblemOf(row);
    if (!grid_.IsComputed(row, column)) return role == Qt::ToolTipRole ? QVariant(ProblemOf(row)) : QVariant();
    switch (role) {
        case Qt::BackgroundRole: return GreenPair(QGuiApplication::palette()).Background;
        case Qt::ForegroundRole: return GreenPair(QGuiApplication::palette()).Text;
        case Qt::DecorationRole: return LineIcon(QStringLiteral("smooth"));
        case Qt::ToolTipRole: return QStringLiteral("Computed from the values before and after the gap.");
        case Qt::AccessibleTextRole: return ToQt(grid_.Text(row, column)) + QStringLiteral(", computed");
        default: return {};
    }
}

QVariant ReviewModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) return RowHead(GridRow(section), role);
    const ReviewColumn& column = grid_.Column(section + 1);
    if (role == Qt::DisplayRole) return ToQt(column.Caption);
    if (role == Qt::TextAlignmentRole) return AlignmentOf(column.Look);
    return {};
}

QVariant ReviewModel::RowHead(int row, int role) const {
    if (role == Qt::DisplayRole) return row;
    if (role == Qt::ToolTipRole) return ProblemOf(row);
    if (role == Qt::DecorationRole && !ProblemsOfRow(problems_, static_cast<std::size_t>(row - 1)).empty())
        return LineIcon(QStringLiteral("missing"));
    return {};
}

void ReviewModel::SortRows(std::vector<int>& rows, int column, Qt::SortOrder order) const {
    const auto value = [&](int row) { return grid_.Value(row + 1, column + 1); };
    if (IsText(grid_.Column(column + 1).Look))
        SortByKey(rows, order, [&](int row) { return TextKey(value(row)); });
    else
        SortByKey(rows, order, [&](int row) { return NumberKey(value(row)); });
}

}  // namespace vantor
