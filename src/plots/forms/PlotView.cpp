#include "plots/forms/PlotView.h"

#include <QFontInfo>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "core/RunTimeError.h"
#include "core/forms/Named.h"
#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

constexpr double Reach = 8;
/// No eye sees a third of a pixel.
constexpr double Tolerance = 0.35;
/// Ranges are told as exactly as a tenth of the axis.
constexpr double StepsInWords = 10;

/// Lines stand on pixel centres.
constexpr DrawingHabits Habits{.Origin = 0.5,
                               .KeyZoom = 1.5,
                               .WheelZoom = 1.25,
                               .PointedOpacity = 0.4,
                               .MenuName = "mnuPlot",
                               .WholeName = "mnuShowWhole",
                               .WholeCaption = "Show &Whole"};

}  // namespace

PlotView::PlotView(AppContext& context, QWidget* parent) : DrawingView(context, parent, Habits) {}

void PlotView::Show(Plot plot) {
    const bool staysInView = plot.Whole() == plot_.Whole();
    plot_ = std::move(plot);
    if (!staysInView) window_ = plot_.Whole();
    BeginAnew();
}

void PlotView::SetLook(bool hasTitle, bool hasLegend) {
    hasTitle_ = hasTitle;
    hasLegend_ = hasLegend;
    Redraw();
}

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

QString PlotView::Draw(Canvas& canvas) {
    // Axes of nothing say nothing.
    if (!plot_.EmptyText.empty() && plot_.WholeFrame == nullptr) return ToQt(plot_.EmptyText);
    try {
        DrawPlot(canvas, Box(), plot_, Look(), window_);
    } catch (const RunTimeError& error) {
        return ToQt(plot_.ProblemText + "\n\n" + error.Message());
    }
    return {};
}

void PlotView::DrawItem(Canvas& canvas, int item) { DrawChosen(canvas, Box(), plot_, Look(), window_, item); }

std::vector<std::byte> PlotView::Picture(const DocumentWriter& documents, PictureFormat format) const {
    return PlotPicture(documents, plot_, window_, format);
}

int PlotView::ItemAt(CanvasPoint place) const {
    const auto map = Map();
    return map ? FindItem(plot_, *map, place, Reach).Item : 0;
}

std::string PlotView::TextOf(int item) const {
    return plot_.HasItem(item) ? plot_.Items[static_cast<std::size_t>(item) - 1].Text : std::string();
}

void PlotView::SetWindow(const PlotWindow& window) {
    if (window == window_) return;
    window_ = window;
    Redraw();
}

void PlotView::ZoomAbout(CanvasPoint place, double factor) {
    const auto map = Map();
    if (!map) return;
    const PlotPoint about = map->ValueAt(place);
    SetWindow(ZoomedWindow(window_, plot_.Whole(), about, factor, plot_.ZoomsUp));
    // Longer numbers on the upright axis take room from the area.
    const auto zoomed = Map();
    if (!zoomed || IsWhole()) return;
    const PlotPoint there = zoomed->ValueAt(place);
    SetWindow(MovedWindow(window_, plot_.Whole(), about.X - there.X, plot_.ZoomsUp ? about.Y - there.Y : 0));
}

CanvasPoint PlotView::Middle() const {
    const auto map = Map();
    if (!map) return DrawingView::Middle();
    const CanvasBox& area = map->Area();
    return {area.X + area.Width / 2, area.Y + area.Height / 2};
}

bool PlotView::Drag(CanvasPoint from, CanvasPoint to) {
    const auto map = Map();
    if (IsWhole() || !map) return false;
    const PlotPoint start = map->ValueAt(from);
    const PlotPoint end = map->ValueAt(to);
    SetWindow(MovedWindow(window_, plot_.Whole(), start.X - end.X, start.Y - end.Y));
    return true;
}

void PlotView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Right:
        case Qt::Key_Down: return ChooseNext(*event);
        case Qt::Key_Left:
        case Qt::Key_Up: return ChooseBefore(*event);
        default: DrawingView::keyPressEvent(event);
    }
}

void PlotView::BringIntoView(int item) {
    const auto isIn = [](const PlotRange& range, double value) { return value >= range.Low && value <= range.High; };
    if (IsWhole()) return;
    for (const auto& part : plot_.Parts) {
        const auto place = part->PlaceOf(item);
        if (!place) continue;
        if (isIn(window_.Across, place->X) && isIn(window_.Up, place->Y)) return;
        const auto middle = [](const PlotRange& range) { return range.Low + range.Span() / 2; };
        return SetWindow(
            MovedWindow(window_, plot_.Whole(), place->X - middle(window_.Across), place->Y - middle(window_.Up)));
    }
}

std::string PlotView::Description() const {
    if (!plot_.EmptyText.empty()) return plot_.EmptyText;
    const auto range = [](const PlotAxis& axis) {
        const double step = axis.Whole.Span() / StepsInWords;
        return axis.Caption + " from " + AxisText(axis.Values, axis.Whole.Low, step) + " to " +
               AxisText(axis.Values, axis.Whole.High, step);
    };
    std::string text = range(plot_.Axes.Across) + ", " + range(plot_.Axes.Up) + ".";
    if (ChosenItem() != 0) text += " " + TextOf(ChosenItem());
    std::ranges::replace(text, '\n', ' ');
    return text;
}

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
