#pragma once

#include <QDialog>

#include "core/AppContext.h"
#include "counter/forms/DeletionList.h"

namespace vantor {

/// Deletes version 1 runs from the temporary runs folder: those that the user takes off the list, and only on OK.
/// Version 2 runs are left to the upload screen.
class frmDeleteTempRuns : public QDialog {
public:
    explicit frmDeleteTempRuns(AppContext& context);

private:
    QLayout* BuildListButtons();
    void ListRuns();

    AppContext& context_;
    DeletionList* frRunList_;
};

}  // namespace vantor
