#pragma once

#include <QDialog>
#include <optional>
#include <string>

#include "core/AppContext.h"

namespace vantor {

/// "Corridors".
class frmCorridor : public QDialog {
public:
    frmCorridor(AppContext& context, const std::optional<std::string>& path);
};

}  // namespace vantor
