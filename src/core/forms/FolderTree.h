#pragma once

#include <QTreeWidget>
#include <functional>
#include <string>

#include "core/ports/FileSystem.h"

namespace vantor {

/// A tree of folders below a root, read from the file system level by level as it is opened.
class FolderTree : public QTreeWidget {
public:
    explicit FolderTree(QWidget* parent);

    /// Shows `root` (with or without a final separator) and its folders; the root is opened, nothing is chosen.
    void SetRoot(const FileSystem& files, const std::string& root);
    /// Opens the tree down to a folder below the root and makes it the current one without calling OnChosen.
    /// False when it is not there.
    bool SelectFolder(const std::string& folder);
    /// Brings the current folder to the middle, its name into sight.
    void ShowCurrent();
    /// The current folder with a final separator; empty when there is none.
    std::string SelectedFolder() const;
    /// Called when the user makes a folder the current one.
    std::function<void(const std::string& folder)> OnChosen;

private:
    QTreeWidgetItem* AddFolder(QTreeWidgetItem* parent, const std::string& path, const std::string& name);
    void Fill(QTreeWidgetItem* item);

    const FileSystem* files_ = nullptr;
    bool selecting_ = false;
};

}  // namespace vantor
