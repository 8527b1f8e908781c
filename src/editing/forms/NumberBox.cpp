#include "editing/forms/NumberBox.h"

#include <QKeyEvent>
#include <utility>

namespace vantor {

bool NumberBox::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && !isModified()) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) {
            event->ignore();
            return true;
        }
    }
    return QLineEdit::event(event);
}

void NumberBox::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            // Not passed on: the dialog would press its default button.
            event->accept();
            return OnEnter();
        case Qt::Key_Escape:
            if (!isModified()) break;
            event->accept();
            OnGiveUp();
            return selectAll();
        case Qt::Key_Up:
        case Qt::Key_Down: {
            constexpr int LargeStep = 10;
            event->accept();
            heldKey_ = event->key();
            const int step = event->modifiers().testFlag(Qt::ShiftModifier) ? LargeStep : 1;
            return OnStep(event->key() == Qt::Key_Up ? step : -step);
        }
        default: break;
    }
    QLineEdit::keyPressEvent(event);
}

void NumberBox::keyReleaseEvent(QKeyEvent* event) {
    if (heldKey_ == 0 || event->key() != heldKey_) return QLineEdit::keyReleaseEvent(event);
    if (!event->isAutoRepeat()) EndSteps();
}

void NumberBox::focusOutEvent(QFocusEvent* event) {
    EndSteps();
    // Its own menu pastes into it.
    if (isModified() && event->reason() != Qt::PopupFocusReason) OnLeave();
    QLineEdit::focusOutEvent(event);
}

void NumberBox::EndSteps() {
    if (std::exchange(heldKey_, 0) != 0) OnStepped();
}

}  // namespace vantor
