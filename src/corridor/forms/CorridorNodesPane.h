#pragma once

#include <QToolButton>
#include <QWidget>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/forms/Table.h"
#include "corridor/CorridorNodes.h"
#include "corridor/forms/CorridorDocument.h"

class QMenu;

namespace vantor {

/// The nodes of a corridor as a table whose cells are edited, with what adds, moves and removes them.
class CorridorNodesPane : public QWidget {
public:
    CorridorNodesPane(CorridorDocument& document, QWidget* parent);

    /// Nodes of a file of the user's choice, of a run file, or of the selected run, in place of those that are there.
    void TakeFile();
    void TakeRunFile();
    void TakeSelectedRun();
    void Add();

private:
    enum Column { Name, Control, Distance, Upstream, Downstream, SpeedLimit, Columns };

    QWidget* BuildButtons();
    void FillFrom(QMenu& menu);
    void Take(const QString& text, FoundNodes found);
    void ShowNodes();
    void ShowRow(std::size_t node);
    void ShowSelected();
    void TakeCell(int row, int column, const std::string& text);
    void TakeLength(CorridorNode& node, int column, double shown);
    void Remove();
    void SetTimings();
    void Move(int by);
    int Current() const { return vaNodes_->currentRow(); }

    CorridorDocument& document_;
    Table* vaNodes_ = nullptr;
    std::vector<QToolButton*> onNode_;                      ///< what needs one
    std::vector<std::pair<QToolButton*, QString>> inMenu_;  ///< with its keys
    QToolButton* btnUp_ = nullptr;
    QToolButton* btnDown_ = nullptr;
    bool isFilling_ = false;
};

}  // namespace vantor
