#pragma once

#include <QWidget>

#include "core/ports/WindowMemory.h"

namespace vantor {

/// Restores size, position, splitters and column widths of a window and its tables from the last time, and stores
/// them whenever it is hidden. Call when all controls exist; the window's objectName is the key.
void RememberLayout(QWidget& window, WindowMemory& memory);

}  // namespace vantor
