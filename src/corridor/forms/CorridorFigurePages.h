#pragma once

#include <QWidget>
#include <cstddef>
#include <vector>

#include "core/Csv.h"
#include "core/forms/WrappedLabel.h"
#include "corridor/forms/CorridorDocument.h"
#include "statistics/forms/StatisticsTableView.h"

namespace vantor {

/// The matrix of delays, the runs behind its chosen cell, and the sections.
class CorridorResultsPage : public QWidget {
public:
    CorridorResultsPage(CorridorDocument& document, QWidget* parent);
    std::vector<SheetRow> Sheet() const;

private:
    void ShowFigures();
    /// What stands behind the chosen cell.
    void ShowCell();
    void ShowSelected();
    const NodeFigures* Chosen() const;

    CorridorDocument& document_;
    StatisticsTableView* vaDelays_ = nullptr;
    WrappedLabel* lblCell_ = nullptr;
    QWidget* behind_ = nullptr;
    QLabel* lblBehind_ = nullptr;
    StatisticsTableView* vaNodeRuns_ = nullptr;
    std::vector<std::size_t> rows_;  ///< of the runs behind the cell, in the matched ones
    StatisticsTableView* vaSections_ = nullptr;
    bool isFilling_ = false;
};

/// The runs before against those after.
class CorridorComparedPage : public QWidget {
public:
    CorridorComparedPage(CorridorDocument& document, QWidget* parent);
    std::vector<SheetRow> Sheet() const;

private:
    void ShowFigures();

    CorridorDocument& document_;
    WrappedLabel* lblSentences_ = nullptr;
    StatisticsTableView* vaCompared_ = nullptr;
};

}  // namespace vantor
