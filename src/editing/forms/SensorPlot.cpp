#include "editing/forms/SensorPlot.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

#include "core/forms/Theme.h"
#include "core/forms/WindowCanvas.h"
#include "editing/SensorPicture.h"
#include "plots/forms/ProfilePicture.h"

namespace vantor {

SensorPlot::SensorPlot(QWidget* parent, SensorView& view) : QWidget(parent), view_(view) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize SensorPlot::sizeHint() const { return {940, 400}; }
QSize SensorPlot::minimumSizeHint() const { return {480, 200}; }

void SensorPlot::PlacePlotArea() {
    view_.SetRectangle(SensorAreaOf(FontMeasure(), {double(width()), double(height())}, LookOf(*this)));
    update();
}

void SensorPlot::paintEvent(QPaintEvent*) {
    const PlotLook look = LookOf(*this);
    QPainter painter(this);
    painter.fillRect(rect(), Ink(look.Inks.Base));
    WindowCanvas canvas(painter);
    DrawSensorData(canvas, {double(width()), double(height())}, view_, look, devicePixelRatioF());
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    if (view_.PointCount() == 0) {
        painter.setPen(Ink(look.Inks.DimText));
        painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("This run has no samples."));
    }
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : Ink(look.Inks.Grid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void SensorPlot::resizeEvent(QResizeEvent*) { PlacePlotArea(); }

void SensorPlot::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) PlacePlotArea();
}

void SensorPlot::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) press_ = {event->position().x(), view_.Geometry().Offset()};
}

void SensorPlot::mouseMoveEvent(QMouseEvent* event) {
    if (!press_ || !event->buttons().testFlag(Qt::LeftButton)) return;
    const double moved = event->position().x() - press_->X;
    if (!press_->IsDrag && std::abs(moved) < QApplication::startDragDistance()) return;
    press_->IsDrag = true;
    setCursor(Qt::ClosedHandCursor);
    const ProfileGeometry& geometry = view_.Geometry();
    ScrollTo(press_->Offset + geometry.AxisValueAt(0) - geometry.AxisValueAt(moved));
}

void SensorPlot::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !press_) return;
    const bool wasDrag = press_->IsDrag;
    press_.reset();
    unsetCursor();
    if (!wasDrag) OnChosen(view_.PointAt(event->position().x()));
}

void SensorPlot::ScrollTo(double second) {
    view_.ScrollTo(second);
    update();
}

void SensorPlot::wheelEvent(QWheelEvent* event) {
    constexpr int Notch = 120;
    event->accept();
    const QPoint angle = event->angleDelta();
    if (angle.x() != 0 || event->modifiers().testFlag(Qt::ShiftModifier)) {
        const double turned = angle.x() != 0 ? angle.x() : angle.y();
        return ScrollTo(view_.Geometry().Offset() - turned / Notch * view_.Geometry().ScaleStep());
    }
    wheelAngle_ += angle.y();
    const int steps = wheelAngle_ / Notch;
    wheelAngle_ %= Notch;
    OnZoom(steps, event->position().x());
}

void SensorPlot::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!isPlain) return QWidget::keyPressEvent(event);
    const std::int32_t active = view_.ActivePoint();
    const int page = view_.Geometry().ScaleStep();
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up: return OnChosen(active - 1);
        case Qt::Key_Right:
        case Qt::Key_Down: return OnChosen(active + 1);
        case Qt::Key_PageUp: return OnChosen(active - page);
        case Qt::Key_PageDown: return OnChosen(active + page);
        case Qt::Key_Home: return OnChosen(1);
        case Qt::Key_End: return OnChosen(view_.PointCount());
        default: QWidget::keyPressEvent(event);
    }
}

}  // namespace vantor
