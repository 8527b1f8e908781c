#pragma once

#include <QPushButton>

#include "core/AppContext.h"
#include "core/HelpTopics.h"

namespace vantor {

/// The button `cmdHelp` of a window, also under F1: opens the manual at the window's page. Enter never presses it.
QPushButton* HelpButton(QWidget& window, AppContext& context, HelpTopic topic);

}  // namespace vantor
