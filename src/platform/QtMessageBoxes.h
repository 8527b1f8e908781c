#pragma once

#include "core/ports/MessageBoxes.h"

namespace vantor {

/// Message boxes over the active window.
class QtMessageBoxes : public MessageBoxes {
public:
    MessageAnswer Ask(const Prompt& prompt) override;
};

}  // namespace vantor
