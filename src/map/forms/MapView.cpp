#include "map/forms/MapView.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/Counted.h"
#include "core/PictureFile.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/ItemTip.h"
#include "core/forms/Named.h"
#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr double Reach = 8;
/// What is pointed at stands out less than what is chosen.
constexpr double PointedOpacity = 0.5;
constexpr double KeyZoom = 0.5;  // levels
constexpr double WheelZoom = 0.35;
constexpr double WheelStep = 120;
/// The part of the view that an arrow key moves it by.
constexpr double KeyMove = 0.125;

CanvasPoint Place(QPointF pixel) { return {pixel.x(), pixel.y()}; }

}  // namespace

MapView::MapView(AppContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      under_(new BaseMap(context, this)),
      scene_(std::make_shared<const MapScene>()) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    SetAccessibleRole(*this, QAccessible::Chart);
    under_->OnRead = [this] {
        DescribeItself();
        Redraw();
    };
}

void MapView::Show(std::shared_ptr<const MapScene> scene) {
    const bool staysInView = isMoved_ && !scene->IsEmpty() && scene->Bounds().Meets(Window().View());
    scene_ = std::move(scene);
    chosen_ = pointed_ = 0;
    mark_.reset();
    if (accessibleName().isEmpty()) setAccessibleName(ToQt(scene_->Contents().Title));
    if (staysInView)
        Redraw();
    else
        ShowAll();
    DescribeItself();
}

void MapView::ShowText(const std::string& text) {
    MapContents contents;
    contents.EmptyText = text;
    Show(std::make_shared<const MapScene>(std::move(contents)));
}

void MapView::SetChosenItem(int item) {
    if (item == chosen_) return;
    chosen_ = item >= 1 && item <= scene_->Items() ? item : 0;
    BringIntoView(chosen_);
    DescribeItself();
    update();
}

void MapView::SetMark(const std::optional<Position>& place) {
    mark_ = place;
    if (mark_) {
        WorldBox bounds;
        bounds.Include(NearestTurn(WorldOf(*mark_), scene_->Bounds().Middle().X));
        BringIntoView(bounds);
    }
    update();
}

MapWindow MapView::Window() const {
    const CanvasBox area{0, 0, static_cast<double>(width()), static_cast<double>(height())};
    if (!isMoved_) return FittedWindow(scene_->Bounds(), area);
    MapWindow window = window_;
    window.Area = area;
    return window;
}

MapLook MapView::Look() const {
    return {ColoursOf(palette()), static_cast<double>(QFontInfo(font()).pixelSize()), devicePixelRatioF(),
            under_->Tiles()};
}

MapHit MapView::HitAt(QPointF place) const { return scene_->Find(Window(), Place(place), Reach, chosen_); }

void MapView::MoveTo(const MapWindow& window) {
    if (scene_->IsEmpty()) return;
    window_ = window;
    isMoved_ = true;
    Redraw();
}

void MapView::MoveBy(double across, double up) {
    const CanvasPoint from{width() / 2.0, height() / 2.0};
    MoveTo(MovedWindow(Window(), from, {from.X - across * width(), from.Y + up * height()}));
}

void MapView::ShowAll() {
    isMoved_ = false;
    Redraw();
}

void MapView::ZoomBy(double levels) { MoveTo(ZoomedWindow(Window(), {width() / 2.0, height() / 2.0}, levels)); }

void MapView::Redraw() {
    base_ = QPixmap();
    update();
}

void MapView::DrawBase() {
    base_ = QPixmap(size() * devicePixelRatioF());
    base_.setDevicePixelRatio(devicePixelRatioF());
    base_.fill(Ink(ColoursOf(palette()).Base));
    if (scene_->IsEmpty()) return;
    under_->FollowChoice();
    const MapWindow window = Window();
    under_->Need(window, devicePixelRatioF());
    QPainter painter(&base_);
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter);
    DrawMap(canvas, *scene_, window, Look());
}

void MapView::PaintOver(QPainter& painter) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter);
    const MapWindow window = Window();
    if (pointed_ != chosen_) {
        painter.setOpacity(PointedOpacity);
        DrawChosenTrack(canvas, *scene_, window, Look(), pointed_);
        painter.setOpacity(1);
    }
    DrawChosenTrack(canvas, *scene_, window, Look(), chosen_);
    if (pointed_ != 0 || chosen_ != 0) DrawOverTracks(canvas, *scene_, window, Look());
    PaintMark(canvas, window);
    painter.restore();
    // The middle, which Enter stands for.
    if (!OnPlace || !hasFocus()) return;
    const QPoint middle(width() / 2, height() / 2);
    constexpr int Arm = 8;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawLine(middle - QPoint(Arm, 0), middle + QPoint(Arm, 0));
    painter.drawLine(middle - QPoint(0, Arm), middle + QPoint(0, Arm));
}

