#pragma once

#include <QAbstractTableModel>
#include <algorithm>
#include <utility>
#include <vector>

#include "core/ports/LongWork.h"

namespace vantor {

/// The rows of a table, which count from 0, in the order they are shown: that of the data, or sorted by a column, rows
/// of the same value in the order of the data. They are sorted beside the window where there is somebody to do it; no
/// cell has a text meanwhile.
class SortedModel : public QAbstractTableModel {
public:
    void SortIn(LongWork& work) { work_ = &work; }
    /// The row of the data that is shown there.
    int RowAt(int shown) const { return rows_.at(static_cast<std::size_t>(shown)); }
    /// Where each row of the data is shown.
    std::vector<int> Places() const;
    bool IsSorted() const { return sortColumn_ >= 0 && sortColumn_ < columnCount(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// Column -1 is the order of the data.
    void sort(int column, Qt::SortOrder order) override;
    /// Sorts anew by the column that is sorted by.
    void SortAgain() { sort(sortColumn_, sortOrder_); }

protected:
    /// Shows that many rows of data that may be other ones.
    void ShowRows(int count);
    bool IsArranging() const { return isArranging_; }
    /// Sorts rows of the data by the values of a column.
    virtual void SortRows(std::vector<int>& rows, int column, Qt::SortOrder order) const = 0;

private:
    std::vector<int> Arranged(int count);

    LongWork* work_ = nullptr;
    std::vector<int> rows_;  ///< of the data, in the order they are shown
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    bool isArranging_ = false;
};

/// Sorts rows by what `keyOf` says of each, which it is asked once.
template <class KeyOf>
void SortByKey(std::vector<int>& rows, Qt::SortOrder order, KeyOf keyOf) {
    std::vector<std::pair<decltype(keyOf(0)), int>> keyed;
    keyed.reserve(rows.size());
    for (const int row : rows) keyed.emplace_back(keyOf(row), row);
    std::stable_sort(keyed.begin(), keyed.end(), [order](const auto& left, const auto& right) {
        return order == Qt::AscendingOrder ? left.first < right.first : right.first < left.first;
    });
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = keyed[i].second;
}

}  // namespace vantor
