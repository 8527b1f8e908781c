#pragma once

#include <QDialog>
#include <QPushButton>

#include "core/AppContext.h"
#include "workspace/forms/StudyBrowser.h"

namespace vantor {

/// Lets the user choose a study of any Study Group. Accepted when it was opened: it is the current study then.
class frmStudyOpen : public QDialog {
public:
    explicit frmStudyOpen(AppContext& context);

private:
    void OpenChosen();

    AppContext& context_;
    StudyBrowser* browser_;
    QPushButton* BtnOpen_;
};

}  // namespace vantor