void MapView::PaintMark(Canvas& canvas, const MapWindow& window) {
    if (!mark_) return;
    const Colours& inks = ColoursOf(palette());
    const CanvasPoint at = window.PlaceOf(NearestTurn(WorldOf(*mark_), window.Centre.X));
    // Unlike the ring at the start of a track.
    const std::pair<double, Colour> discs[] = {
        {21, inks.Base}, {18, inks.Highlight}, {11, inks.Base}, {6, inks.Highlight}};
    for (const auto& [size, ink] : discs) canvas.DrawDot(at, size, ink);
}

void MapView::PaintProblem(QPainter& painter) {
    const QString problem = ToQt(under_->Problem());
    if (problem.isEmpty() || height() < MapWindow::LeastFurnished) return;
    constexpr int Flags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    constexpr int Space = 4;
    const int north = 3 * fontMetrics().height();  // which stands on the right
    const QRect room(Space, Space, width() - 2 * Space - north, height() / 3);
    const Colours& colours = ColoursOf(palette());
    painter.fillRect(fontMetrics().boundingRect(room, Flags, problem).intersected(room), Ink(colours.Base));
    painter.setPen(Ink(colours.DimText));
    painter.drawText(room, Flags, problem);
}

void MapView::paintEvent(QPaintEvent*) {
    if (base_.size() != size() * devicePixelRatioF()) DrawBase();
    const Colours& colours = ColoursOf(palette());
    QPainter painter(this);
    painter.drawPixmap(0, 0, base_);
    constexpr int Margin = 24;
    if (scene_->IsEmpty()) {
        painter.setPen(Ink(colours.Text));
        painter.drawText(rect().adjusted(Margin, Margin, -Margin, -Margin), Qt::AlignCenter | Qt::TextWordWrap,
                         ToQt(scene_->Contents().EmptyText));
    } else {
        PaintOver(painter);
        PaintProblem(painter);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : Ink(colours.Grid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void MapView::resizeEvent(QResizeEvent*) { Redraw(); }

void MapView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    Redraw();
}

bool MapView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    const MapHit hit = HitAt(help->pos());
    ShowPlainTip(*help, hit.Item == 0 ? std::string() : scene_->TextOf(hit), *this);
    return true;
}

void MapView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    grabbed_ = event->position();
    isDragging_ = false;
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    constexpr double LeastDrag = 4;
    if (!grabbed_) return PointAt(HitAt(event->position()).Item);
    if (!isDragging_ && (event->position() - *grabbed_).manhattanLength() < LeastDrag) return;
    isDragging_ = true;
    setCursor(Qt::ClosedHandCursor);
    MoveTo(MovedWindow(Window(), Place(*grabbed_), Place(event->position())));
    grabbed_ = event->position();
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !grabbed_) return QWidget::mouseReleaseEvent(event);
    grabbed_.reset();
    unsetCursor();
    if (isDragging_ || scene_->IsEmpty()) return;
    if (const int item = HitAt(event->position()).Item; item != 0) Choose(item);
    if (OnPlace) OnPlace(PositionOf(Window().WorldAt(Place(event->position()))));
}

void MapView::leaveEvent(QEvent*) { PointAt(0); }

void MapView::wheelEvent(QWheelEvent* event) {
    // On a small screen the wheel alone scrolls the window.
    if (!event->modifiers().testFlag(Qt::ControlModifier) && IsInScrolledWindow(*this)) return event->ignore();
    MoveTo(ZoomedWindow(Window(), Place(event->position()), WheelZoom * event->angleDelta().y() / WheelStep));
    event->accept();
}

void MapView::keyPressEvent(QKeyEvent* event) {
    const int last = scene_->Items();
    if (event->matches(QKeySequence::Copy)) {
        if (!scene_->IsEmpty()) Guarded(context_.Messages, [this] { CopyPicture(); });
        return;
    }
    switch (event->key()) {
        case Qt::Key_Left: return MoveBy(-KeyMove, 0);
        case Qt::Key_Right: return MoveBy(KeyMove, 0);
        case Qt::Key_Up: return MoveBy(0, KeyMove);
        case Qt::Key_Down: return MoveBy(0, -KeyMove);
        case Qt::Key_PageDown: return Choose(std::min(chosen_ + 1, last));
        case Qt::Key_PageUp: return Choose(chosen_ == 0 ? last : std::max(chosen_ - 1, 1));
        case Qt::Key_Home: return Choose(std::min(1, last));
        case Qt::Key_End: return Choose(last);
        case Qt::Key_Plus:
        case Qt::Key_Equal: return ZoomBy(KeyZoom);
        case Qt::Key_Minus: return ZoomBy(-KeyZoom);
        case Qt::Key_0:
        case Qt::Key_F: return ShowAll();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (OnPlace && !scene_->IsEmpty()) return OnPlace(PositionOf(Window().Centre));
            [[fallthrough]];
        default: QWidget::keyPressEvent(event);
    }
}

