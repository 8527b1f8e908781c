#pragma once

#include <QComboBox>
#include <QStyledItemDelegate>

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
        return box;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        if (auto* box = dynamic_cast<QComboBox*>(editor)) box->setCurrentIndex(index.data(ChoiceRole).toInt());
    }
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        if (const auto* box = dynamic_cast<QComboBox*>(editor))
            model->setItemData(index, {{Qt::EditRole, box->currentText()}, {ChoiceRole, box->currentIndex()}});
    }

private:
    const QString heard_;
    const QStringList captions_;
};

}  // namespace vantor
