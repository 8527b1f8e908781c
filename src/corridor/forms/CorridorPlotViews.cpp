#include "corridor/forms/CorridorPlotViews.h"

#include <QElapsedTimer>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/forms/PainterCanvas.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

/// Pixels from a border at which it is grabbed, and from a node at which it is chosen.
constexpr double Reach = 5;
constexpr double MovedWidth = 3;
constexpr double MovedOpacity = 0.15;
/// A drawing that takes longer does not follow the hand.
constexpr qint64 LongestFrame = 8;
/// So long, in milliseconds, the hand may rest before all is drawn again.
constexpr int Rest = 150;

/// Bands that are not confirmed.
const PlotSample ProposedSample{"Proposed", &Colours::Key, 2, LinePattern::Dashed};

/// An upright line over the whole area.
void DrawUpright(Canvas& canvas, const PlotMap& map, double value, const LineStyle& style) {
    const CanvasBox& area = map.Area();
    canvas.DrawLine({map.XOf(value), area.Y}, {map.XOf(value), area.Y + area.Height}, style);
}

void FillUpright(Canvas& canvas, const PlotMap& map, const PlotRange& range, Colour ink) {
    const CanvasBox& area = map.Area();
    const double left = map.XOf(range.Low);
    const double right = map.XOf(range.High);
    const double bottom = area.Y + area.Height;
    const std::array corners = {CanvasPoint{left, area.Y}, CanvasPoint{right, area.Y}, CanvasPoint{right, bottom},
                                CanvasPoint{left, bottom}};
    canvas.FillShape(corners, ink, MovedOpacity);
}

}  // namespace

CorridorPlotView::CorridorPlotView(AppContext& context, QWidget* parent)
    : PlotView(context, parent), context_(context) {
    OnChosen = [this] {
        const int item = ChosenItem();
        if (item < 1 || item > static_cast<int>(items_.size())) return;
        chosen_ = items_[static_cast<std::size_t>(item) - 1];
        ChosenRunChanged();
        if (OnRunChosen) OnRunChosen(*chosen_);
    };
    rest_.setSingleShot(true);
    rest_.setInterval(Rest);
    connect(&rest_, &QTimer::timeout, this, [this] {
        isMoving_ = false;
        Redraw();
    });
}

void CorridorPlotView::Moves() {
    if (drawing_ <= LongestFrame) return;
    isMoving_ = true;
    rest_.start();
}

bool CorridorPlotView::Drag(CanvasPoint from, CanvasPoint to) {
    const bool moves = PlotView::Drag(from, to);
    if (moves) Moves();
    return moves;
}

void CorridorPlotView::ZoomAbout(CanvasPoint place, double factor) {
    PlotView::ZoomAbout(place, factor);
    Moves();
}

QString CorridorPlotView::Draw(Canvas& canvas) {
    if (isMoving_ && Shows()) {
        DrawPlot(canvas, Box(), light_, Look(), Window());
        return {};
    }
    QElapsedTimer time;
    time.start();
    const QString problem = PlotView::Draw(canvas);
    drawing_ = time.elapsed();
    return problem;
}

void CorridorPlotView::Show(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                            Way way) {
    corridor_ = &corridor;
    runs_ = &runs;
    filter_ = filter;
    way_ = way;
    if (chosen_ && *chosen_ >= runs.size()) chosen_.reset();
    Refresh();
}

void CorridorPlotView::Refresh() {
    if (corridor_ == nullptr) return;
    items_ = PlottedRunsOf(*corridor_, *runs_, filter_, way_);
    Plot plot = Make({{}, true, ShownUnits()});
    light_ = LightOf(plot);
    PlotView::Show(std::move(plot));
    ChooseItemOfRun();
    ChosenRunChanged();
}

void CorridorPlotView::SetChosenRun(std::optional<std::size_t> run) {
    if (run == chosen_) return;
    chosen_ = run;
    ChooseItemOfRun();
    ChosenRunChanged();
}

void CorridorPlotView::ChooseItemOfRun() {
    const auto at = chosen_ ? std::ranges::find(items_, *chosen_) : items_.end();
    SetChosenItem(at == items_.end() ? 0 : static_cast<int>(at - items_.begin()) + 1);
}

void CorridorPlotView::ClickAt(CanvasPoint place) {
    if (corridor_ == nullptr) return;
    if (const auto node = NodeAt(place); node && OnNodeChosen) OnNodeChosen(*node);
}

Units CorridorPlotView::ShownUnits() const { return UnitsOf(context_.State.Settings); }

