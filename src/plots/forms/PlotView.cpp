#include "plots/forms/PlotView.h"

#include <QFontInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "core/PictureFile.h"
#include "core/RunTimeError.h"
#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/ItemTip.h"
#include "core/forms/Named.h"
#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr double Reach = 8;
/// No eye sees a third of a pixel.
constexpr double Tolerance = 0.35;
/// Lines stand on pixel centres.
constexpr double PixelCentre = 0.5;
/// What is pointed at stands out less than what is chosen.
constexpr double PointedOpacity = 0.4;
constexpr double KeyZoom = 1.5;
constexpr double WheelZoom = 1.25;
constexpr double WheelStep = 120;
/// Ranges are told as exactly as a tenth of the axis.
constexpr double StepsInWords = 10;

CanvasPoint Place(QPointF pixel) { return {pixel.x() - PixelCentre, pixel.y() - PixelCentre}; }

}  // namespace

PlotView::PlotView(AppContext& context, QWidget* parent) : QWidget(parent), context_(context) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    SetAccessibleRole(*this, QAccessible::Chart);
}

void PlotView::Show(Plot plot) {
    const bool staysInView = plot.Whole() == plot_.Whole();
    plot_ = std::move(plot);
    if (!staysInView) window_ = plot_.Whole();
    chosen_ = pointed_ = 0;
    if (accessibleName().isEmpty()) setAccessibleName(ToQt(plot_.Axes.Title));
    DescribeItself();
    Redraw();
}

void PlotView::SetLook(bool hasTitle, bool hasLegend) {
    hasTitle_ = hasTitle;
    hasLegend_ = hasLegend;
    Redraw();
}

void PlotView::SetChosenItem(int item) {
    if (item == chosen_) return;
    chosen_ = plot_.HasItem(item) ? item : 0;
    BringIntoView(chosen_);
    DescribeItself();
    update();
}

QSize PlotView::sizeHint() const { return {900, 460}; }
QSize PlotView::minimumSizeHint() const { return {420, 240}; }

CanvasBox PlotView::Box() const {
    constexpr double Edge = 6;
    return {Edge, Edge, width() - 2 * Edge, height() - 2 * Edge};
}

PlotLook PlotView::Look() const {
    return {ColoursOf(palette()), static_cast<double>(QFontInfo(font()).pixelSize()), hasLegend_, hasTitle_, Tolerance};
}

std::optional<PlotMap> PlotView::Map() const {
    try {
        return MapOf(FontMeasure(), Box(), plot_, Look(), window_);
    } catch (const RunTimeError&) {
        return std::nullopt;  // the view says why it could not be drawn
    }
}

PlotHit PlotView::HitAt(QPointF place) const {
    const auto map = Map();
    return map ? FindItem(plot_, *map, Place(place), Reach) : PlotHit();
}

void PlotView::SetWindow(const PlotWindow& window) {
    if (window == window_) return;
    window_ = window;
    Redraw();
}

void PlotView::ZoomAbout(QPointF place, double factor) {
    const auto map = Map();
    if (!map) return;
    const PlotPoint about = map->ValueAt(Place(place));
    SetWindow(ZoomedWindow(window_, plot_.Whole(), about, factor, plot_.ZoomsUp));
    // Longer numbers on the upright axis take room from the area.
    const auto zoomed = Map();
    if (!zoomed || IsWhole()) return;
    const PlotPoint there = zoomed->ValueAt(Place(place));
    SetWindow(MovedWindow(window_, plot_.Whole(), about.X - there.X, plot_.ZoomsUp ? about.Y - there.Y : 0));
}

void PlotView::ZoomBy(double factor) {
    const auto map = Map();
    if (!map) return;
    const CanvasBox& area = map->Area();
    ZoomAbout({area.X + area.Width / 2, area.Y + area.Height / 2}, factor);
}

void PlotView::ShowWhole() { SetWindow(plot_.Whole()); }

void PlotView::Redraw() {
    base_ = QPixmap();
    update();
}

