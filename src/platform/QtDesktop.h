#pragma once

#include "core/ports/Desktop.h"

namespace vantor {

/// The desktop's sound and its handlers for addresses.
class QtDesktop : public Desktop {
public:
    void Beep() override;
    void OpenWebPage(const std::string& address) override;
    void OpenHelp(const std::string& helpFile, int context) override;
};

}  // namespace vantor
