#pragma once

#include <string>
#include <vector>

#include "core/ports/DocumentWriter.h"

namespace vantor {

/// A kind of files in a file dialog.
struct FileKind {
    std::string Description;  ///< "Excel Spreadsheet files"
    std::string Extension;    ///< ".xls"
};

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
    /// The help file in the help window, which stays usable beside modal screens; context is the number of a topic, 0
    /// its contents. Error 53 when the file is missing, 57 when it is damaged.
    virtual void OpenHelp(const std::string& helpFile, int context) = 0;
    /// The folder of the user's documents; empty where the desktop has none.
    virtual std::string DocumentsFolder() const = 0;
    /// Lets the user choose an existing folder, beginning at `start`; empty when none was chosen.
    virtual std::string ChooseFolder(const std::string& start) = 0;
    /// Lets the user name a file to write of one of these kinds, beginning at the path `start` and its kind; empty when
    /// none was named. A name without an extension gets that of the chosen kind, and another choice changes it. A file
    /// that exists is returned after the user agreed to replace it.
    virtual std::string ChooseFileToSave(const std::string& start, const std::string& title,
                                         const std::vector<FileKind>& kinds) = 0;
    /// Lets the user choose an existing file with one of the `extensions` (".rd2"), beginning at the folder `start`;
    /// empty when none was chosen. `description` says what files of these extensions are.
    virtual std::string ChooseFileToOpen(const std::string& start, const std::string& title,
                                         const std::string& description,
                                         const std::vector<std::string>& extensions) = 0;
    /// Lets the user choose one or several existing files; none when none was chosen. As ChooseFileToOpen, and any
    /// other file, too, by another choice of kind.
    virtual std::vector<std::string> ChooseFilesToOpen(const std::string& start, const std::string& title,
                                                       const std::string& description,
                                                       const std::vector<std::string>& extensions) = 0;
    /// Puts a text on the clipboard.
    virtual void CopyText(const std::string& text) = 0;
    /// Puts a picture, the bytes of a PNG file, on the clipboard.
    virtual void CopyPicture(const std::vector<std::byte>& png) = 0;
    /// Lets the user choose a printer and prints; false when the user cancelled. Error 482 when printing failed.
    virtual bool Print(const PagedDocument& document) = 0;
};

}  // namespace vantor
