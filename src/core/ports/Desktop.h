#pragma once

#include <string>

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
};

}  // namespace vantor