QString PlotView::DrawBase() {
    base_ = QPixmap(size() * devicePixelRatioF());
    base_.setDevicePixelRatio(devicePixelRatioF());
    base_.fill(Ink(ColoursOf(palette()).Base));
    // Axes of nothing say nothing.
    if (!plot_.EmptyText.empty() && plot_.WholeFrame == nullptr) return ToQt(plot_.EmptyText);
    QPainter painter(&base_);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(PixelCentre, PixelCentre);
    try {
        PainterCanvas canvas(painter);
        DrawPlot(canvas, Box(), plot_, Look(), window_);
    } catch (const RunTimeError& error) {
        return ToQt(plot_.ProblemText + "\n\n" + error.Message());
    }
    return {};
}

void PlotView::paintEvent(QPaintEvent*) {
    if (base_.size() != size() * devicePixelRatioF()) problem_ = DrawBase();
    const Colours& colours = ColoursOf(palette());
    QPainter painter(this);
    painter.drawPixmap(0, 0, base_);
    if (problem_.isEmpty()) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(PixelCentre, PixelCentre);
        PainterCanvas canvas(painter);
        if (pointed_ != chosen_) {
            painter.setOpacity(PointedOpacity);
            DrawChosen(canvas, Box(), plot_, Look(), window_, pointed_);
            painter.setOpacity(1);
        }
        DrawChosen(canvas, Box(), plot_, Look(), window_, chosen_);
        painter.restore();
    }
    painter.setPen(Ink(colours.Text));
    painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, problem_);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(hasFocus() ? palette().color(QPalette::Highlight) : Ink(colours.Grid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PlotView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    Redraw();
}

bool PlotView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    const int item = HitAt(help->pos()).Item;
    ShowPlainTip(*help, plot_.HasItem(item) ? plot_.Items[static_cast<std::size_t>(item) - 1].Text : std::string(),
                 *this);
    return true;
}

void PlotView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    grabbed_ = event->position();
    isDragging_ = false;
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
    constexpr double LeastDrag = 4;
    if (!grabbed_) return PointAt(HitAt(event->position()).Item);
    const QPointF way = event->position() - *grabbed_;
    if (!isDragging_ && way.manhattanLength() < LeastDrag) return;
    isDragging_ = true;
    const auto map = Map();
    if (IsWhole() || !map) return;
    setCursor(Qt::ClosedHandCursor);
    const PlotPoint from = map->ValueAt(Place(*grabbed_));
    const PlotPoint to = map->ValueAt(Place(event->position()));
    grabbed_ = event->position();
    SetWindow(MovedWindow(window_, plot_.Whole(), from.X - to.X, from.Y - to.Y));
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !grabbed_) return QWidget::mouseReleaseEvent(event);
    grabbed_.reset();
    unsetCursor();
    if (isDragging_) return;
    const int item = HitAt(event->position()).Item;
    if (item != 0) Choose(item);
}

void PlotView::leaveEvent(QEvent*) { PointAt(0); }

void PlotView::wheelEvent(QWheelEvent* event) {
    // On a small screen the wheel alone scrolls the window.
    if (!event->modifiers().testFlag(Qt::ControlModifier) && IsInScrolledWindow(*this)) return event->ignore();
    ZoomAbout(event->position(), std::pow(WheelZoom, event->angleDelta().y() / WheelStep));
    event->accept();
}

void PlotView::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(plot_.Items.size());
    if (event->matches(QKeySequence::Copy)) {
        Guarded(context_.Messages, [this] { CopyPicture(); });
        return;
    }
    switch (event->key()) {
        case Qt::Key_Right:
        case Qt::Key_Down: return Choose(std::min(chosen_ + 1, last));
        case Qt::Key_Left:
        case Qt::Key_Up: return Choose(chosen_ == 0 ? last : std::max(chosen_ - 1, 1));
        case Qt::Key_Home: return Choose(std::min(1, last));
        case Qt::Key_End: return Choose(last);
        case Qt::Key_Plus:
        case Qt::Key_Equal: return ZoomBy(KeyZoom);
        case Qt::Key_Minus: return ZoomBy(1 / KeyZoom);
        case Qt::Key_0: return ShowWhole();
        default: QWidget::keyPressEvent(event);
    }
}

void PlotView::Choose(int item) {
    if (item == chosen_) return;
    SetChosenItem(item);
    if (OnChosen) OnChosen();
}

void PlotView::PointAt(int item) {
    if (item == pointed_) return;
    pointed_ = item;
    update();
    if (OnPointed) OnPointed(item);
}

