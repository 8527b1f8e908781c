#pragma once

#include "core/forms/Table.h"
#include "core/forms/WrappedLabel.h"
#include "statistics/StatisticsTables.h"

namespace vantor {

/// Shows a table of the statistics in its own order: weak figures greyed, the total bold, notes as tool tips and, of
/// the current row, in a label.
class StatisticsTableView : public Table {
public:
    explicit StatisticsTableView(QWidget* parent);

    void Show(StatisticsTable table);
    /// Tells there what qualifies the current row.
    void TellIn(WrappedLabel* label) { label_ = label; }
    /// Cells are chosen, not rows, and weak ones are hatched.
    void ChooseCells();
    /// High enough to show that many rows without scrolling.
    void NeedRows(int rows);

protected:
    void changeEvent(QEvent* event) override;

private:
    void ShowLooks();
    void ShowWeak(QTableWidgetItem& cell);
    void TellOfRow();

    StatisticsTable shown_;
    WrappedLabel* label_ = nullptr;
    bool isFilling_ = false;
    bool hatchesWeak_ = false;
};

}  // namespace vantor
