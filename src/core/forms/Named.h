#pragma once

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QString>
#include <QWidget>
#include <string>
#include <string_view>
#include <utility>

namespace vantor {

inline QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string FromQt(const QString& text) { return text.toUtf8().toStdString(); }

/// A caption without its access key mark, for assistive technology.
QString WithoutAccessKey(QString caption);

/// A control under its name. A caption also becomes its accessible name.
template <class Control>
Control* Named(QWidget* parent, const char* name) {
    auto* control = new Control(parent);
    control->setObjectName(QLatin1String(name));
    return control;
}

template <class Control>
Control* Named(QWidget* parent, const char* name, const QString& caption) {
    auto* control = Named<Control>(parent, name);
    if constexpr (std::is_base_of_v<QGroupBox, Control>)
        control->setTitle(caption);
    else
        control->setText(caption);
    control->setAccessibleName(WithoutAccessKey(caption).simplified());
    return control;
}

/// A label whose access key leads to `field`, and which names the field for assistive technology.
QLabel* LabelFor(QWidget* field, const QString& caption, const char* name = nullptr);

}  // namespace vantor
