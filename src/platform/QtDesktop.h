#pragma once

#include "core/ports/Desktop.h"

namespace vantor {

/// The desktop's sound, its handlers for addresses and its folder dialog.
class QtDesktop : public Desktop {
public:
    void Beep() override;
    void OpenWebPage(const std::string& address) override;
    void ViewText(const std::string& path) override;
    void OpenHelp(const std::string& helpFile, int context) override;
    std::string ChooseFolder(const std::string& start) override;
};

}  // namespace vantor
