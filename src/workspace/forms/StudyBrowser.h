#pragma once

#include <QLabel>
#include <QSplitter>
#include <functional>
#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/forms/FolderTree.h"
#include "core/forms/Table.h"
#include "workspace/StudyGroups.h"

namespace vantor {

/// The Study Groups as a tree, the studies of the chosen group and the runs of the chosen study.
class StudyBrowser : public QSplitter {
public:
    StudyBrowser(QWidget* parent, AppContext& context);

    /// Makes a folder the chosen group, with the tree at it where it is below the root, and lists its studies. No
    /// study is chosen then. An empty folder is no group.
    void ShowGroup(const std::string& folder);
    /// Chooses the study of that name where the group has it.
    void SelectStudy(const std::string& name);

    /// To the studies, or to the groups where there are none.
    void FocusStudies();

    /// The folder of the chosen group as the tree has it, with a final separator; empty for none.
    const std::string& Group() const { return group_; }
    /// The chosen study; null for none.
    const ListedStudy* Study() const;

    /// What stands in the place of the studies of a group whose folder does not exist.
    QString MissingGroupText;
    /// Called when the user chose a group in the tree, and when another study or none is chosen.
    std::function<void()> OnGroupChosen;
    std::function<void()> OnStudyChosen;
    /// Called on a double-click on a study.
    std::function<void()> OnStudyOpened;

private:
    void BuildGroups(QWidget* panel);
    void BuildStudies(QWidget* panel);
    void BuildRuns(QWidget* panel);
    void ListGroup();
    void AddStudyRow(const ListedStudy& study);
    void ShowRuns();
    void AddRunRow(const std::string& name);

    AppContext& context_;
    FolderTree* treStudyGroups_;
    QLabel* lblStudies_;
    Table* vaStudies_;
    Table* vaStudyRuns_;
    std::string group_;
    std::vector<ListedStudy> studies_;
};

}  // namespace vantor
