#pragma once

#include <QTableView>
#include <functional>
#include <memory>
#include <vector>

#include "core/forms/TableColumns.h"
#include "core/ports/LongWork.h"

namespace vantor {

/// A read-only list of whole rows, of any length: texts are made for the cells on view alone. Its rows are told by
/// their number, from 0, in the order that they have unsorted. Its columns are as wide as their heads and a sample of
/// their cells; the last one takes the rest.
class LongList : public QTableView {
public:
    struct Column {
        QString Head;
        std::function<QString(int row)> Text;
        /// What a number, a day or a time sorts by; none: the text.
        std::function<double(int row)> Key = {};
        bool IsNumber = false;  ///< stands at the right
    };

    explicit LongList(QWidget* parent);
    ~LongList() override;

    void SetColumns(std::vector<Column> columns);
    /// What is to be said of a cell, as a tool tip and to assistive technology.
    void SetNotes(std::function<QString(int row, int column)> noteOf);
    /// What stands in an empty list's place.
    void SetEmptyText(const QString& text);
    /// Sorts there, beside the window. The columns' functions are called on that thread then.
    void SortIn(LongWork& work);

    /// Shows so many rows, none selected.
    void Show(int count);
    /// Shows the texts anew; the selected rows stay selected.
    void Refresh();

    int RowCount() const;
    /// From top to bottom as they are shown.
    std::vector<int> SelectedRows() const;
    void SelectRows(const std::vector<int>& rows);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Model;
    void WidenColumns();

    std::unique_ptr<Model> model_;
    TableColumns* columns_ = nullptr;
    QString emptyText_;
};

}  // namespace vantor
