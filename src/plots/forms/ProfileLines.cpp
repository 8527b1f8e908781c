#include "plots/forms/ProfileLines.h"

#include <algorithm>
#include <cmath>

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr double Padding = 6;

double Crisp(double pixel) { return std::floor(pixel) + 0.5; }

}  // namespace

ProfileLines::ProfileLines(const SpeedProfile& profile, const ProfileLabels& labels, const QFontMetricsF& metrics)
    : profile_(profile), labels_(labels), area_(profile.Geometry().Rectangle()) {
    PlaceBoundary(ProfileLine::Start, metrics);
    PlaceBoundary(ProfileLine::End, metrics);
    KeepLabelsApart();
    PlaceIdealSpeed(metrics);
}

void ProfileLines::PlaceBoundary(ProfileLine line, const QFontMetricsF& metrics) {
    const auto boundary = profile_.ShownBoundary(line);
    const bool inTime = profile_.Axis() == BoundaryAxis::Time;
    Placed& placed = At(line);
    placed.IsSet = boundary.has_value();
    placed.Pixel = profile_.PixelOf(line);
    placed.IsVisible = placed.Pixel > area_.Left - 1 && placed.Pixel < area_.Right + 1;
    const QString name = line == ProfileLine::Start ? QStringLiteral("Start ") : QStringLiteral("End ");
    placed.Label =
        name + (boundary ? QStringLiteral("%1 %2").arg(*boundary).arg(inTime ? QStringLiteral("s") : labels_.LengthUnit)
                         : QStringLiteral("not set"));
    const double width = metrics.horizontalAdvance(placed.Label) + 2 * Padding;
    const double left = std::clamp(placed.Pixel - width / 2, 0.0, std::max(0.0, area_.Right + 2 * Padding - width));
    placed.LabelRect = {left, area_.Top - LabelRowHeight(metrics) + 1, width, metrics.height() + Padding};
}

void ProfileLines::KeepLabelsApart() {
    Placed& start = At(ProfileLine::Start);
    Placed& end = At(ProfileLine::End);
    if (!start.IsVisible || !end.IsVisible) return;
    QRectF& left = start.Pixel <= end.Pixel ? start.LabelRect : end.LabelRect;
    QRectF& right = start.Pixel <= end.Pixel ? end.LabelRect : start.LabelRect;
    const double overlap = left.right() + 2 - right.left();
    if (overlap <= 0) return;
    const double room = std::max(0.0, area_.Right + 2 * Padding - right.right());
    const double toRight = std::min(overlap / 2, room);
    right.translate(toRight, 0);
    left.translate(toRight - overlap, 0);
    if (left.left() >= 0) return;
    right.translate(-left.left(), 0);
    left.moveLeft(0);
}

void ProfileLines::PlaceIdealSpeed(const QFontMetricsF& metrics) {
    Placed& placed = At(ProfileLine::IdealSpeed);
    const auto speed = profile_.ShownIdealSpeed();
    placed.IsSet = speed.has_value();
    placed.IsVisible = true;
    placed.Pixel = profile_.PixelOf(ProfileLine::IdealSpeed);
    placed.Label = speed ? QStringLiteral("Ideal %1 %2").arg(*speed).arg(labels_.SpeedUnit)
                         : QStringLiteral("Ideal speed not set");
    const double width = metrics.horizontalAdvance(placed.Label) + 2 * Padding;
    const double height = metrics.height() + 2;
    const bool fitsAbove = placed.Pixel - height - 3 > area_.Top;
    placed.LabelRect = {area_.Right - width - Padding, fitsAbove ? placed.Pixel - height - 3 : placed.Pixel + 4, width,
                        height};
}

QRect ProfileLines::BoundsOf(ProfileLine line) const {
    const Placed& placed = At(line);
    if (!placed.IsVisible) return {};
    const QRectF path = line == ProfileLine::IdealSpeed
                            ? QRectF(area_.Left, placed.Pixel, area_.Right - area_.Left, 0)
                            : QRectF(placed.Pixel, placed.LabelRect.top(), 0, area_.Baseline - placed.LabelRect.top());
    return path.adjusted(-4, -4, 4, 4).united(placed.LabelRect.adjusted(-2, -2, 2, 2)).toAlignedRect();
}

