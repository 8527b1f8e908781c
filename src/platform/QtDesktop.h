#pragma once

#include "core/ports/Desktop.h"

namespace vantor {

/// The desktop's sound, its handlers for addresses, its file dialogs and its clipboard.
class QtDesktop : public Desktop {
public:
    void Beep() override;
    void OpenWebPage(const std::string& address) override;
    void ViewText(const std::string& path) override;
    void OpenHelp(const std::string& helpFile, int context) override;
    std::string ChooseFolder(const std::string& start) override;
    std::string ChooseFileToSave(const std::string& start, const std::string& title, const std::string& description,
                                 const std::string& extension) override;
    std::string ChooseFileToOpen(const std::string& start, const std::string& title, const std::string& description,
                                 const std::vector<std::string>& extensions) override;
    void CopyText(const std::string& text) override;
};

}  // namespace vantor
