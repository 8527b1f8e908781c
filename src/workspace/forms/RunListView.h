#pragma once

#include <QSortFilterProxyModel>
#include <QTableView>
#include <functional>

#include "core/forms/TableColumns.h"
#include "workspace/forms/RunListModel.h"

namespace vantor {

/// The run list: whole rows, one of them active while there are runs, in study order until a head is clicked. Runs
/// are told by their number in the study, from 1, however the list is sorted.
class RunListView : public QTableView {
public:
    explicit RunListView(QWidget* parent);

    /// Fills the list anew; the active run keeps its number, or the last one becomes active.
    void SetRows(std::vector<RunListRow> rows, const Units& units);
    const std::vector<RunListRow>& Rows() const { return model_.Rows(); }
    void ShowStopDelay(bool shown);
    void ShowCountedOnly(bool isOn);
    int HiddenRuns() const { return model_.rowCount() - sorted_.rowCount(); }

    /// 0 for an empty list.
    int ActiveRun() const;
    void SetActiveRun(int run);
    /// In rising order, whatever the order they are shown in.
    std::vector<int> SelectedRuns() const;
    void SelectRuns(int first, int count);
    bool IsSorted() const { return sorted_.sortColumn() >= 0; }
    /// The heads and the selected rows as they are shown, a line each, parted by tabs.
    std::string SelectionAsTable() const;
    /// Shows an optional column, which something of interest now stands in.
    void ShowColumn(int column);
    /// The optional columns as entries that show and hide them.
    void FillColumnsMenu(QMenu& menu) { columns_->FillMenu(menu); }
    /// A run, from 1, became the active one; 0 for none.
    std::function<void(int run)> OnActivated;
    /// The selected runs were dragged to before that run, or behind the last one.
    std::function<void(int before)> OnMoved;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void AddToSelection(int run);
    void WidenColumns();
    /// The status fills what the other columns leave; where that is too little, the list scrolls sideways.
    void FitStatus();
    int WidthNeeded(int column) const;

    RunListModel model_;
    bool isWidening_ = false;
    /// Sorted, and without the runs that are not to be shown.
    class Shown : public QSortFilterProxyModel {
    public:
        bool CountedOnly = false;
        using QSortFilterProxyModel::invalidateFilter;

    protected:
        bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    };
    Shown sorted_;
    TableColumns* columns_;
};

}  // namespace vantor
