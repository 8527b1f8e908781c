#pragma once

#include <QDialog>
#include <string>

#include "core/AppContext.h"

namespace vantor {

/// Lists the runs that lie in a Study Group.
class frmUploadRunList : public QDialog {
public:
    frmUploadRunList(AppContext& context, const std::string& studyGroup);
};

}  // namespace vantor
