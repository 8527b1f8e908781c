#pragma once

#include <string>
#include <vector>

namespace vantor {

/// Services of the desktop around the program.
class Desktop {
public:
    virtual ~Desktop() = default;
    /// The system's attention sound.
    virtual void Beep() = 0;
    /// The default web browser on an address.
    virtual void OpenWebPage(const std::string& address) = 0;
    /// A text file in the desktop's text viewer, without waiting. Error 53 when there is no viewer.
    virtual void ViewText(const std::string& path) = 0;
    /// The help file in the platform's viewer; context 0 is its contents.
    virtual void OpenHelp(const std::string& helpFile, int context) = 0;
    /// Lets the user choose an existing folder, beginning at `start`; empty when none was chosen.
    virtual std::string ChooseFolder(const std::string& start) = 0;
    /// Lets the user name a file to write, beginning at the path `start`; empty when none was named. A name without
    /// an extension gets `extension` (".csv"). A file that exists is returned after the user agreed to replace it.
    /// `description` says what files of that extension are.
    virtual std::string ChooseFileToSave(const std::string& start, const std::string& title,
                                         const std::string& description, const std::string& extension) = 0;
    /// Lets the user choose an existing file with one of the `extensions` (".rd2"), beginning at the folder `start`;
    /// empty when none was chosen, and where there is nobody to choose. `description` says what files of these
    /// extensions are.
    virtual std::string ChooseFileToOpen(const std::string& /*start*/, const std::string& /*title*/,
                                         const std::string& /*description*/,
                                         const std::vector<std::string>& /*extensions*/) {
        return {};
    }
    /// Puts a text on the clipboard.
    virtual void CopyText(const std::string& text) = 0;
};

}  // namespace vantor
