#include "core/forms/Named.h"

namespace vantor {

QString WithoutAccessKey(QString caption) { return caption.remove(QLatin1Char('&')); }

QLabel* LabelFor(QWidget* field, const QString& caption, const char* name) {
    auto* label = new QLabel(caption, field->parentWidget());
    if (name != nullptr) label->setObjectName(QLatin1String(name));
    label->setBuddy(field);
    field->setAccessibleName(WithoutAccessKey(caption));
    return label;
}

}  // namespace vantor
