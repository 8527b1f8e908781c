#include "core/forms/ItemTip.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>

#include "core/forms/Named.h"

namespace vantor {

void ShowPlainTip(QHelpEvent& event, const std::string& text, QWidget& over) {
    if (text.empty()) {
        QToolTip::hideText();
        event.ignore();
    } else {
        QToolTip::showText(event.globalPos(),
                           QStringLiteral("<p style='white-space:pre'>") + ToQt(text).toHtmlEscaped(), &over);
    }
}

bool IsInScrolledWindow(const QWidget& widget) {
    for (const QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
        const auto* area = qobject_cast<const QScrollArea*>(above);
        if (area != nullptr && area->verticalScrollBar()->maximum() > 0) return true;
    }
    return false;
}

}  // namespace vantor
