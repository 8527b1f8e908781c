#include "core/forms/Accessible.h"

#include <QAccessibleWidget>
#include <QVariant>

namespace vantor {
namespace {

constexpr const char* RoleProperty = "accessibleRole";
constexpr const char* CaptionProperty = "valueCaption";

class CaptionedValue : public QAccessibleWidget {
public:
    CaptionedValue(QLabel& value, QString caption)
        : QAccessibleWidget(&value, QAccessible::StaticText), value_(value), caption_(std::move(caption)) {}

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) return QAccessibleWidget::text(kind);
        const QString shown = value_.text().simplified();
        return shown.isEmpty() ? caption_ : QStringLiteral("%1: %2").arg(caption_, shown);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }

private:
    QLabel& value_;
    const QString caption_;
};

/// Nothing for widgets that Qt describes well enough itself.
QAccessibleInterface* Describe(const QString&, QObject* object) {
    const QVariant caption = object->property(CaptionProperty);
    if (caption.isValid()) return new CaptionedValue(static_cast<QLabel&>(*object), caption.toString());
    const QVariant role = object->property(RoleProperty);
    if (!role.isValid()) return nullptr;
    return new QAccessibleWidget(static_cast<QWidget*>(object), static_cast<QAccessible::Role>(role.toInt()));
}

void Mark(QWidget& widget, const char* property, const QVariant& value) {
    QAccessible::installFactory(Describe);  // once, however often it is asked for
    // One that was made already, because a screen reader is listening, is no longer right.
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&widget)));
    widget.setProperty(property, value);
}

}  // namespace

void SetAccessibleRole(QWidget& widget, QAccessible::Role role) { Mark(widget, RoleProperty, static_cast<int>(role)); }

void SetValueCaption(QLabel& value, const QString& caption) { Mark(value, CaptionProperty, caption); }

void SetCellNote(QTableWidgetItem& cell, const QString& note) {
    cell.setToolTip(note);
    cell.setData(Qt::AccessibleDescriptionRole, note);
}

}  // namespace vantor