Plot CorridorProfilesView::Make(const CorridorLook& look) const {
    CorridorLook shown = look;
    shown.ShowsRuns = showsRuns_;
    Plot plot = CorridorProfilePlot(TheCorridor(), Runs(), Filter(), Along(), shown);
    if (!proposals_.empty()) plot.Axes.Legend.push_back(ProposedSample);
    return plot;
}

void CorridorProfilesView::ChosenRunChanged() {
    if (!HasCorridor()) return;
    const auto grabbed = drag_.Grabbed();
    if (!movesOwn_)
        drag_ = BandDrag(TheCorridor(), Along(), {});
    else
        drag_ =
            ChosenRun() ? BandDrag(TheCorridor(), Along(), TheCorridor().Runs[Runs()[*ChosenRun()].Index]) : BandDrag();
    drag_.Grab(grabbed);
    isDragged_ = false;
    Tell();
}

void CorridorProfilesView::SetMovesOwn(bool movesOwn) {
    movesOwn_ = movesOwn;
    ChosenRunChanged();
}

void CorridorProfilesView::SetShowsRuns(bool showsRuns) {
    if (showsRuns == showsRuns_) return;
    showsRuns_ = showsRuns;
    Refresh();
}

void CorridorProfilesView::SetProposals(std::vector<BandProposal> proposals, Proposed kind) {
    proposals_ = std::move(proposals);
    kind_ = kind;
    Refresh();
}

double CorridorProfilesView::FeetAt(const PlotMap& map, double pixel) const {
    return ShownUnits().FeetOfLength(map.ValueAt({pixel, 0}).X);
}

double CorridorProfilesView::ReachFt(const PlotMap& map) const { return FeetAt(map, Reach) - FeetAt(map, 0); }

std::optional<BandBorder> CorridorProfilesView::BorderAt(QPointF pixel) const {
    const auto map = Map();
    if (!map || !HasCorridor() || !Shows()) return std::nullopt;
    const CanvasBox& area = map->Area();
    if (pixel.x() < area.X - Reach || pixel.x() > area.X + area.Width + Reach || pixel.y() < area.Y ||
        pixel.y() > area.Y + area.Height)
        return std::nullopt;
    return drag_.BorderAt(FeetAt(*map, pixel.x()), ReachFt(*map));
}

std::optional<std::size_t> CorridorProfilesView::NodeAt(CanvasPoint place) const {
    const auto map = Map();
    if (!map || !Shows()) return std::nullopt;
    return BandDrag(TheCorridor(), Along(), {}).NodeAt(FeetAt(*map, place.X), ReachFt(*map));
}

std::vector<PlotRange> CorridorProfilesView::ProposedRanges() const {
    std::vector<PlotRange> ranges;
    const WayAxis axis(TheCorridor(), Along());
    for (const BandProposal& proposal : proposals_) {
        std::optional<Band> band = proposal.Common;
        if (kind_ == Proposed::Own) {
            const auto own = ChosenRun() ? std::ranges::find(proposal.Runs, *ChosenRun(), &BandProposal::Own::Run)
                                         : proposal.Runs.end();
            band = own == proposal.Runs.end() ? std::nullopt : own->Around;
        }
        if (!band || proposal.Node >= TheCorridor().Nodes.size()) continue;
        const double node = axis.PlaceOf(proposal.Node);
        ranges.push_back(
            {ShownUnits().LengthOfFeet(node - band->UpstreamFt), ShownUnits().LengthOfFeet(node + band->DownstreamFt)});
    }
    return ranges;
}

void CorridorProfilesView::PaintOver(QPainter& painter) {
    const auto map = Map();
    if (!map || !HasCorridor()) return;
    const Colours& inks = ColoursOf(palette());
    PainterCanvas canvas(painter);
    canvas.DrawInside(map->Area(), [&] {
        for (const PlotRange& proposed : ProposedRanges())
            for (const double value : {proposed.Low, proposed.High})
                DrawUpright(canvas, *map, value,
                            {ProposedSample.Width, inks.*ProposedSample.Ink, ProposedSample.Pattern});
        const auto& grabbed = drag_.Grabbed();
        if (!grabbed) return;
        const auto shown = [&](bool isEnd) { return ShownUnits().LengthOfFeet(drag_.PlaceOf({grabbed->Node, isEnd})); };
        if (drag_.Moved()) FillUpright(canvas, *map, {shown(false), shown(true)}, inks.Highlight);
        DrawUpright(canvas, *map, shown(grabbed->IsEnd), {MovedWidth, inks.Highlight});
    });
}

