#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/ports/Desktop.h"

namespace vantor {

class HelpWindow;

/// Starts this program once more, beside the one that runs.
void StartProgramAgain(const std::vector<std::string>& arguments);

/// The desktop's sound, its handlers for addresses, its dialogs for files and printers and its clipboard.
class QtDesktop : public Desktop {
public:
    QtDesktop();
    ~QtDesktop() override;

    void Beep() override;
    void OpenWebPage(const std::string& address) override;
    void ViewText(const std::string& path) override;
    void OpenHelp(const std::string& helpFile, int context) override;
    std::string DocumentsFolder() const override;
    std::string ChooseFolder(const std::string& start) override;
    std::string ChooseFileToSave(const std::string& start, const std::string& title,
                                 const std::vector<FileKind>& kinds) override;
    std::vector<std::string> ChooseFilesToOpen(const std::string& start, const std::string& title,
                                               const std::string& description,
                                               const std::vector<std::string>& extensions) override;
    std::string ChooseFileToOpen(const std::string& start, const std::string& title, const std::string& description,
                                 const std::vector<std::string>& extensions) override;
    void CopyText(const std::string& text) override;
    void CopyPicture(const std::vector<std::byte>& png) override;
    bool Print(const PagedDocument& document) override;

private:
    std::unique_ptr<HelpWindow> help_;  ///< from the first look at the manual on
};

}  // namespace vantor
