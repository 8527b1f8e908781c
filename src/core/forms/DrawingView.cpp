#include "core/forms/DrawingView.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "core/PictureFile.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/ItemTip.h"
#include "core/forms/Named.h"
#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {

DrawingView::DrawingView(AppContext& context, QWidget* parent, const DrawingHabits& habits)
    : QWidget(parent), context_(context), habits_(habits) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    SetAccessibleRole(*this, QAccessible::Chart);
}

void DrawingView::BeginAnew() {
    chosen_ = pointed_ = 0;
    if (accessibleName().isEmpty()) setAccessibleName(ToQt(Title()));
    DescribeItself();
    Redraw();
}

void DrawingView::DescribeItself() { setAccessibleDescription(ToQt(Description())); }

void DrawingView::SetChosenItem(int item) {
    if (item == chosen_) return;
    chosen_ = item >= 1 && item <= LastItem() ? item : 0;
    if (chosen_ != 0) BringIntoView(chosen_);
    DescribeItself();
    update();
}

void DrawingView::Choose(int item, Qt::KeyboardModifiers held) {
    held &= Qt::ControlModifier | Qt::ShiftModifier;
    if (item == chosen_ && (held == Qt::NoModifier || item == 0)) return;
    chosenWith_ = held;
    SetChosenItem(item);
    if (OnChosen) OnChosen();
}

void DrawingView::ChooseNext(const QKeyEvent& event) { Choose(std::min(chosen_ + 1, LastItem()), event.modifiers()); }

void DrawingView::ChooseBefore(const QKeyEvent& event) {
    Choose(chosen_ == 0 ? LastItem() : std::max(chosen_ - 1, 1), event.modifiers());
}

void DrawingView::PointAt(int item) {
    if (item == pointed_) return;
    pointed_ = item;
    update();
    if (OnPointed) OnPointed(item);
}

void DrawingView::Redraw() {
    base_ = QPixmap();
    update();
}

void DrawingView::Prepare(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(habits_.Origin, habits_.Origin);
}

void DrawingView::DrawBase() {
    base_ = QPixmap(size() * devicePixelRatioF());
    base_.setDevicePixelRatio(devicePixelRatioF());
    base_.fill(Ink(ColoursOf(palette()).Base));
    QPainter painter(&base_);
    Prepare(painter);
    PainterCanvas canvas(painter);
    problem_ = Draw(canvas);
}

void DrawingView::PaintItems(QPainter& painter) {
    painter.save();
    Prepare(painter);
    PainterCanvas canvas(painter);
    if (pointed_ != chosen_) {
        painter.setOpacity(habits_.PointedOpacity);
        DrawItem(canvas, pointed_);
        painter.setOpacity(1);
    }
    DrawItem(canvas, chosen_);
    PaintOver(painter);
    painter.restore();
}

void DrawingView::paintEvent(QPaintEvent*) {
    if (base_.size() != size() * devicePixelRatioF()) DrawBase();
    constexpr int Margin = 24;
    const Colours& colours = ColoursOf(palette());
    QPainter painter(this);
    painter.drawPixmap(0, 0, base_);
    if (problem_.isEmpty()) PaintItems(painter);
    painter.setPen(Ink(colours.Text));
    painter.drawText(rect().adjusted(Margin, Margin, -Margin, -Margin), Qt::AlignCenter | Qt::TextWordWrap, problem_);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : Ink(colours.Grid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void DrawingView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    Redraw();
}

bool DrawingView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    ShowPlainTip(*help, TipAt(Place(help->pos())), *this);
    return true;
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    grabbed_ = event->position();
    isDragging_ = false;
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
    constexpr double LeastDrag = 4;
    if (!grabbed_) return PointAt(ItemAt(Place(event->position())));
    if (!isDragging_ && (event->position() - *grabbed_).manhattanLength() < LeastDrag) return;
    isDragging_ = true;
    if (!Drag(Place(*grabbed_), Place(event->position()))) return;
    setCursor(Qt::ClosedHandCursor);
    grabbed_ = event->position();
}