void PlotView::BringIntoView(int item) {
    const auto isIn = [](const PlotRange& range, double value) { return value >= range.Low && value <= range.High; };
    if (item == 0 || IsWhole()) return;
    for (const auto& part : plot_.Parts) {
        const auto place = part->PlaceOf(item);
        if (!place) continue;
        if (isIn(window_.Across, place->X) && isIn(window_.Up, place->Y)) return;
        const auto middle = [](const PlotRange& range) { return range.Low + range.Span() / 2; };
        return SetWindow(
            MovedWindow(window_, plot_.Whole(), place->X - middle(window_.Across), place->Y - middle(window_.Up)));
    }
}

void PlotView::DescribeItself() {
    if (!plot_.EmptyText.empty()) return setAccessibleDescription(ToQt(plot_.EmptyText));
    const auto range = [](const PlotAxis& axis) {
        const double step = axis.Whole.Span() / StepsInWords;
        return axis.Caption + " from " + AxisText(axis.Values, axis.Whole.Low, step) + " to " +
               AxisText(axis.Values, axis.Whole.High, step);
    };
    std::string text = range(plot_.Axes.Across) + ", " + range(plot_.Axes.Up) + ".";
    if (chosen_ != 0) {
        std::string item = plot_.Items[static_cast<std::size_t>(chosen_) - 1].Text;
        std::ranges::replace(item, '\n', ' ');
        text += " " + item;
    }
    setAccessibleDescription(ToQt(text));
}

void PlotView::CopyPicture() {
    context_.DesktopServices.CopyPicture(PlotPicture(context_.Documents, plot_, window_, PictureFormat::Png));
}

void PlotView::SavePicture() {
    vantor::SavePicture(
        context_, PictureStart ? PictureStart() : plot_.Axes.Title, "Save Picture",
        [this](PictureFormat format) { return PlotPicture(context_.Documents, plot_, window_, format); });
}

QMenu* PlotView::MakeMenu() {
    auto* menu = new QMenu(this);
    const auto add = [&](const char* name, const QString& caption, const QKeySequence& key, bool isOn, auto action) {
        QAction* entry = menu->addAction(caption);
        entry->setObjectName(QLatin1String(name));
        entry->setShortcut(key);
        entry->setShortcutVisibleInContextMenu(true);
        entry->setEnabled(isOn);
        Connect(entry, &QAction::triggered, this, context_.Messages, action);
    };
    const bool hasPlot = plot_.EmptyText.empty() && Map().has_value();
    add("mnuZoomIn", QStringLiteral("Zoom &In"), Qt::Key_Plus, hasPlot, [this] { ZoomBy(KeyZoom); });
    add("mnuZoomOut", QStringLiteral("Zoom &Out"), Qt::Key_Minus, hasPlot && !IsWhole(),
        [this] { ZoomBy(1 / KeyZoom); });
    add("mnuShowWhole", QStringLiteral("Show &Whole"), Qt::Key_0, hasPlot && !IsWhole(), [this] { ShowWhole(); });
    menu->addSeparator();
    add("mnuCopyPicture", QStringLiteral("&Copy Picture"), QKeySequence::Copy, hasPlot, [this] { CopyPicture(); });
    add("mnuSavePicture", QStringLiteral("&Save Picture..."), {}, hasPlot, [this] { SavePicture(); });
    if (ExtendMenu) ExtendMenu(*menu);
    return menu;
}

void PlotView::contextMenuEvent(QContextMenuEvent* event) {
    if (const int item = HitAt(event->pos()).Item;
        ExtendMenu && event->reason() == QContextMenuEvent::Mouse && item != 0)
        Choose(item);
    QMenu* menu = MakeMenu();
    menu->setObjectName(QStringLiteral("mnuPlot"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(event->globalPos());
}

void PlotView::focusInEvent(QFocusEvent*) { update(); }
void PlotView::focusOutEvent(QFocusEvent*) { update(); }

PlotSampleView::PlotSampleView(PlotSample sample, QWidget* parent) : QWidget(parent), sample_(std::move(sample)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(ToQt(sample_.Caption));
}

void PlotSampleView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PainterCanvas canvas(painter);
    sample_.Draw(canvas, {0, 0, double(width()), double(height())}, {ColoursOf(palette())});
}

}  // namespace vantor
