#include "core/forms/SortedModel.h"

#include <QScopedValueRollback>
#include <numeric>

namespace vantor {

std::vector<int> SortedModel::Places() const {
    std::vector<int> places(rows_.size());
    for (std::size_t shown = 0; shown < rows_.size(); ++shown)
        places[static_cast<std::size_t>(rows_[shown])] = static_cast<int>(shown);
    return places;
}

int SortedModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

void SortedModel::sort(int column, Qt::SortOrder order) {
    sortColumn_ = column;
    sortOrder_ = order;
    std::vector<int> rows = Arranged(rowCount());
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> rowsBefore;
    for (const QModelIndex& cell : before) rowsBefore.push_back(RowAt(cell.row()));
    rows_ = std::move(rows);
    const std::vector<int> places = Places();
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after += index(places[static_cast<std::size_t>(rowsBefore[static_cast<std::size_t>(i)])], before[i].column());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, VerticalSortHint);
}

void SortedModel::ShowRows(int count) {
    std::vector<int> rows = Arranged(count);
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

std::vector<int> SortedModel::Arranged(int count) {
    std::vector<int> rows(static_cast<std::size_t>(count));
    std::iota(rows.begin(), rows.end(), 0);
    if (!IsSorted()) return rows;
    if (work_ == nullptr) {
        SortRows(rows, sortColumn_, sortOrder_);
        return rows;
    }
    const QScopedValueRollback arranging(isArranging_, true);
    work_->Run("Sorting the list", [&](FileSystem&, const Progress&) { SortRows(rows, sortColumn_, sortOrder_); });
    return rows;
}

}  // namespace vantor
