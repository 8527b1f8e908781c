#include "gpsobd/forms/SpeedPictures.h"

#include <QPainter>

#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"
#include "plots/PlotParts.h"

namespace vantor {
namespace {

constexpr int PictureWidth = 160;
constexpr double Margin = 3;

}  // namespace

void SpeedPictures::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    const ProfileTrace* trace = traceOf_(index.row());
    if (trace == nullptr || !trace->HasMovement()) return;
    const QRectF room = QRectF(option.rect).adjusted(Margin, Margin, -Margin, -Margin);
    const double feet = trace->Extent().TraceFeet;
    PlotTrace line;
    for (const TracePoint& point : ReducedPointsOf(*trace, BoundaryAxis::Distance, 1, trace->SampleCount(), 0, 1,
                                                   std::max(room.width(), 1.0) / feet))
        line.Points.push_back({point.X, static_cast<double>(point.Speed)});
    const PlotMap map({room.x(), room.y(), room.width(), room.height()},
                      {{0, feet}, {0, std::max(static_cast<double>(trace->TopSpeed()), 1.0)}});
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(*painter);
    PlotLook look;
    look.Inks = ColoursOf(option.palette);
    if (option.state.testFlag(QStyle::State_Selected)) {
        const QColor text = option.palette.color(QPalette::HighlightedText);
        look.Inks.Trace = {static_cast<std::uint8_t>(text.red()), static_cast<std::uint8_t>(text.green()),
                           static_cast<std::uint8_t>(text.blue())};
    }
    line.Draw(canvas, map, look);
    painter->restore();
}

QSize SpeedPictures::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return {PictureWidth, QStyledItemDelegate::sizeHint(option, index).height() * 2};
}

}  // namespace vantor
