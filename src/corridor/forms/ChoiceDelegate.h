#pragma once

#include <QComboBox>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <QTimer>

namespace vantor {

/// Of a cell's item: the index of the caption that is chosen.
inline constexpr int ChoiceRole = Qt::UserRole;

/// Lets the user choose one of the captions for a cell.
class ChoiceDelegate : public QStyledItemDelegate {
public:
    ChoiceDelegate(const QString& heard, const QStringList& captions, QObject* parent)
        : QStyledItemDelegate(parent), heard_(heard), captions_(captions) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override {
        auto* box = new QComboBox(parent);
        box->setAccessibleName(heard_);
        box->addItems(captions_);
        auto* self = const_cast<ChoiceDelegate*>(this);
        connect(box, &QComboBox::activated, self, [self, box] {
            emit self->commitData(box);
            emit self->closeEditor(box);
        });
        // The arrow keys move in the list; in the closed box each step would be a choice.
        QTimer::singleShot(0, box, [box] {
            if (box->isVisible()) box->showPopup();
        });
        return box;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        if (auto* box = dynamic_cast<QComboBox*>(editor)) box->setCurrentIndex(index.data(ChoiceRole).toInt());
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        if (const auto* box = dynamic_cast<QComboBox*>(editor))
            model->setItemData(index, {{Qt::EditRole, box->currentText()}, {ChoiceRole, box->currentIndex()}});
    }

protected:
    bool eventFilter(QObject* editor, QEvent* event) override {
        auto* box = qobject_cast<QComboBox*>(editor);
        const bool isKey = box != nullptr && event->type() == QEvent::KeyPress;
        const int key = isKey ? dynamic_cast<QKeyEvent&>(*event).key() : 0;
        if (key != Qt::Key_Return && key != Qt::Key_Enter) return QStyledItemDelegate::eventFilter(editor, event);
        // The box would let the key through, which would press the window's main button.
        emit commitData(box);
        emit closeEditor(box);
        return true;
    }

private:
    const QString heard_;
    const QStringList captions_;
};

}  // namespace vantor
