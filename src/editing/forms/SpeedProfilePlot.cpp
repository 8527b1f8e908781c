#include "editing/forms/SpeedProfilePlot.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <utility>

#include "core/forms/Theme.h"
#include "core/forms/WindowCanvas.h"
#include "plots/forms/ProfilePicture.h"

namespace vantor {
namespace {

constexpr double GrabTolerance = 6;
constexpr int EdgeScrollMilliseconds = 40;

QRect BoundsOf(const ProfileLines& lines, ProfileLine line) {
    const CanvasBox bounds = lines.BoundsOf(line);
    return QRectF(bounds.X, bounds.Y, bounds.Width, bounds.Height).toAlignedRect();
}

}  // namespace

SpeedProfilePlot::SpeedProfilePlot(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void SpeedProfilePlot::SetProfile(SpeedProfile* profile, QString nothingToDraw) {
    profile_ = profile;
    nothingToDraw_ = std::move(nothingToDraw);
    PlacePlotArea();
}

void SpeedProfilePlot::ShowProposal(const std::optional<ProposedBoundaries>& proposal) {
    proposal_ = proposal;
    update();
}

void SpeedProfilePlot::Redraw() {
    pictureIsStale_ = true;
    update();
}

void SpeedProfilePlot::UpdateLines() {
    // With both boundaries the part between them is shaded, however far they are apart.
    const bool isShaded = profile_ != nullptr && profile_->HasBothBoundaries();
    if (!IsDrawable() || pictureIsStale_ || isShaded != paintedShaded_) return update();
    const ProfileLines lines(FontMeasure(), LookOf(*this), *profile_);
    for (std::size_t i = 0; i < AllLines.size(); ++i) {
        const QRect bounds = BoundsOf(lines, AllLines[i]);
        // The rectangle around both places also holds the shading that changes between them.
        if (bounds != painted_[i]) update(bounds.united(painted_[i]));
    }
}

QSize SpeedProfilePlot::sizeHint() const { return {980, 460}; }
QSize SpeedProfilePlot::minimumSizeHint() const { return {520, 240}; }

void SpeedProfilePlot::PlacePlotArea() {
    if (profile_ != nullptr) profile_->Geometry().SetRectangle(PlotAreaOf(size(), *this));
    Redraw();
}

void SpeedProfilePlot::RenewPicture() {
    const qreal pixelRatio = devicePixelRatioF();
    picture_ = QPixmap(size() * pixelRatio);
    picture_.setDevicePixelRatio(pixelRatio);
    QPainter painter(&picture_);
    painter.setFont(font());
    if (IsDrawable()) {
        PaintProfile(painter, *this, *profile_);
    } else {
        PaintInsteadOfProfile(painter, *this, nothingToDraw_);
    }
    pictureIsStale_ = false;
}

void SpeedProfilePlot::paintEvent(QPaintEvent* event) {
    if (pictureIsStale_ || picture_.devicePixelRatio() != devicePixelRatioF()) RenewPicture();
    QPainter painter(this);
    const qreal pixelRatio = picture_.devicePixelRatio();
    for (const QRect& part : event->region())
        painter.drawPixmap(part, picture_,
                           QRectF(QPointF(part.topLeft()) * pixelRatio, QSizeF(part.size()) * pixelRatio).toRect());
    const PlotLook look = LookOf(*this);
    if (IsDrawable()) {
        WindowCanvas canvas(painter);
        const ProfileLines lines(canvas, look, *profile_);
        for (std::size_t i = 0; i < AllLines.size(); ++i) painted_[i] = BoundsOf(lines, AllLines[i]);
        paintedShaded_ = profile_->HasBothBoundaries();
        lines.Draw(canvas, look, hasFocus() || IsDragging() ? active_ : ProfileLine::None);
        if (proposal_) DrawProposal(canvas, look, *profile_, *proposal_);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : Ink(look.Inks.Grid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void SpeedProfilePlot::resizeEvent(QResizeEvent*) { PlacePlotArea(); }

void SpeedProfilePlot::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) PlacePlotArea();
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) Redraw();
}

ProfileLine SpeedProfilePlot::LineUnder(QPointF pointer) const {
    const PlotRectangle& area = profile_->Geometry().Rectangle();
    const double labels = ProfileLines::LabelRow(FontMeasure(), LookOf(*this));
    const QRectF reach(QPointF(area.Left, area.Top - labels), QPointF(area.Right, area.Baseline));
    const bool isNear = reach.adjusted(-GrabTolerance, 0, GrabTolerance, GrabTolerance).contains(pointer);
    return isNear ? profile_->LineAt(pointer.x(), pointer.y(), GrabTolerance) : ProfileLine::None;
}

void SpeedProfilePlot::ShowCursor(QPointF pointer) {
    const ProfileLine line = IsDragging() ? profile_->Drag().DragLine() : LineUnder(pointer);
    if (pannedFrom_)
        setCursor(Qt::ClosedHandCursor);
    else if (line == ProfileLine::None)
        unsetCursor();
    else
        setCursor(line == ProfileLine::IdealSpeed ? Qt::SizeVerCursor : Qt::SizeHorCursor);
}

void SpeedProfilePlot::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !IsDrawable() || IsDragging()) return;
    const ProfileLine line = LineUnder(event->position());
    if (line == ProfileLine::None) {
        if (profile_->Geometry().MostOffset() > 0) pannedFrom_ = event->position().x();
        return ShowCursor(event->position());
    }
    profile_->Grab(line);
    pressedAt_ = event->position().toPoint();
    SetActive(line);
}

