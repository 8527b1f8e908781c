#pragma once

#include <QComboBox>

#include "core/ports/SerialPort.h"

namespace vantor {

/// Fills a list with the numbers of the ports that can be opened, each with its device as a tip. Tries every port once.
void FillPorts(QComboBox& list, SerialPort& ports);
/// Fills a list with the speeds of the counter's menu, in bits per second.
void FillBaudRates(QComboBox& list);
/// Shows a number, which need not be in the list.
void ShowNumber(QComboBox& list, int number);
/// Tells which device the shown port is and, in red and in words, that it cannot be opened where the list does not have
/// it.
void TellPort(QComboBox& list, const SerialPort& ports);

}  // namespace vantor
