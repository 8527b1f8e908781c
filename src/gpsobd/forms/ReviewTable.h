#pragma once

#include <functional>
#include <vector>

#include "core/forms/TableColumns.h"
#include "gpsobd/forms/ReviewModel.h"

namespace vantor {

/// The grid of a review screen. Rows of one height and columns as wide as their heads and a sample of their cells, so
/// that a log of any length shows and scrolls at once. The current cell is the active one of the grid.
class ReviewTable : public QTableView {
public:
    explicit ReviewTable(QWidget* parent);

    /// Shows a model that lives as long as this.
    void Show(ReviewModel& model);
    /// What stands in an empty grid's place.
    void SetEmptyText(const QString& text);
    /// Makes the active cell of the grid the current one and brings it into view.
    void ShowActive();
    /// The same for a cell that was searched for: three rows before it stay in view.
    void ShowFound();

    /// The places of the rows with a selected cell; the active row's where none is.
    std::vector<int> SelectedPlaces() const;
    /// Makes the row at that place, or the last one, the active one.
    void ShowPlace(int place);
    /// Another row may be the active one.
    std::function<void()> OnActive;

protected:
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void FitColumns();

    ReviewModel* review_ = nullptr;
    TableColumns* columns_;
    QString emptyText_;
};

}  // namespace vantor
