#pragma once

#include <functional>
#include <vector>

#include "core/forms/SortedModel.h"
#include "gpsobd/LogProblems.h"
#include "gpsobd/ReviewGrid.h"

namespace vantor {

/// The rows of a review grid for a view: in the order of the grid, or sorted by a column. What the grid does goes by
/// its own order however the view is sorted. A computed cell is told by its colour, by a symbol, in the tool tip and to
/// assistive technology; a row with a problem by a symbol beside its number, in the tip and to that technology.
class ReviewModel : public SortedModel {
public:
    ReviewModel(FieldLog log, LongWork& work);

    const ReviewGrid& Grid() const { return grid_; }
    /// Changes the grid, then shows it as it stands, sorted anew, even where the change ended with an error.
    void Change(const std::function<void(ReviewGrid&)>& change);
    bool GoToMissing(int row, ReviewGrid::Search search) { return grid_.GoToMissing(row, search); }
    void SetActiveRow(int row) { grid_.SetActive(row, grid_.ActiveColumn()); }

    /// Marks the rows of the grid that have problems.
    void ShowProblems(std::vector<LogProblem> problems, const Units& units);
    const std::vector<LogProblem>& Problems() const { return problems_; }
    /// What is wrong with a row of the grid, from 1; empty where nothing is.
    QString ProblemOf(int gridRow) const;

    /// Where the active cell of the grid is shown; invalid when there is no row.
    QModelIndex ActiveIndex() const;
    /// The row of the grid, from 1, that is shown there.
    int GridRow(int shown) const { return RowAt(shown) + 1; }
    /// Makes the cell the active one of the grid.
    void SetActive(const QModelIndex& index);

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    void SortRows(std::vector<int>& rows, int column, Qt::SortOrder order) const override;

private:
    QVariant RowHead(int row, int role) const;

    ReviewGrid grid_;
    std::vector<LogProblem> problems_;
    Units units_;
};

}  // namespace vantor
