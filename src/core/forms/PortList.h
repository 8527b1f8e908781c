#pragma once

#include <QComboBox>

#include "core/ports/SerialPort.h"

namespace vantor {

/// Fills a list with the numbers of the ports that can be opened, each with its device beside it. Tries every port
/// once. What the list held before goes; none is chosen then.
void FillPorts(QComboBox& list, SerialPort& ports);
/// The device of a port and what is plugged in there, "/dev/ttyUSB0, USB Serial Converter".
QString DeviceText(const SerialPort& ports, std::int16_t number);
/// Fills a list with the speeds of the counter's menu, in bits per second.
void FillBaudRates(QComboBox& list);
/// Shows a number, which need not be in the list.
void ShowNumber(QComboBox& list, int number);
/// Tells which device the shown port is and, in red and in words, that it cannot be opened where the list does not have
/// it.
void TellPort(QComboBox& list, const SerialPort& ports);

}  // namespace vantor
