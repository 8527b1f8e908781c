#include "gpsobd/forms/ReviewViews.h"

#include <QSignalBlocker>
#include <chrono>
#include <cstddef>
#include <optional>
#include <utility>

#include "core/UserChoices.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"

namespace vantor {

using namespace std::chrono_literals;

namespace {

/// Of the views of a review: the map is shown, where there is one.
constexpr const char* ReviewMapKey = "review-map";

enum Page { TracePage, MapPage };

Plot NoTrace() {
    Plot plot;
    plot.EmptyText = "The run of the selected row is drawn here.";
    return plot;
}

}  // namespace

ReviewViews::ReviewViews(AppContext& context, bool hasPositions, QWidget* parent)
    : QTabWidget(parent),
      context_(context),
      hasPositions_(hasPositions),
      trace_(new PlotView(context, this)),
      map_(new MapView(context, this)),
      work_(context.Work.Another()),
      rows_(std::make_shared<const ReviewedRows>()),
      ofRows_(rows_) {
    setObjectName(QStringLiteral("tabViews"));
    setAccessibleName(QStringLiteral("Run of the selected row"));
    trace_->setObjectName(QStringLiteral("RunTrace"));
    trace_->setAccessibleName(QStringLiteral("Speeds of the run of the selected row"));
    // It gives way to the grid where the screen is small.
    trace_->setMinimumSize(160, 60);
    trace_->SetLook(true, true);
    trace_->Show(NoTrace());
    map_->setObjectName(QStringLiteral("RunMap"));
    map_->setAccessibleName(QStringLiteral("Way of the run of the selected row"));
    addTab(trace_, QStringLiteral("Trace"));
    addTab(map_, QStringLiteral("Map"));
    trace_->OnChosen = [this] { ChooseRow(trace_->ChosenItem()); };
    map_->OnPlace = [this](const Position& place) { ChoosePlace(place); };
    OfferMap();
    whenMade_.setInterval(20ms);
    Connect(&whenMade_, &QTimer::timeout, this, context.Messages, [this] { ShowWhenMade(); });
    Connect(this, &QTabWidget::currentChanged, this, context.Messages, [this](int page) {
        context_.State.Choices = StoreUserChoices(context_.Files, {{ReviewMapKey, page == MapPage ? ChoiceTaken : ""}});
    });
}

void ReviewViews::Extend(const std::function<void(QMenu& menu)>& extend) {
    trace_->ExtendMenu = extend;
    map_->ExtendMenu = extend;
}

void ReviewViews::ShowRows(std::shared_ptr<const ReviewedRows> rows) {
    rows_ = std::move(rows);
    ShowRow(row_);
}

void ReviewViews::ShowRow(int row) {
    row_ = row;
    if (!isVisible()) return;
    if (IsMade())
        ShowPlace();
    else
        MakeRun();
}

void ReviewViews::showEvent(QShowEvent* event) {
    QTabWidget::showEvent(event);
    ShowRow(row_);
}

bool ReviewViews::IsMade() const { return ofRows_ == rows_ && (row_ == 0 || run_.PlaceOf(row_) != 0); }

void ReviewViews::MakeRun() {
    // What is being made is not waited for here.
    if (work_->IsBusy()) return whenMade_.start();
    if (row_ < 0 || row_ > static_cast<int>(rows_->Points.size())) return;
    making_ = std::make_shared<ReviewedRun>();
    makingOf_ = rows_;
    const std::int16_t run = row_ == 0 ? std::int16_t{0} : rows_->Points[static_cast<std::size_t>(row_) - 1].RunNumber;
    work_->Begin([made = making_, rows = rows_, run, isEmpty = row_ == 0, units = UnitsOf(context_.State.Settings)](
                     FileSystem&, const Progress&) {
        if (!isEmpty) *made = ReviewedRunOf(rows->Points, rows->Problems, run, units);
    });
    if (work_->IsBusy())
        whenMade_.start();
    else
        ShowWhenMade();
}

void ReviewViews::ShowWhenMade() {
    if (work_->IsBusy()) return;
    whenMade_.stop();
    const bool isMade = work_->Finish();
    if (making_ != nullptr) {
        run_ = std::move(*std::exchange(making_, nullptr));
        ofRows_ = std::exchange(makingOf_, nullptr);
        trace_->Show(run_.Rows.empty() ? NoTrace() : std::exchange(run_.Trace, Plot()));
        if (run_.Map != nullptr) map_->Show(run_.Map);
        OfferMap();
    }
    if (isMade) ShowRow(row_);
}

void ReviewViews::ShowPlace() {
    const int place = run_.PlaceOf(row_);
    trace_->SetChosenItem(place);
    std::optional<Position> at;
    if (place != 0 && run_.Map != nullptr) at = PositionOf(rows_->Points[static_cast<std::size_t>(row_) - 1]);
    map_->SetMark(at);
}

void ReviewViews::OfferMap() {
    const bool hasMap = run_.Map != nullptr;
    const QSignalBlocker silence(this);  // it is no choice of the user's
    setTabEnabled(MapPage, hasMap);
    setTabToolTip(MapPage, hasMap          ? QString()
                           : hasPositions_ ? QStringLiteral("This run has no positions.")
                                           : QStringLiteral("This log has no positions, as logs of OBD have none."));
    setCurrentIndex(hasMap && IsTaken(context_.State.Choices, ReviewMapKey) ? MapPage : TracePage);
}

void ReviewViews::ChooseRow(int place) {
    // Of rows that were changed since, the places are others now.
    if (place != 0 && ofRows_ == rows_ && OnRow) OnRow(run_.RowAt(place));
}

void ReviewViews::ChoosePlace(const Position& place) {
    constexpr double Reach = 24;
    map_->SetChosenItem(0);
    if (run_.Map == nullptr) return;
    const MapWindow window = map_->Window();
    const WorldPoint at = NearestTurn(WorldOf(place), window.Centre.X);
    ChooseRow(run_.PlaceOf(run_.Map->Find(window, window.PlaceOf(at), Reach)));
}

}  // namespace vantor
