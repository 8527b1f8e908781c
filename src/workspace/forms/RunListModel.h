#pragma once

#include <QAbstractTableModel>
#include <QFontMetrics>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/Units.h"

namespace vantor {

/// The rows of the run list in study order: row 0 is run 1. The state of a run is told by the row's colour, by a
/// symbol, in words, in the tool tip and to assistive technology.
class RunListModel : public QAbstractTableModel {
public:
    /// Those behind the status are shown where the user wants them.
    enum Column {
        Name,
        Date,
        Time,
        Type,
        ControlDelay,
        LOSGrade,
        StopDelay,
        Status,
        Start,
        End,
        TravelTime,
        MeanSpeed,
        Stops,
        BeforeAfter,
        Period,
        Warnings,
        SetAside,
        ColumnCount
    };
    /// What a column sorts by.
    static constexpr int SortRole = Qt::UserRole;

    using QAbstractTableModel::QAbstractTableModel;

    void SetRows(std::vector<RunListRow> rows, const Units& units);
    const std::vector<RunListRow>& Rows() const { return rows_; }
    /// The row whose text in a column is the widest, as near as the widths of its letters tell; -1 without rows.
    int WidestRow(int column, const QFontMetrics& font) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }

private:
    std::vector<RunListRow> rows_;
    Units units_;
};

}  // namespace vantor