std::string CorridorProfilesView::BorderText() const {
    const auto& grabbed = drag_.Grabbed();
    return grabbed && HasCorridor() ? drag_.InWords(TheCorridor(), *grabbed, ShownUnits()) : std::string();
}

std::string CorridorProfilesView::Description() const {
    const std::string border = BorderText();
    return border.empty() ? PlotView::Description() : border + ".";
}

std::string CorridorProfilesView::TipAt(CanvasPoint place) const {
    if (const auto border = BorderAt({place.X, place.Y})) return drag_.InWords(TheCorridor(), *border, ShownUnits());
    return PlotView::TipAt(place);
}

void CorridorProfilesView::Tell() {
    update();
    DescribeItself();
    if (OnBorderTold) OnBorderTold(BorderText());
}

void CorridorProfilesView::LetGo() {
    isDragged_ = false;
    const auto border = drag_.Grabbed();
    const auto band = drag_.Release();
    if (border && band && OnBandMoved) OnBandMoved(border->Node, *band);
    Tell();
}

bool CorridorProfilesView::focusNextPrevChild(bool next) {
    if (!Shows() || drag_.Borders().empty()) return PlotView::focusNextPrevChild(next);
    LetGo();
    const bool hasNext = drag_.GrabNext(next);
    Tell();
    return hasNext || PlotView::focusNextPrevChild(next);
}

void CorridorProfilesView::mousePressEvent(QMouseEvent* event) {
    const auto border = event->button() == Qt::LeftButton ? BorderAt(event->position()) : std::nullopt;
    if (!border) {
        drag_.Grab({});
        Tell();
        return PlotView::mousePressEvent(event);
    }
    drag_.Grab(border);
    isDragged_ = true;
    Tell();
}

void CorridorProfilesView::mouseMoveEvent(QMouseEvent* event) {
    const auto map = Map();
    if (isDragged_ && map) {
        drag_.MoveTo(FeetAt(*map, event->position().x()));
        return Tell();
    }
    const bool isOver = event->buttons() == Qt::NoButton && BorderAt(event->position());
    if (isOver)
        setCursor(Qt::SplitHCursor);
    else if (event->buttons() == Qt::NoButton)
        unsetCursor();
    PlotView::mouseMoveEvent(event);
}

void CorridorProfilesView::mouseReleaseEvent(QMouseEvent* event) {
    if (!isDragged_ || event->button() != Qt::LeftButton) return PlotView::mouseReleaseEvent(event);
    LetGo();
}

void CorridorProfilesView::keyPressEvent(QKeyEvent* event) {
    constexpr int Wide = 10;
    if (!drag_.Grabbed()) return PlotView::keyPressEvent(event);
    const int step = event->modifiers().testFlag(Qt::ShiftModifier) ? Wide : 1;
    switch (event->key()) {
        case Qt::Key_Left: drag_.MoveBy(-step); return Tell();
        case Qt::Key_Right: drag_.MoveBy(step); return Tell();
        case Qt::Key_Escape:
            isDragged_ = false;
            if (drag_.Moved())
                drag_.Cancel();
            else
                drag_.Grab({});
            return Tell();
        default: PlotView::keyPressEvent(event);
    }
}

void CorridorProfilesView::keyReleaseEvent(QKeyEvent* event) {
    const bool isArrow = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (isArrow && !event->isAutoRepeat() && !isDragged_) return LetGo();
    PlotView::keyReleaseEvent(event);
}

void CorridorProfilesView::focusOutEvent(QFocusEvent* event) {
    if (!isDragged_ && drag_.Grabbed()) {
        LetGo();
        if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) drag_.Grab({});
        Tell();
    }
    PlotView::focusOutEvent(event);
}

void CorridorTimeSpaceView::SetClock(TimeSpaceClock clock) {
    if (clock == clock_) return;
    clock_ = clock;
    Refresh();
}

Plot CorridorTimeSpaceView::Make(const CorridorLook& look) const {
    return CorridorTimeSpacePlot(TheCorridor(), Runs(), Filter(), Along(), clock_, look);
}

std::optional<std::size_t> CorridorTimeSpaceView::NodeAt(CanvasPoint place) const {
    const auto map = Map();
    if (!map || !Shows()) return std::nullopt;
    const WayAxis axis(TheCorridor(), Along());
    for (std::size_t node = 0; node < TheCorridor().Nodes.size(); ++node)
        if (std::abs(map->YOf(ShownUnits().LengthOfFeet(axis.PlaceOf(node))) - place.Y) <= Reach) return node;
    return std::nullopt;
}

}  // namespace vantor
