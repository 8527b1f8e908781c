#include "core/forms/PortList.h"

#include <QLineEdit>

#include "core/Numeric.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {

void FillPorts(QComboBox& list, SerialPort& ports) {
    for (std::int16_t number = SerialPort::FirstNumber; number <= SerialPort::LastNumber; ++number) {
        if (!ports.IsAvailable(number)) continue;
        list.addItem(QString::number(number));
        list.setItemData(list.count() - 1, ToQt(ports.DeviceName(number)), Qt::ToolTipRole);
    }
}

void FillBaudRates(QComboBox& list) {
    for (const std::int32_t rate : SerialPort::BaudRates) list.addItem(QString::number(rate));
}

void ShowNumber(QComboBox& list, int number) {
    const QString text = QString::number(number);
    list.setCurrentIndex(list.findText(text));
    list.setEditText(text);
}

void TellPort(QComboBox& list, const SerialPort& ports) {
    const bool isListed = list.findText(list.currentText()) >= 0;
    QPalette colours = list.parentWidget()->palette();
    if (!isListed) colours.setColor(QPalette::Text, Ink(ColoursOf(colours).ClosedPort));
    list.lineEdit()->setPalette(colours);
    QStringList state;
    if (const auto number = CountOfText(FromQt(list.currentText()), SerialPort::LastNumber))
        state += ToQt(ports.DeviceName(To16(*number)));
    if (!isListed) state += QStringLiteral("This port cannot be opened.");
    list.setToolTip(state.join(QLatin1Char('\n')));
    list.setAccessibleDescription(list.toolTip());
}

}  // namespace vantor
