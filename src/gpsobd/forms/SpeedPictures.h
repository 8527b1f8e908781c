#pragma once

#include <QStyledItemDelegate>
#include <functional>

#include "analysis/ProfileTrace.h"

namespace vantor {

/// Paints a run's speed over its distance into the cells of a column, as high as the row.
class SpeedPictures : public QStyledItemDelegate {
public:
    /// The run of a row; nothing for a row without one.
    using TraceOfRow = std::function<const ProfileTrace*(int row)>;

    SpeedPictures(QObject* parent, TraceOfRow traceOf) : QStyledItemDelegate(parent), traceOf_(std::move(traceOf)) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    TraceOfRow traceOf_;
};

}  // namespace vantor
