#include "workspace/forms/PathBox.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include "core/Text.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {

void PathBox::ShowMarked(bool marked) {
    QPalette colours;
    if (marked) {
        const ColourPair yellow = YellowPair(colours);
        colours.setColor(QPalette::Base, yellow.Background);
        colours.setColor(QPalette::Text, yellow.Text);
    }
    setPalette(colours);
    setAccessibleDescription(marked ? QStringLiteral("The folder chosen in the tree goes here.") : QString());
}

std::string PathBox::Folder() const { return std::string(Trim(FromQt(text()))); }

void PathBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    // Coming back to the window is no choice of a box.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason) OnEntered();
}

void PathBox::mousePressEvent(QMouseEvent* event) {
    QLineEdit::mousePressEvent(event);
    OnEntered();
}

void PathBox::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        OnAccepted();
    else
        QLineEdit::keyPressEvent(event);
}

}  // namespace vantor
