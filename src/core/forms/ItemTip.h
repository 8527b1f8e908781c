#pragma once

#include <QHelpEvent>
#include <QWidget>
#include <string>

namespace vantor {

/// Shows a text at the pointer as it stands, whatever characters it has; none where it is empty.
void ShowPlainTip(QHelpEvent& event, const std::string& text, QWidget& over);

/// Whether a window around the widget scrolls: there the wheel alone is the window's.
bool IsInScrolledWindow(const QWidget& widget);

}  // namespace vantor
