#pragma once

#include <QDialog>
#include <optional>
#include <string>

#include "core/AppContext.h"
#include "counter/forms/RunTable.h"

namespace vantor {

/// Lists the runs that lie in a Study Group.
class frmUploadRunList : public QDialog {
public:
    frmUploadRunList(AppContext& context, const std::string& studyGroup);

private:
    std::optional<RunTable> runs_;
};

}  // namespace vantor
