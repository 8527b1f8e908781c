#include "gpsobd/forms/GroupCells.h"

#include <QComboBox>
#include <QLineEdit>

#include "core/Text.h"
#include "core/forms/Named.h"

namespace vantor {

QWidget* GroupCells::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const {
    auto* box = Named<QComboBox>(parent, "cmbRowGroup");
    box->setAccessibleName(QStringLiteral("Study Group of the row"));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& group : Groups()) box->addItem(ToQt(group));
    // What is chosen in the list, or typed as it stands there, is entered at once; but the key that chose it, and that
    // goes on to the window, must still find the editor open.
    auto* cells = const_cast<GroupCells*>(this);
    connect(box, &QComboBox::activated, box, [box] { box->lineEdit()->setModified(true); });
    const auto enter = [cells, box] {
        if (box->isHidden()) return;  // Enter has closed it
        emit cells->commitData(box);
        emit cells->closeEditor(box);
    };
    connect(box, &QComboBox::activated, box, enter, Qt::QueuedConnection);
    return box;
}

void GroupCells::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* box = qobject_cast<QComboBox*>(editor);
    box->setCurrentText(index.data().toString());
    box->lineEdit()->selectAll();
}

void GroupCells::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const {
    // A cell that is merely left keeps its group, and so do the other selected rows.
    const auto* box = qobject_cast<QComboBox*>(editor);
    if (box->lineEdit()->isModified()) OnEntered(index.row(), std::string(Trim(FromQt(box->currentText()))));
}

}  // namespace vantor
