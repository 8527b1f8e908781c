#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QWidget>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/FolderTree.h"
#include "workspace/Preferences.h"
#include "workspace/forms/PathBox.h"

namespace vantor {

/// The folders of the preferences. One folder box at a time is marked in yellow; a folder clicked in the tree goes
/// into it.
class PrefsPathTab : public QWidget {
public:
    PrefsPathTab(QWidget* parent, AppContext& context);

    /// The trimmed folders: a new Study Group root into the record, the others into the working copies.
    void Take(Preferences& preferences) const;

private:
    QLayout* BuildFolders();
    void AddFolder(QGridLayout& grid, const QString& caption, const std::string& folder, const QString& purpose);
    QLayout* BuildTree();
    QLayout* BuildDirections();

    void Mark(PathBox* box);
    void TakeFromTree(const std::string& folder);
    void Browse(PathBox& box);
    void AcceptTyped(PathBox& box);
    static void ShowHint(const PathBox& box, QLabel& hint, const QString& purpose);

    AppContext& context_;
    std::vector<PathBox*> boxes_;  ///< temporary runs, Study Group root, field data
    PathBox* marked_ = nullptr;    ///< the box being edited, none at first
    FolderTree* trePrefs_ = nullptr;
};

}  // namespace vantor
