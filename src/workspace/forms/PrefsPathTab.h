#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QWidget>
#include <array>
#include <functional>
#include <string>

#include "core/AppContext.h"
#include "core/forms/FolderTree.h"
#include "workspace/Preferences.h"
#include "workspace/forms/BaseMapField.h"
#include "workspace/forms/PathField.h"

namespace vantor {

/// The folders of the preferences and the file of the base map. One folder box at a time is marked in yellow; a folder
/// clicked in the tree goes into it.
class PrefsPathTab : public QWidget {
public:
    PrefsPathTab(QWidget* parent, AppContext& context);

    /// False when a box holds a folder that the user has to change or to insist on.
    bool IsAccepted() const;
    /// Puts the focus into the first such box.
    void FocusRefused();
    /// The trimmed folders: a new Study Group root into the record, the others into the working copies.
    void Take(Preferences& preferences) const;
    /// The file of the base map; empty for none.
    std::string BaseMap() const { return baseMap_->Path(); }
    /// True for a folder that is to be made without asking: the user chose it by the bar.
    bool IsToBeMade(const std::string& folder) const;

    /// The root that waits for the next start and that OK would replace by the one in use, though the user touched
    /// neither; empty when there is none.
    std::string ForgottenRoot() const;
    void PutRoot(const std::string& root) { fields_[Root]->Put(root); }
    bool ChangesRootInUse() const;

    /// Called when a box changes.
    std::function<void()> OnChanged;

private:
    enum FieldIndex : std::size_t { Temp, Root, FieldData, FieldCount };
    QWidget* BuildDocumentsBar();
    QLayout* BuildFolders();
    void AddFolder(QGridLayout& grid, FieldIndex index, const QString& caption, const QString& purpose);
    void AddNextRoot(QGridLayout& grid);
    std::string VantorFolder() const;
    void UseDocuments();
    void ShowNextRoot();
    QLayout* BuildTree();
    QLayout* BuildDirections();

    void Mark(PathBox* box);
    void TakeFromTree(const std::string& folder);
    void Browse(PathBox& box);
    void AcceptTyped(PathBox& box);

    AppContext& context_;
    std::array<std::string, FieldCount> inDocuments_;  ///< empty where the desktop has no folder of documents
    bool usesDocuments_ = false;
    std::array<PathField*, FieldCount> fields_{};
    BaseMapField* baseMap_ = nullptr;
    PathBox* marked_ = nullptr;  ///< the box being edited, none at first
    QLabel* lblDocuments_ = nullptr;
    QLabel* lblNextRoot_ = nullptr;
    QPushButton* cmdTakeNextRoot_ = nullptr;
    FolderTree* trePrefs_ = nullptr;
};

}  // namespace vantor