void SpeedProfilePlot::mouseMoveEvent(QMouseEvent* event) {
    if (!IsDrawable()) return;
    pointer_ = event->position();
    if (pannedFrom_) Pan(*event);
    if (IsDragging() && heldKey_ == 0) {
        // The button went up where no one told: over a message box, say.
        if (!event->buttons().testFlag(Qt::LeftButton)) return Release();
        // A line that is only held stays where it is, whatever happens to the scale.
        if (pressedAt_ != pointer_.toPoint()) DragTo(pointer_);
    }
    ShowCursor(pointer_);
    if (OnPointer) OnPointer(pointer_.x());
}

/// What is under the pointer stays under it.
void SpeedProfilePlot::Pan(const QMouseEvent& event) {
    if (!event.buttons().testFlag(Qt::LeftButton)) return pannedFrom_.reset();
    const ProfileGeometry& geometry = profile_->Geometry();
    const double from = std::exchange(pannedFrom_, pointer_.x()).value();
    if (OnScroll) OnScroll(geometry.AxisValueAt(from) - geometry.AxisValueAt(pointer_.x()));
}

void SpeedProfilePlot::DragTo(QPointF pointer) {
    pressedAt_.reset();
    profile_->DragTo(pointer.x(), pointer.y());
    if (BeyondEdge() != 0 && !edgeScroll_.isActive()) edgeScroll_.start(EdgeScrollMilliseconds, this);
    if (BeyondEdge() == 0) edgeScroll_.stop();
    if (OnMoved) OnMoved();
}

/// How far the pointer is left (negative) or right of the plot while it drags a boundary.
double SpeedProfilePlot::BeyondEdge() const {
    if (profile_->Drag().DragLine() == ProfileLine::IdealSpeed) return 0;
    const PlotRectangle& area = profile_->Geometry().Rectangle();
    return pointer_.x() - std::clamp(pointer_.x(), area.Left, area.Right);
}

void SpeedProfilePlot::timerEvent(QTimerEvent* event) {
    if (event->timerId() != edgeScroll_.timerId()) return QWidget::timerEvent(event);
    const ProfileGeometry& geometry = profile_->Geometry();
    const double beyond = BeyondEdge();
    const bool isAtEnd = beyond < 0 ? geometry.Offset() <= 0 : geometry.Offset() >= geometry.MostOffset();
    if (!IsDragging() || beyond == 0 || isAtEnd) return edgeScroll_.stop();
    if (OnScroll) OnScroll(beyond < 0 ? -geometry.ScaleStep() / 4.0 : geometry.ScaleStep() / 4.0);
    DragTo(pointer_);
}

