#pragma once

#include <QTabWidget>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "core/AppContext.h"
#include "core/Position.h"
#include "core/ports/LongWork.h"
#include "gpsobd/ReviewedRun.h"
#include "map/forms/MapView.h"
#include "plots/forms/PlotView.h"

namespace vantor {

/// The rows of a review as they stand now, with what is wrong with them.
struct ReviewedRows {
    std::vector<RunPoint> Points;
    std::vector<LogProblem> Problems;
};

/// The run of the selected row beside the grid of a review: its speeds over time, and its way on a map where it has
/// positions, each with the row's place. They are made beside the window; which of them is shown stays for the next
/// review.
class ReviewViews : public QTabWidget {
public:
    /// `hasPositions`: the log's points have places for positions.
    ReviewViews(AppContext& context, bool hasPositions, QWidget* parent);

    /// The rows were changed.
    void ShowRows(std::shared_ptr<const ReviewedRows> rows);
    /// The row, from 1, is the selected one; 0 for none.
    void ShowRow(int row);
    /// The user chose a row.
    std::function<void(int row)> OnRow;
    /// What a context menu has more.
    void Extend(const std::function<void(QMenu& menu)>& extend);

protected:
    void showEvent(QShowEvent* event) override;

private:
    bool IsMade() const;
    void MakeRun();
    void ShowWhenMade();
    void ShowPlace();
    void OfferMap();
    void ChooseRow(int place);
    void ChoosePlace(const Position& place);

    AppContext& context_;
    const bool hasPositions_;
    PlotView* trace_;
    MapView* map_;
    std::unique_ptr<LongWork> work_;
    QTimer whenMade_;
    std::shared_ptr<const ReviewedRows> rows_;
    int row_ = 0;
    ReviewedRun run_;                             ///< the one that is shown; the trace and the map have its contents
    std::shared_ptr<const ReviewedRows> ofRows_;  ///< what that was made of
    std::shared_ptr<ReviewedRun> making_;
    std::shared_ptr<const ReviewedRows> makingOf_;
};

}  // namespace vantor
