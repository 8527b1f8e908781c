#pragma once

#include "core/forms/Table.h"
#include "statistics/StatisticsTables.h"

namespace vantor {

/// Shows a table of the statistics in its own order: weak figures greyed, the total bold, notes as tool tips.
class StatisticsTableView : public Table {
public:
    explicit StatisticsTableView(QWidget* parent);

    void Show(StatisticsTable table);
    /// High enough to show that many rows without scrolling.
    void NeedRows(int rows);

protected:
    void changeEvent(QEvent* event) override;

private:
    void ShowLooks();

    StatisticsTable shown_;
};

}  // namespace vantor
