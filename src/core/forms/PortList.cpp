#include "core/forms/PortList.h"

#include <QAbstractItemView>
#include <QLineEdit>
#include <QStyledItemDelegate>

#include "core/Numeric.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {

namespace {

/// Draws the device beside the port's number, which alone is the item's text.
class PortItems : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text += QStringLiteral("   ") + index.data(Qt::ToolTipRole).toString();
    }
};

}  // namespace

QString DeviceText(const SerialPort& ports, std::int16_t number) {
    const QString description = ToQt(ports.Description(number));
    return ToQt(ports.DeviceName(number)) + (description.isEmpty() ? QString() : QStringLiteral(", ") + description);
}

void FillPorts(QComboBox& list, SerialPort& ports) {
    list.clear();
    list.setItemDelegate(new PortItems(&list));
    for (std::int16_t number = SerialPort::FirstNumber; number <= SerialPort::LastNumber; ++number) {
        if (!ports.IsAvailable(number)) continue;
        list.addItem(QString::number(number));
        const QString device = DeviceText(ports, number);
        list.setItemData(list.count() - 1, device, Qt::ToolTipRole);
        list.setItemData(list.count() - 1, QStringLiteral("%1, %2").arg(number).arg(device), Qt::AccessibleTextRole);
    }
    list.view()->setMinimumWidth(list.view()->sizeHintForColumn(0));
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
        state += DeviceText(ports, To16(*number));
    if (!isListed) state += QStringLiteral("This port cannot be opened.");
    list.setToolTip(state.join(QLatin1Char('\n')));
    list.setAccessibleDescription(list.toolTip());
}

}  // namespace vantor
