#include "corridor/forms/frmCorridor.h"

namespace vantor {

frmCorridor::frmCorridor(AppContext&, const std::optional<std::string>&) {
    setObjectName(QStringLiteral("frmCorridor"));
}

}  // namespace vantor
