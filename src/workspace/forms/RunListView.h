#pragma once

#include <QSortFilterProxyModel>
#include <QTableView>

#include "core/forms/TableColumns.h"
#include "workspace/forms/RunListModel.h"

namespace vantor {

/// The run list: whole rows, one of them active while there are runs, in study order until a head is clicked. Runs
/// are told by their number in the study, from 1, however the list is sorted.
class RunListView : public QTableView {
public:
    explicit RunListView(QWidget* parent);

    /// Fills the list anew; the active run keeps its number, or the last one becomes active.
    void SetRows(std::vector<RunListRow> rows);
    const std::vector<RunListRow>& Rows() const { return model_.Rows(); }
    void ShowStopDelay(bool shown);

    /// 0 for an empty list.
    int ActiveRun() const;
    void SetActiveRun(int run);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void WidenColumns();
    /// The status fills what the other columns leave; where that is too little, the list scrolls sideways.
    void FitStatus();
    int WidthNeeded(int column) const;

    RunListModel model_;
    QSortFilterProxyModel sorted_;
    TableColumns* columns_;
};

}  // namespace vantor