void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !grabbed_) return QWidget::mouseReleaseEvent(event);
    grabbed_.reset();
    unsetCursor();
    if (!isDragging_) Click(event->position(), event->modifiers());
}

void DrawingView::Click(QPointF pixel, Qt::KeyboardModifiers held) {
    if (const int item = ItemAt(Place(pixel)); item != 0) Choose(item, held);
    ClickAt(Place(pixel));
}

void DrawingView::leaveEvent(QEvent*) { PointAt(0); }

void DrawingView::wheelEvent(QWheelEvent* event) {
    constexpr double WheelStep = 120;
    // On a small screen the wheel alone scrolls the window.
    if (!event->modifiers().testFlag(Qt::ControlModifier) && IsInScrolledWindow(*this)) return event->ignore();
    ZoomAbout(Place(event->position()), std::pow(habits_.WheelZoom, event->angleDelta().y() / WheelStep));
    event->accept();
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        if (HasDrawing()) Guarded(context_.Messages, [this] { CopyPicture(); });
        return;
    }
    switch (event->key()) {
        case Qt::Key_Home: return Choose(std::min(1, LastItem()), event->modifiers());
        case Qt::Key_End: return Choose(LastItem(), event->modifiers());
        case Qt::Key_Plus:
        case Qt::Key_Equal: return ZoomBy(habits_.KeyZoom);
        case Qt::Key_Minus: return ZoomBy(1 / habits_.KeyZoom);
        case Qt::Key_0: return ShowWhole();
        default: QWidget::keyPressEvent(event);
    }
}

void DrawingView::CopyPicture() {
    context_.DesktopServices.CopyPicture(Picture(context_.Documents, PictureFormat::Png));
}

void DrawingView::SavePicture() {
    vantor::SavePicture(context_, PictureStart ? PictureStart() : Title(), "Save Picture",
                        [this](PictureFormat format) { return Picture(context_.Documents, format); });
}

QMenu* DrawingView::MakeMenu() {
    auto* menu = new QMenu(this);
    menu->setObjectName(QLatin1String(habits_.MenuName));
    const bool hasDrawing = HasDrawing();
    const auto add = [&](const char* name, const char* caption, const QKeySequence& key, bool isOn, auto action) {
        QAction* entry = menu->addAction(QLatin1String(caption));
        entry->setObjectName(QLatin1String(name));
        entry->setShortcut(key);
        entry->setShortcutVisibleInContextMenu(true);
        entry->setEnabled(isOn && hasDrawing);
        Connect(entry, &QAction::triggered, this, context_.Messages, action);
    };
    const bool isPart = !IsWhole();
    add("mnuZoomIn", "Zoom &In", Qt::Key_Plus, true, [this] { ZoomBy(habits_.KeyZoom); });
    add("mnuZoomOut", "Zoom &Out", Qt::Key_Minus, isPart || habits_.ZoomsOutOfWhole,
        [this] { ZoomBy(1 / habits_.KeyZoom); });
    add(habits_.WholeName, habits_.WholeCaption, habits_.WholeKey, isPart, [this] { ShowWhole(); });
    menu->addSeparator();
    add("mnuCopyPicture", "&Copy Picture", QKeySequence::Copy, true, [this] { CopyPicture(); });
    add("mnuSavePicture", "&Save Picture...", {}, true, [this] { SavePicture(); });
    if (ExtendMenu) ExtendMenu(*menu);
    return menu;
}

void DrawingView::contextMenuEvent(QContextMenuEvent* event) {
    if (ExtendMenu && event->reason() == QContextMenuEvent::Mouse) Click(event->pos(), Qt::NoModifier);
    QMenu* menu = MakeMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void DrawingView::focusInEvent(QFocusEvent*) { update(); }
void DrawingView::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace vantor
