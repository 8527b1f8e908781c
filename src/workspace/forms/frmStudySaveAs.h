#pragma once

#include <QDialog>
#include <QLineEdit>

#include "core/AppContext.h"
#include "workspace/forms/StudyBrowser.h"

namespace vantor {

/// Saves the current study under a name and in a Study Group of the user's choice, a new one where the name typed is
/// none yet. Accepted when the study was written. The run files that a study needs in another group are copied there.
class frmStudySaveAs : public QDialog {
public:
    explicit frmStudySaveAs(AppContext& context);

private:
    QLayout* BuildFields();
    void TakeTypedGroup();
    bool CheckNames();
    bool MayReplace();
    bool MayCopyRuns(const RunsElsewhere& runs);
    std::optional<std::vector<std::string>> RunsToCopy(const std::string& from, const std::string& to);
    void Save();
    std::string Name() const;

    AppContext& context_;
    QLineEdit* txtStudyName_;
    QLineEdit* txtStudyGroup_;
    StudyBrowser* browser_;
};

}  // namespace vantor
