#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <vector>

#include "core/ports/LongWork.h"
#include "gpsobd/ReviewGrid.h"

namespace vantor {

/// The rows of a review grid for a view: in the order of the grid, or sorted by a column. What the grid does goes by
/// its own order however the view is sorted. A computed cell is told by its colour, by a symbol, in the tool tip and to
/// assistive technology.
class ReviewModel : public QAbstractTableModel {
public:
    ReviewModel(FieldLog log, LongWork& work);

    const ReviewGrid& Grid() const { return grid_; }
    /// Changes the grid, then shows it as it stands, sorted anew, even where the change ended with an error.
    void Change(const std::function<void(ReviewGrid&)>& change);
    bool GoToMissing(int row, ReviewGrid::Search search) { return grid_.GoToMissing(row, search); }
    void SetActiveRow(int row) { grid_.SetActive(row, grid_.ActiveColumn()); }

    /// Where the active cell of the grid is shown; invalid when there is no row.
    QModelIndex ActiveIndex() const;
    /// Makes the cell the active one of the grid.
    void SetActive(const QModelIndex& index);
    bool IsSorted() const { return sortColumn_ >= 0; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// By the values of the column, rows of the same value in the order of the grid; column -1 is the order of the
    /// grid.
    void sort(int column, Qt::SortOrder order) override;

private:
    /// The rows of the grid in the order they are to be shown. They are sorted beside the window; no cell has a text
    /// meanwhile.
    std::vector<int> ArrangedRows();
    int GridRow(int row) const { return rows_.at(static_cast<std::size_t>(row)); }

    LongWork& work_;
    ReviewGrid grid_;
    bool isArranging_ = false;
    std::vector<int> rows_;  ///< of the grid, in the order they are shown
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

}  // namespace vantor