void ProfileLines::Paint(QPainter& painter, const ProfileColours& colours, ProfileLine active) const {
    const Placed& start = At(ProfileLine::Start);
    const Placed& end = At(ProfileLine::End);
    if (start.IsSet && end.IsSet) {
        QColor between = colours.Boundary;
        between.setAlphaF(0.07F);
        const double left = std::max(std::min(start.Pixel, end.Pixel), area_.Left);
        const double right = std::min(std::max(start.Pixel, end.Pixel), area_.Right);
        if (left < right) painter.fillRect(QRectF(QPointF(left, area_.Top), QPointF(right, area_.Baseline)), between);
    }
    for (const ProfileLine line : {ProfileLine::IdealSpeed, ProfileLine::Start, ProfileLine::End})
        PaintLine(painter, colours, line, line == active);
}

void ProfileLines::PaintLine(QPainter& painter, const ProfileColours& colours, ProfileLine line, bool isActive) const {
    const Placed& placed = At(line);
    if (!placed.IsVisible) return;
    const bool isIdeal = line == ProfileLine::IdealSpeed;
    const QColor colour = isIdeal ? colours.IdealSpeed : colours.Boundary;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(colour, isActive ? 3 : 2, placed.IsSet ? Qt::SolidLine : Qt::DashLine));
    const double pixel = Crisp(placed.Pixel);
    if (isIdeal)
        painter.drawLine(QPointF(area_.Left, pixel), QPointF(area_.Right, pixel));
    else
        painter.drawLine(QPointF(pixel, placed.LabelRect.bottom()), QPointF(pixel, area_.Baseline));

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1));
    painter.setBrush(isActive ? colour : colours.Background);
    painter.drawRoundedRect(placed.LabelRect, 4, 4);
    painter.setPen(isActive ? colours.Background : colour);
    painter.drawText(placed.LabelRect, Qt::AlignCenter, placed.Label);
}

QString ProposalLabel(const SpeedProfile& profile, const ProfileLabels& labels, const ProposedBoundaries& proposal,
                      ProfileLine line) {
    const bool inTime = profile.Axis() == BoundaryAxis::Time;
    const double value = profile.Geometry().AxisValueOf(proposal.PlaceOf(line, profile.Axis()));
    return QStringLiteral("%1 %2 %3, proposed")
        .arg(line == ProfileLine::Start ? QStringLiteral("Start") : QStringLiteral("End"))
        .arg(Round32(value))
        .arg(inTime ? QStringLiteral("s") : labels.LengthUnit);
}

void PaintProposal(QPainter& painter, const SpeedProfile& profile, const ProfileLabels& labels,
                   const ProposedBoundaries& proposal, const ProfileColours& colours) {
    const ProfileGeometry& geometry = profile.Geometry();
    const PlotRectangle& area = geometry.Rectangle();
    const QFontMetricsF metrics(painter.font());
    QRectF before;
    for (const ProfileLine line : {ProfileLine::Start, ProfileLine::End}) {
        const double x = geometry.XOf(geometry.AxisValueOf(proposal.PlaceOf(line, profile.Axis())));
        if (x < area.Left - 1 || x > area.Right + 1) continue;
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(colours.Boundary, 2, Qt::DashLine));
        painter.drawLine(QPointF(Crisp(x), area.Top), QPointF(Crisp(x), area.Baseline));

        // The start's label stands left of its line, the end's right of it; where an edge moves one over the other,
        // below.
        const QString text = ProposalLabel(profile, labels, proposal, line);
        const double width = metrics.horizontalAdvance(text) + 2 * Padding;
        const double wanted = line == ProfileLine::Start ? x - width - 3 : x + 3;
        const double left = std::clamp(wanted, area.Left + 1, std::max(area.Left + 1, area.Right - width - 1));
        QRectF label(left, area.Top + 4, width, metrics.height() + 4);
        if (label.intersects(before)) label.translate(0, label.height() + 3);
        before = label;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colours.Boundary, 1, Qt::DashLine));
        painter.setBrush(colours.Background);
        painter.drawRoundedRect(label, 4, 4);
        painter.setPen(colours.Boundary);
        painter.drawText(label, Qt::AlignCenter, text);
    }
}

}  // namespace vantor
