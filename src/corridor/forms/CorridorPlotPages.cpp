#include "corridor/forms/CorridorPlotPages.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

#include "core/forms/Accessible.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "corridor/CorridorEdits.h"

namespace vantor {
namespace {

constexpr int UsualWidth = 800;
constexpr int MostRows = 4;           // of arrivals, that take room from the plot
constexpr QSize LeastPlot{240, 140};  // there is more around a plot here than elsewhere

}  // namespace

void CorridorPlotPage::Begin(CorridorPlotView& view, const char* name, const QString& heard, const char* file) {
    view_ = &view;
    view.setObjectName(QLatin1String(name));
    view.setAccessibleName(heard);
    view.setMinimumSize(LeastPlot);
    view.OnRunChosen = [this](std::size_t run) { document_.SelectRun(run); };
    view.OnNodeChosen = [this](std::size_t node) { document_.SelectNode(node); };
    view.PictureStart = [this, file] { return document_.Root() + document_.Of().Name + " " + file; };
    document_.WhenShown([this] { ShowPlot(); });
    document_.WhenSelected([this] { ShowSelected(); });
}

void CorridorPlotPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Guarded(document_.Context().Messages, [this] { ShowSelected(); });
}

void CorridorPlotPage::ShowPlot() {
    if (!isVisible()) return;
    const auto before = std::exchange(drawn_, document_.Share());  // lives until the plot has let go of it
    way_ = document_.Along();
    view_->Show(drawn_->Of, drawn_->Runs, drawn_->Filter, way_);
    view_->SetChosenRun(document_.Run());
    Shown();
}

void CorridorPlotPage::ShowSelected() {
    if (!isVisible()) return;
    if (drawn_ != document_.Share() || way_ != document_.Along()) return ShowPlot();
    view_->SetChosenRun(document_.Run());
}

CorridorProfilesPage::CorridorProfilesPage(CorridorDocument& document, QWidget* parent)
    : CorridorPlotPage(document, parent), profiles_(new CorridorProfilesView(document.Context(), this)) {
    auto* column = new QVBoxLayout(this);
    column->addLayout(BuildHead());
    lblBorder_ = Named<QLabel>(this, "lblBorder");
    lblBorder_->setTextFormat(Qt::PlainText);
    lblBorder_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    column->addWidget(profiles_, 1);
    column->addWidget(lblBorder_);
    Begin(*profiles_, "picProfiles", QStringLiteral("Speed profiles of all runs, with the bands"), "profiles");
    profiles_->OnBandMoved = [this](std::size_t node, const Band& band) {
        Guarded(TheDocument().Context().Messages, [&] { TakeMoved(node, band); });
    };
    profiles_->OnBorderTold = [this](const std::string& text) { lblBorder_->setText(ToQt(text)); };
}

QLayout* CorridorProfilesPage::BuildHead() {
    auto* single = Named<QCheckBox>(this, "chkSingleRuns", QStringLiteral("Single runs"));
    single->setChecked(true);
    single->setToolTip(QStringLiteral("Draw each run under the median and the band from P15 to P85"));
    cmbBands_ = Named<QComboBox>(this, "cmbBands");
    cmbBands_->addItems({QStringLiteral("of all runs"), QStringLiteral("of the selected run")});
    cmbBands_->setToolTip(QStringLiteral("Whose bands are moved: drag a border, or Tab to it and the arrow keys"));
    auto* propose = Named<QToolButton>(this, "btnPropose", QStringLiteral("Propose"));
    propose->setToolTip(QStringLiteral("Find where the runs slow down and gain their speed again; nothing is set"));
    btnTake_ = Named<QToolButton>(this, "btnTake", QStringLiteral("Take"));
    btnTake_->setToolTip(QStringLiteral("Set the dashed bands that are proposed"));
    btnDrop_ = Named<QToolButton>(this, "btnDrop", QStringLiteral("Drop"));
    btnDrop_->setToolTip(QStringLiteral("Leave the bands as they are"));
    MessageBoxes& messages = TheDocument().Context().Messages;
    Connect(single, &QCheckBox::toggled, this, messages, [this](bool isOn) { profiles_->SetShowsRuns(isOn); });
    Connect(cmbBands_, &QComboBox::currentIndexChanged, this, messages, [this] {
        profiles_->SetMovesOwn(MovesOwn());
        Drop();
    });
    Connect(propose, &QToolButton::clicked, this, messages, [this] { Propose(); });
    Connect(btnTake_, &QToolButton::clicked, this, messages, [this] { TakeProposed(); });
    Connect(btnDrop_, &QToolButton::clicked, this, messages, [this] { Drop(); });
    for (QToolButton* button : {propose, btnTake_, btnDrop_}) button->setFocusPolicy(Qt::StrongFocus);
    for (QToolButton* button : {btnTake_, btnDrop_}) button->setEnabled(false);
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbBands_, QStringLiteral("Bands")));
    for (QWidget* widget : std::initializer_list<QWidget*>{cmbBands_, propose, btnTake_, btnDrop_})
        row->addWidget(widget);
    row->addStretch();
    row->addWidget(single);
    return row;
}