void MapView::Choose(int item) {
    if (item == chosen_) return;
    SetChosenItem(item);
    if (OnChosen) OnChosen();
}

void MapView::PointAt(int item) {
    if (item == pointed_) return;
    pointed_ = item;
    update();
}

void MapView::BringIntoView(int item) {
    if (item == 0) return;
    BringIntoView(scene_->Track(item).Bounds());
}

void MapView::BringIntoView(const WorldBox& bounds) {
    if (!isMoved_ || bounds.IsEmpty() || bounds.Meets(Window().View())) return;
    MapWindow window = Window();
    window.Centre = bounds.Middle();
    MoveTo(window);
}

void MapView::DescribeItself() {
    if (scene_->IsEmpty()) return setAccessibleDescription(ToQt(scene_->Contents().EmptyText));
    std::string text = Counted(scene_->Items(), "track") + ", " + Counted(scene_->Nodes().size(), "node") + ".";
    if (!under_->Problem().empty()) text += " " + under_->Problem();
    if (const std::size_t out = scene_->LeftOut(); out > 0)
        text += " " + Counted(out, "point") + " without a position.";
    if (chosen_ != 0) text += " " + scene_->Track(chosen_).Name;
    setAccessibleDescription(ToQt(text));
}

std::vector<std::byte> MapView::Picture(PictureFormat format) const {
    constexpr double PictureWidth = 720;
    constexpr double PixelsToPoint = 192.0 / 72;
    MapWindow window = Window();
    const double smaller = PictureWidth / std::max(window.Area.Width, 1.0);
    const CanvasSize size{PictureWidth, window.Area.Height * smaller};
    window.Area = {0, 0, size.Width, size.Height};
    window.Zoom += std::log2(smaller);
    MapLook look;
    look.Detail = PixelsToPoint;
    look.Under = under_->Tiles();
    return context_.Documents.Picture(
        size,
        [&](Canvas& canvas) {
            DrawMap(canvas, *scene_, window, look);
            DrawChosenTrack(canvas, *scene_, window, look, chosen_);
            if (chosen_ != 0) DrawOverTracks(canvas, *scene_, window, look);
        },
        format);
}

void MapView::CopyPicture() { context_.DesktopServices.CopyPicture(Picture(PictureFormat::Png)); }

void MapView::SavePicture() {
    vantor::SavePicture(context_, PictureStart ? PictureStart() : scene_->Contents().Title, "Save Picture",
                        [this](PictureFormat format) { return Picture(format); });
}

QMenu* MapView::MakeMenu() {
    auto* menu = new QMenu(this);
    const auto add = [&](const char* name, const QString& caption, const QKeySequence& key, bool isOn, auto action) {
        QAction* entry = menu->addAction(caption);
        entry->setObjectName(QLatin1String(name));
        entry->setShortcut(key);
        entry->setShortcutVisibleInContextMenu(true);
        entry->setEnabled(isOn);
        Connect(entry, &QAction::triggered, this, context_.Messages, action);
    };
    const bool hasMap = !scene_->IsEmpty();
    add("mnuZoomIn", QStringLiteral("Zoom &In"), Qt::Key_Plus, hasMap, [this] { ZoomBy(KeyZoom); });
    add("mnuZoomOut", QStringLiteral("Zoom &Out"), Qt::Key_Minus, hasMap, [this] { ZoomBy(-KeyZoom); });
    add("mnuShowAll", QStringLiteral("Show &All"), Qt::Key_F, hasMap && isMoved_, [this] { ShowAll(); });
    menu->addSeparator();
    add("mnuCopyPicture", QStringLiteral("&Copy Picture"), QKeySequence::Copy, hasMap, [this] { CopyPicture(); });
    add("mnuSavePicture", QStringLiteral("&Save Picture..."), {}, hasMap, [this] { SavePicture(); });
    if (ExtendMenu) ExtendMenu(*menu);
    return menu;
}

void MapView::contextMenuEvent(QContextMenuEvent* event) {
    if (ExtendMenu && OnPlace && event->reason() == QContextMenuEvent::Mouse && !scene_->IsEmpty())
        OnPlace(PositionOf(Window().WorldAt(Place(event->pos()))));
    QMenu* menu = MakeMenu();
    menu->setObjectName(QStringLiteral("mnuMap"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void MapView::focusInEvent(QFocusEvent*) { update(); }
void MapView::focusOutEvent(QFocusEvent*) { update(); }

}  // namespace vantor
