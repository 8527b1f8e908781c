#pragma once

#include <QScrollArea>
#include <QWidget>

#include "core/ports/WindowMemory.h"

namespace vantor {

/// Keeps a window on its screen: it opens no larger than the screen's available area less the window's frame, and
/// inside of it; where even its smallest layout is larger, its contents scroll. Call when all controls exist.
void FitToScreen(QWidget& window);

/// Restores size, position, splitters and table columns of a window from the last time, as far as they fit its screen
/// (FitToScreen), and stores them whenever it is hidden. Call when all controls exist; the window's objectName is the
/// key.
void RememberLayout(QWidget& window, WindowMemory& memory);

/// `page` in an area that scrolls and follows the field that has the focus.
QScrollArea* ScrollAreaFor(QWidget* page, QWidget* parent);

}  // namespace vantor
