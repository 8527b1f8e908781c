#include "editing/forms/frmUseBoundaries.h"

#include "core/Units.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {

frmUseBoundaries::frmUseBoundaries(AppContext& context, std::vector<BoundsPreview> previews, const Bounds& bounds,
                                   QWidget* parent)
    : BoundsDialog(context, parent) {
    setObjectName(QStringLiteral("frmUseBoundaries"));
    setWindowTitle(QStringLiteral("Use Boundaries"));
    const Units units = UnitsOf(context.State.Settings);
    Head().addWidget(
        Named<QLabel>(this, "lblBounds",
                      QStringLiteral("The ticked runs get the start boundary %1 and the end boundary %2.")
                          .arg(ToQt(units.LengthText(bounds.StartDist)), ToQt(units.LengthText(bounds.EndDist)))));
    BuildList(Columns::Delays);
    ShowPreviews(std::move(previews));
    RememberLayout(*this, context.Memory);
}

}  // namespace vantor
