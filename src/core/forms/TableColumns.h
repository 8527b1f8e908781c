#pragma once

#include <QMenu>
#include <QTableView>
#include <functional>
#include <set>
#include <string>

namespace vantor {

/// The look of a read-only list of whole rows that its heads sort.
void LookLikeAList(QTableView& table);

/// Paints what stands in the place of a list's rows where it has none; for the end of its paint event.
void PaintEmptyText(QTableView& table, const QString& text);

/// The columns of a table: a width that the user drags stays, also for the next time, and the program leaves it alone;
/// all others are the program's to fit. A text that does not fit into its cell is shown whole as a tool tip.
class TableColumns : public QObject {
public:
    /// Lives as long as the table. To be made after the table's own connections.
    explicit TableColumns(QTableView& table);

    bool IsDragged(int column) const { return dragged_.contains(column); }
    /// Widens a column that nobody dragged.
    void WidenTo(int column, int width);

    /// Makes a column one that the user shows and hides, in a menu of the heads.
    void MakeOptional(int column, bool isShownAtFirst);
    /// An entry for each optional column.
    void FillMenu(QMenu& menu);
    /// The user has shown or hidden a column.
    std::function<void()> OnShown;

    /// The dragged widths, the optional columns and the order of the rows, as a text that Restore takes.
    std::string State() const;
    /// A text that is none of State's is passed over.
    void Restore(const std::string& state);
    QString TableName() const { return table_.objectName(); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void NoteResize(int column);
    bool ShowWholeText(const QPoint& place, const QPoint& globalPlace);
    bool ShowWholeHead(int x, const QPoint& globalPlace);

    QTableView& table_;
    std::set<int> dragged_;
    std::set<int> optional_;
    bool isPressed_ = false;
};

}  // namespace vantor
