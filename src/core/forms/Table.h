#pragma once

#include <QStringList>
#include <QTableWidget>
#include <optional>
#include <string>
#include <vector>

#include "core/RunRecords.h"
#include "core/Units.h"
#include "core/forms/TableColumns.h"

namespace vantor {

/// A read-only table of whole rows: no grid of its own selection, sortable by its heads, its columns as wide as
/// their texts and the last one taking the rest.
class Table : public QTableWidget {
public:
    explicit Table(QWidget* parent);

    void SetColumns(const QStringList& heads);
    /// What stands in an empty table's place.
    void SetEmptyText(const QString& text);
    /// Adds a row at the end; returns its row number while the table is not sorted.
    int AddRow();
    void SetText(int row, int column, const QString& text);
    /// A right-aligned number that sorts by its value.
    void SetNumber(int row, int column, double value, const QString& text);
    /// A text that sorts by `key`.
    void SetSorted(int row, int column, const QString& text, double key);

    /// The selected rows from top to bottom.
    std::vector<int> SelectedRows() const;
    QString Text(int row, int column) const;

    /// Row changes between these two calls do not re-sort the table under way.
    void BeginFilling();
    void EndFilling();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString emptyText_;
    TableColumns* columns_;
};

/// What a column counts, where its head does not say it; for tips, empty for any other head.
QString NoteOnHead(const QString& head);

/// Lists of runs share these columns.
QStringList RunColumns(const Units& units);
/// Fills a row of a run list: name, date, time, type, length, duration, sections, before/after, notes.
void SetRunRow(Table& table, int row, const RunHeader& header, const Units& units);

}  // namespace vantor
