#pragma once

#include <QTableView>

#include "editing/RunDetails.h"

namespace vantor {

class NodeModel;

/// The nodes of a run, one a row: number, name, second and distance. Names are edited in place, and the distances of
/// inserted nodes.
class NodeTable : public QTableView {
public:
    enum Column { Number, Name, Second, Distance, ColumnCount };

    explicit NodeTable(QWidget* parent);

    /// `details` must outlive the table or the next call.
    void SetDetails(RunDetails& details);
    /// Shows the nodes as they are now, the active cell where it was as far as there is one.
    void Refresh();
    /// The row of the active cell, from 0; -1 for none.
    int ActiveRow() const;
    void Activate(int row, Column column);
    /// Activates a cell and opens its editor.
    void Edit(int row, Column column);
    /// Takes over what is being typed.
    void CommitEditor();

protected:
    /// Enter edits the active cell; in an editor it ends there and must not press the window's default button.
    void keyPressEvent(QKeyEvent* event) override;

private:
    NodeModel* model_;
};

}  // namespace vantor
