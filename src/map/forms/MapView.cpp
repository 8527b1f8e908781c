#include "map/forms/MapView.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/Counted.h"
#include "core/forms/Named.h"
#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr double Reach = 8;
/// The part of the view that an arrow key moves it by.
constexpr double KeyMove = 0.125;

DrawingHabits Habits() {
    constexpr double KeyLevels = 0.5;
    constexpr double WheelLevels = 0.35;
    return {.KeyZoom = std::exp2(KeyLevels),
            .WheelZoom = std::exp2(WheelLevels),
            .PointedOpacity = 0.5,
            .ZoomsOutOfWhole = true,
            .MenuName = "mnuMap",
            .WholeName = "mnuShowAll",
            .WholeCaption = "Show &All",
            .WholeKey = Qt::Key_F};
}

}  // namespace

MapView::MapView(AppContext& context, QWidget* parent)
    : DrawingView(context, parent, Habits()),
      under_(new BaseMap(context, this)),
      scene_(std::make_shared<const MapScene>()) {
    under_->OnRead = [this] {
        DescribeItself();
        Redraw();
    };
}

void MapView::Show(std::shared_ptr<const MapScene> scene) {
    isMoved_ = isMoved_ && !scene->IsEmpty() && scene->Bounds().Meets(Window().View());
    scene_ = std::move(scene);
    mark_.reset();
    BeginAnew();
}

void MapView::ShowText(const std::string& text) {
    MapContents contents;
    contents.EmptyText = text;
    Show(std::make_shared<const MapScene>(std::move(contents)));
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

MapHit MapView::HitAt(CanvasPoint place) const { return scene_->Find(Window(), place, Reach, ChosenItem()); }

std::string MapView::TipAt(CanvasPoint place) const {
    const MapHit hit = HitAt(place);
    return hit.Item == 0 ? std::string() : scene_->TextOf(hit);
}

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

void MapView::ShowWhole() {
    isMoved_ = false;
    Redraw();
}

bool MapView::Drag(CanvasPoint from, CanvasPoint to) {
    MoveTo(MovedWindow(Window(), from, to));
    return HasDrawing();
}

void MapView::ZoomAbout(CanvasPoint place, double factor) { MoveTo(ZoomedWindow(Window(), place, std::log2(factor))); }

void MapView::ClickAt(CanvasPoint place) {
    if (OnPlace && HasDrawing()) OnPlace(PositionOf(Window().WorldAt(place)));
}

QString MapView::Draw(Canvas& canvas) {
    if (scene_->IsEmpty()) return ToQt(scene_->Contents().EmptyText);
    under_->FollowChoice();
    const MapWindow window = Window();
    under_->Need(window, devicePixelRatioF());
    DrawMap(canvas, *scene_, window, Look());
    return {};
}

void MapView::DrawItem(Canvas& canvas, int item) { DrawChosenTrack(canvas, *scene_, Window(), Look(), item); }

void MapView::PaintOver(QPainter& painter) {
    if (scene_->IsEmpty()) return;
    PainterCanvas canvas(painter);
    const MapWindow window = Window();
    if (HasItemOver()) DrawOverTracks(canvas, *scene_, window, Look());
    PaintMark(canvas, window);
    painter.setRenderHint(QPainter::Antialiasing, false);
    PaintMiddle(painter);
    PaintProblem(painter);
}

void MapView::PaintMiddle(QPainter& painter) {
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

void MapView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left: return MoveBy(-KeyMove, 0);
        case Qt::Key_Right: return MoveBy(KeyMove, 0);
        case Qt::Key_Up: return MoveBy(0, KeyMove);
        case Qt::Key_Down: return MoveBy(0, -KeyMove);
        case Qt::Key_PageDown: return ChooseNext(*event);
        case Qt::Key_PageUp: return ChooseBefore(*event);
        case Qt::Key_F: return ShowWhole();
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (OnPlace && HasDrawing()) return OnPlace(PositionOf(Window().Centre));
            [[fallthrough]];
        default: DrawingView::keyPressEvent(event);
    }
}

void MapView::BringIntoView(const WorldBox& bounds) {
    if (!isMoved_ || bounds.IsEmpty() || bounds.Meets(Window().View())) return;
    MapWindow window = Window();
    window.Centre = bounds.Middle();
    MoveTo(window);
}

std::string MapView::Description() const {
    if (scene_->IsEmpty()) return scene_->Contents().EmptyText;
    std::string text = Counted(scene_->Items(), "track") + ", " + Counted(scene_->Nodes().size(), "node") + ".";
    if (!under_->Problem().empty()) text += " " + under_->Problem();
    if (const std::size_t out = scene_->LeftOut(); out > 0)
        text += " " + Counted(out, "point") + " without a position.";
    if (ChosenItem() != 0) text += " " + scene_->Track(ChosenItem()).Name;
    return text;
}

std::vector<std::byte> MapView::Picture(const DocumentWriter& documents, PictureFormat format) const {
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
    return documents.Picture(
        size,
        [&](Canvas& canvas) {
            DrawMap(canvas, *scene_, window, look);
            DrawChosenTrack(canvas, *scene_, window, look, ChosenItem());
            if (ChosenItem() != 0) DrawOverTracks(canvas, *scene_, window, look);
        },
        format);
}

}  // namespace vantor
