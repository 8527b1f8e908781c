#pragma once

#include "editing/forms/BoundsDialog.h"

namespace vantor {

/// "Use Boundaries": what would become of other runs with the boundaries of one, and which of them are to get them.
class frmUseBoundaries : public BoundsDialog {
public:
    frmUseBoundaries(AppContext& context, std::vector<BoundsPreview> previews, const Bounds& bounds,
                     QWidget* parent = nullptr);
};

}  // namespace vantor
