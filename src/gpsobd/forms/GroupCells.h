#pragma once

#include <QStyledItemDelegate>
#include <functional>
#include <string>
#include <vector>

namespace vantor {

/// Cells in which a Study Group is chosen or typed.
class GroupCells : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Those that are offered.
    std::function<std::vector<std::string>()> Groups;
    /// The user entered one in that row; empty where it was cleared.
    std::function<void(int row, const std::string& group)> OnEntered;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};

}  // namespace vantor
