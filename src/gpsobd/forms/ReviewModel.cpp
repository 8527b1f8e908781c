#include "gpsobd/forms/ReviewModel.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <algorithm>
#include <limits>
#include <numeric>

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

/// Sorts rows, which count from 1, by their keys.
template <class KeyOf>
void SortByKey(std::vector<int>& rows, Qt::SortOrder order, KeyOf keyOf) {
    std::vector<decltype(keyOf(0))> keys;
    keys.reserve(rows.size());
    for (const int row : rows) keys.push_back(keyOf(row));
    const auto key = [&](int row) -> const auto& { return keys[static_cast<std::size_t>(row - 1)]; };
    if (order == Qt::AscendingOrder)
        std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) { return key(left) < key(right); });
    else
        std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) { return key(right) < key(left); });
}

}  // namespace

ReviewModel::ReviewModel(FieldLog log, LongWork& work) : work_(work), grid_(std::move(log)) { rows_ = ArrangedRows(); }

void ReviewModel::Change(const std::function<void(ReviewGrid&)>& change) {
    const auto show = [this] {
        if (IsSorted() || grid_.RowCount() != rowCount()) {
            std::vector<int> rows = ArrangedRows();
            beginResetModel();
            rows_ = std::move(rows);
            endResetModel();
        } else if (!rows_.empty()) {
            emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        }
    };
    try {
        change(grid_);
    } catch (...) {
        show();
        throw;
    }
    show();
}

QModelIndex ReviewModel::ActiveIndex() const {
    const auto row = std::find(rows_.begin(), rows_.end(), grid_.ActiveRow());
    return row == rows_.end() ? QModelIndex() : index(static_cast<int>(row - rows_.begin()), grid_.ActiveColumn() - 1);
}

void ReviewModel::SetActive(const QModelIndex& index) {
    if (index.isValid()) grid_.SetActive(GridRow(index.row()), index.column() + 1);
}

int ReviewModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ReviewModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.ColumnCount(); }

QVariant ReviewModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || isArranging_) return {};
    const int row = GridRow(index.row());
    const int column = index.column() + 1;
    if (role == Qt::DisplayRole) return ToQt(grid_.Text(row, column));
    if (role == Qt::TextAlignmentRole) return AlignmentOf(grid_.Column(column).Look);
    if (!grid_.IsComputed(row, column)) return {};
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
    if (orientation == Qt::Vertical) return role == Qt::DisplayRole ? QVariant(GridRow(section)) : QVariant();
    const ReviewColumn& column = grid_.Column(section + 1);
    if (role == Qt::DisplayRole) return ToQt(column.Caption);
    if (role == Qt::TextAlignmentRole) return AlignmentOf(column.Look);
    return {};
}

void ReviewModel::sort(int column, Qt::SortOrder order) {
    sortColumn_ = column;
    sortOrder_ = order;
    std::vector<int> rows = ArrangedRows();
    const QModelIndexList before = persistentIndexList();
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    std::vector<int> gridRows;
    for (const QModelIndex& cell : before) gridRows.push_back(GridRow(cell.row()));
    rows_ = std::move(rows);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto row = std::find(rows_.begin(), rows_.end(), gridRows[static_cast<std::size_t>(i)]);
        after += index(static_cast<int>(row - rows_.begin()), before[i].column());
    }
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

std::vector<int> ReviewModel::ArrangedRows() {
    std::vector<int> rows(static_cast<std::size_t>(grid_.RowCount()));
    std::iota(rows.begin(), rows.end(), 1);
    if (!IsSorted()) return rows;
    const int column = sortColumn_ + 1;
    const QScopedValueRollback arranging(isArranging_, true);
    work_.Run("Sorting the rows", [&](FileSystem&, const Progress&) {
        if (IsText(grid_.Column(column).Look))
            SortByKey(rows, sortOrder_, [&](int row) { return TextKey(grid_.Value(row, column)); });
        else
            SortByKey(rows, sortOrder_, [&](int row) { return NumberKey(grid_.Value(row, column)); });
    });
    return rows;
}

}  // namespace vantor
