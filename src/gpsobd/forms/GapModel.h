#pragma once

#include <QAbstractTableModel>
#include <vector>

#include "core/Units.h"
#include "gpsobd/LogGaps.h"

namespace vantor {

/// "as standing", "by position" or "by the speeds beside it".
QString GapFillText(GapFill fill);

/// The gaps of a log for a view, of which there may be one a row of the log: in order of run and time, or sorted by a
/// column.
class GapModel : public QAbstractTableModel {
public:
    explicit GapModel(const Units& units) : units_(units) {}

    void SetGaps(std::vector<LogGap> gaps);
    const std::vector<LogGap>& Gaps() const { return gaps_; }
    /// The gap in a row as it is shown.
    const LogGap& GapIn(int row) const { return gaps_[static_cast<std::size_t>(rows_.at(std::size_t(row)) - 1)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    enum Column { Run, From, To, Seconds, ByPosition, BySpeeds, Filled, ColumnCount };
    void Arrange();
    QString TextOf(const LogGap& gap, int column) const;

    Units units_;
    std::vector<LogGap> gaps_;
    std::vector<int> rows_;  ///< of gaps_, from 1, in the order they are shown
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

}  // namespace vantor