void CorridorProfilesPage::Shown() { Drop(); }

void CorridorProfilesPage::TakeMoved(std::size_t node, const Band& band) {
    Corridor changed = TheDocument().Of();
    const QString name = ToQt(changed.Nodes[node].Name);
    if (!MovesOwn()) {
        changed.Nodes[node].Around = band;
        TheDocument().Change(QStringLiteral("Band of ") + name, changed);
    } else if (const auto run = TheDocument().Run()) {
        SetOwnBand(changed.Runs[*run], node, band);
        TheDocument().Change(QStringLiteral("Own band at %1 of ").arg(name) + ToQt(changed.Runs[*run].Name), changed);
    }
}

void CorridorProfilesPage::Propose() {
    CorridorDocument& document = TheDocument();
    const auto found = std::make_shared<std::vector<BandProposal>>();
    document.Context().Work.Run("Proposing bands",
                                [found, shown = document.Share(), way = document.Along(),
                                 factor = document.Context().State.Settings.SpeedFactor](FileSystem&, const Progress&) {
                                    *found = ProposeBands(shown->Of, shown->Runs, way, factor);
                                });
    proposals_ = std::move(*found);
    profiles_->SetProposals(proposals_,
                            MovesOwn() ? CorridorProfilesView::Proposed::Own : CorridorProfilesView::Proposed::Common);
    for (QToolButton* button : {btnTake_, btnDrop_}) button->setEnabled(!proposals_.empty());
}

void CorridorProfilesPage::TakeProposed() {
    Corridor changed = TheDocument().Of();
    for (const BandProposal& proposal : proposals_) {
        if (!MovesOwn() && proposal.Common) changed.Nodes[proposal.Node].Around = *proposal.Common;
        for (const BandProposal::Own& own : proposal.Runs)
            if (MovesOwn() && own.Around) SetOwnBand(changed.Runs[own.Run], proposal.Node, own.Around);
    }
    Drop();
    TheDocument().Change(MovesOwn() ? QStringLiteral("Proposed bands of each run") : QStringLiteral("Proposed bands"),
                         changed);
}

void CorridorProfilesPage::Drop() {
    proposals_.clear();
    profiles_->SetProposals({}, CorridorProfilesView::Proposed::Common);
    for (QToolButton* button : {btnTake_, btnDrop_}) button->setEnabled(false);
}

CorridorTimeSpacePage::CorridorTimeSpacePage(CorridorDocument& document, QWidget* parent)
    : CorridorPlotPage(document, parent) {
    auto* view = new CorridorTimeSpaceView(document.Context(), this);
    auto* clock = Named<QComboBox>(this, "cmbClock");
    clock->addItems({QStringLiteral("from the start of each run"), QStringLiteral("of the day")});
    clock->setToolTip(QStringLiteral("By the time of day, signals are green where their timing is known"));
    Connect(clock, &QComboBox::currentIndexChanged, this, document.Context().Messages,
            [view](int index) { view->SetClock(static_cast<TimeSpaceClock>(index)); });
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(clock, QStringLiteral("Time")));
    row->addWidget(clock);
    row->addStretch();
    auto* split = Named<QSplitter>(this, "splTimeSpace");
    split->setOrientation(Qt::Vertical);
    split->setChildrenCollapsible(false);
    vaArrivals_ = Named<StatisticsTableView>(split, "vaArrivals");
    vaArrivals_->setAccessibleName(QStringLiteral("Arrivals on green"));
    split->addWidget(view);
    split->addWidget(vaArrivals_);
    split->setStretchFactor(0, 1);
    lblArrivals_ = Named<WrappedLabel>(this, "lblArrivals");
    lblArrivals_->resize(UsualWidth, 0);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addWidget(split, 1);
    column->addWidget(lblArrivals_);
    Begin(*view, "picTimeSpace", QStringLiteral("Time-space diagram"), "time-space");
    TheDocument().WhenShown([this] { ShowArrivals(); });
    ShowArrivals();
}

void CorridorTimeSpacePage::ShowArrivals() {
    const DetailedCorridor& shown = TheDocument().Shown();
    const bool hasTiming =
        std::ranges::any_of(shown.Of.Nodes, [](const CorridorNode& node) { return !node.Timings.empty(); });
    lblArrivals_->setText(
        hasTiming ? QStringLiteral("No run that is looked at has a time of day and comes to a signal whose timing "
                                   "holds for it.")
                  : QStringLiteral("Enter the timing of a signal (Nodes, Timing...) to see arrivals on green"));
    lblArrivals_->setVisible(shown.Arrivals.Rows.empty());
    vaArrivals_->setVisible(!shown.Arrivals.Rows.empty());
    vaArrivals_->Show(shown.Arrivals);
    vaArrivals_->NeedRows(std::clamp(vaArrivals_->rowCount(), 1, MostRows));
}

std::vector<SheetRow> CorridorTimeSpacePage::Sheet() const {
    const StatisticsTable& arrivals = TheDocument().Shown().Arrivals;
    return arrivals.Rows.empty() ? std::vector<SheetRow>() : SheetOf(arrivals);
}

}  // namespace vantor
