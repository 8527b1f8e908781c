#include "core/forms/FigureLabel.h"

#include "core/forms/Accessible.h"
#include "core/forms/Named.h"

namespace vantor {

QSize FigureLabel::sizeHint() const {
    const QSize text = QLabel::sizeHint();
    const int around = 2 * (margin() + frameWidth()) + contentsMargins().left() + contentsMargins().right();
    return text.expandedTo({fontMetrics().horizontalAdvance(widest_) + around, text.height()});
}

FigureLabel* Figure(QWidget* parent, const char* name, const QString& caption, const QString& widest) {
    auto* figure = Named<FigureLabel>(parent, name);
    figure->setTextFormat(Qt::PlainText);
    figure->SetWidest(widest);
    SetValueCaption(*figure, caption);
    return figure;
}

}  // namespace vantor