void SpeedProfilePlot::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !IsDrawable()) return;
    pannedFrom_.reset();
    if (IsDragging() && heldKey_ == 0) Release();
    ShowCursor(event->position());
}

void SpeedProfilePlot::Release() {
    edgeScroll_.stop();
    heldKey_ = 0;
    const ProfileLine line = profile_->Drag().DragLine();
    const bool computes = profile_->Release();
    UpdateLines();
    if (OnReleased) OnReleased(line, computes);
}

void SpeedProfilePlot::leaveEvent(QEvent*) {
    if (OnPointer) OnPointer(std::nullopt);
}

void SpeedProfilePlot::wheelEvent(QWheelEvent* event) {
    constexpr int Notch = 120;
    event->accept();
    if (!IsDrawable()) return;
    const QPoint angle = event->angleDelta();
    if (angle.x() != 0 || event->modifiers().testFlag(Qt::ShiftModifier)) {
        const int turned = angle.x() != 0 ? angle.x() : angle.y();
        if (OnScroll) OnScroll(-static_cast<double>(turned) / Notch * profile_->Geometry().ScaleStep());
        return;
    }
    wheelAngle_ += angle.y();
    const int steps = wheelAngle_ / Notch;
    wheelAngle_ %= Notch;
    if (steps != 0 && OnZoom) OnZoom(steps, event->position().x());
}

void SpeedProfilePlot::SetActive(ProfileLine line) {
    active_ = line;
    update();
    if (OnActivated) OnActivated();
}

void SpeedProfilePlot::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
    if (!IsDrawable() || !isPlain) return QWidget::keyPressEvent(event);
    switch (event->key()) {
        case Qt::Key_1:
        case Qt::Key_2:
        case Qt::Key_3:
            if (!IsDragging()) SetActive(AllLines[static_cast<std::size_t>(event->key() - Qt::Key_1)]);
            return;
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            if (OnScroll) OnScroll((event->key() == Qt::Key_PageUp ? -1 : 1) * profile_->Geometry().Visible());
            return;
        default:
            if (!MoveByKey(event->key(), event->modifiers().testFlag(Qt::ShiftModifier))) QWidget::keyPressEvent(event);
    }
}

bool SpeedProfilePlot::MoveByKey(int key, bool oneUnit) {
    const bool isVertical = active_ == ProfileLine::IdealSpeed;
    const int less = isVertical ? Qt::Key_Down : Qt::Key_Left;
    const int more = isVertical ? Qt::Key_Up : Qt::Key_Right;
    if (key != less && key != more) return false;
    if (IsDragging() && heldKey_ == 0) return true;  // the mouse has a line
    constexpr int SpeedStep = 5;
    constexpr int MovesPerScaleStep = 10;
    const int step = isVertical ? SpeedStep : std::max(profile_->Geometry().ScaleStep() / MovesPerScaleStep, 1);
    heldKey_ = key;
    profile_->Grab(active_);
    profile_->MoveBy((key == less ? -1.0 : 1.0) * (oneUnit ? 1 : step));
    if (!isVertical) ScrollTo(profile_->PixelOf(active_));
    if (OnMoved) OnMoved();
    return true;
}

void SpeedProfilePlot::ScrollTo(double x) {
    const ProfileGeometry& geometry = profile_->Geometry();
    const PlotRectangle& area = geometry.Rectangle();
    const double middle = (area.Left + area.Right) / 2;
    if ((x < area.Left || x > area.Right) && OnScroll) OnScroll(geometry.AxisValueAt(x) - geometry.AxisValueAt(middle));
}

void SpeedProfilePlot::keyReleaseEvent(QKeyEvent* event) {
    if (heldKey_ == 0 || event->key() != heldKey_) return QWidget::keyReleaseEvent(event);
    if (!event->isAutoRepeat()) Release();
}

void SpeedProfilePlot::focusInEvent(QFocusEvent*) { update(); }

void SpeedProfilePlot::focusOutEvent(QFocusEvent*) {
    // The key goes up in another window then.
    if (heldKey_ != 0) Release();
    update();
}

}  // namespace vantor
