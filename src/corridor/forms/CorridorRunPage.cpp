#include "corridor/forms/CorridorRunPage.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/Numeric.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "corridor/CorridorEdits.h"

namespace vantor {
namespace {

constexpr int LongestBand = 100000;  // in either unit
const char* BandCaption(bool isOwn) { return isOwn ? "Own band" : "Band of all runs"; }

}  // namespace

CorridorRunPage::CorridorRunPage(CorridorDocument& document, QWidget* parent) : QWidget(parent), document_(document) {
    lblRun_ = Named<QLabel>(this, "lblRun");
    lblRun_->setTextFormat(Qt::PlainText);
    vaMatch_ = Named<StatisticsTableView>(this, "vaMatch");
    vaMatch_->setAccessibleName(QStringLiteral("Nodes of the selected run"));
    vaMatch_->setMinimumHeight(96);
    vaMatch_->SetEmptyText(
        QStringLiteral("Choose a run in the list to see where it passes each node, and how that is "
                       "known."));
    auto* column = new QVBoxLayout(this);
    column->addWidget(lblRun_);
    column->addWidget(vaMatch_, 1);
    column->addLayout(BuildPassage());
    column->addLayout(BuildBand());
    Connect(vaMatch_, &QTableWidget::currentCellChanged, this, document.Context().Messages, [this] {
        if (isFilling_) return;
        ShowNode();
        if (const auto node = ChosenNode()) document_.SelectNode(node);
    });
    document.WhenShown([this] { ShowRun(); });
    document.WhenSelected([this] { ShowRun(); });
    ShowRun();
}

QLayout* CorridorRunPage::BuildPassage() {
    spnSecond_ = Named<QSpinBox>(this, "spnSecond");
    spnSecond_->setToolTip(QStringLiteral("The second of the run that ends at the node"));
    auto* set = Named<QPushButton>(this, "btnSetSecond", QStringLiteral("Set"));
    set->setAccessibleName(QStringLiteral("Set the second"));
    auto* notPassed = Named<QPushButton>(this, "btnNotPassed", QStringLiteral("Not Passed"));
    notPassed->setToolTip(QStringLiteral("The run does not pass this node"));
    btnAsMatched_ = Named<QPushButton>(this, "btnAsMatched", QStringLiteral("As Matched"));
    btnAsMatched_->setToolTip(QStringLiteral("Where positions, marks or distances put it"));
    MessageBoxes& messages = document_.Context().Messages;
    Connect(set, &QPushButton::clicked, this, messages, [this] { SetPassageTo(spnSecond_->value()); });
    Connect(notPassed, &QPushButton::clicked, this, messages, [this] { SetPassageTo(0); });
    Connect(btnAsMatched_, &QPushButton::clicked, this, messages, [this] { SetPassageTo(std::nullopt); });
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(spnSecond_, QStringLiteral("Passed in second")));
    for (QWidget* widget : std::initializer_list<QWidget*>{spnSecond_, set, notPassed, btnAsMatched_}) {
        row->addWidget(widget);
        onNode_.push_back(widget);
    }
    row->addStretch();
    return row;
}

QLayout* CorridorRunPage::BuildBand() {
    const Units units = document_.Shows();
    const auto box = [&](const char* name, const char* heard) {
        auto* spin = Named<QSpinBox>(this, name);
        spin->setRange(0, LongestBand);
        spin->setSingleStep(units.Metric ? 10 : 50);
        spin->setSuffix(QLatin1Char(' ') + QLatin1String(units.LengthLabel()));
        spin->setAccessibleName(QLatin1String(heard));
        onNode_.push_back(spin);
        return spin;
    };
    spnUpstream_ = box("spnOwnUpstream", "");
    spnDownstream_ = box("spnOwnDownstream", "Band behind the node");
    auto* set = Named<QPushButton>(this, "btnOwnBand", QStringLiteral("Set"));
    set->setAccessibleName(QStringLiteral("Set a band of its own"));
    set->setToolTip(QStringLiteral("A band for this run alone, at this node"));
    onNode_.push_back(set);
    btnBandOfAll_ = Named<QPushButton>(this, "btnBandOfAll", QStringLiteral("As of All"));
    btnBandOfAll_->setToolTip(QStringLiteral("The band of all runs again"));
    lblBand_ = LabelFor(spnUpstream_, QLatin1String(BandCaption(false)), "lblBand");
    spnUpstream_->setAccessibleName(QStringLiteral("Band before the node"));
    MessageBoxes& messages = document_.Context().Messages;
    Connect(set, &QPushButton::clicked, this, messages, [this] {
        const Units shows = document_.Shows();
        SetBandTo(Band{Round32(shows.FeetOfLength(spnUpstream_->value())),
                       Round32(shows.FeetOfLength(spnDownstream_->value()))});
    });
    Connect(btnBandOfAll_, &QPushButton::clicked, this, messages, [this] { SetBandTo(std::nullopt); });
    auto* row = new QHBoxLayout;
    row->addWidget(lblBand_);
    for (QWidget* widget : std::initializer_list<QWidget*>{spnUpstream_, spnDownstream_, set, btnBandOfAll_})
        row->addWidget(widget);
    row->addStretch();
    return row;
}

std::optional<std::size_t> CorridorRunPage::ChosenNode() const {
    const int row = vaMatch_->currentRow();
    if (!document_.Run() || row < 0 || row >= static_cast<int>(document_.Of().Nodes.size())) return std::nullopt;
    return NodeAlong(document_.Of(), document_.Of().Runs[*document_.Run()].Along, static_cast<std::size_t>(row));
}

void CorridorRunPage::ShowRun() {
    isFilling_ = true;
    const Corridor& corridor = document_.Of();
    const auto run = document_.Run();
    lblRun_->setVisible(run.has_value());
    if (run) {
        const CorridorRun& as = corridor.Runs[*run];
        const MatchedRun& matched = document_.Shown().Runs[*run];
        lblRun_->setText(ToQt(as.Name + " (" + as.Group + "), " + corridor.Of(as.Along).Name +
                              (matched.IsThere() ? "" : ": " + matched.Problem)));
        vaMatch_->Show(MatchTable(corridor, matched, document_.Shows()));
        const auto node = document_.Node();
        if (node && *node < corridor.Nodes.size() && vaMatch_->rowCount() > 0)
            vaMatch_->setCurrentCell(static_cast<int>(NodeAlong(corridor, as.Along, *node)), 0);
    } else {
        vaMatch_->Show({});
    }
    isFilling_ = false;
    ShowNode();
}

void CorridorRunPage::ShowNode() {
    const auto node = ChosenNode();
    for (QWidget* widget : onNode_) widget->setEnabled(node.has_value());
    btnAsMatched_->setEnabled(false);
    btnBandOfAll_->setEnabled(false);
    lblBand_->setText(QLatin1String(BandCaption(false)));
    if (!node) return;
    const CorridorRun& as = document_.Of().Runs[*document_.Run()];
    const MatchedRun& matched = document_.Shown().Runs[*document_.Run()];
    const NodePassage& passage = matched.Match.Nodes[*node];
    spnSecond_->setRange(1, std::max(1, static_cast<int>(matched.Read->Run.Header.SampleCount)));
    if (passage.IsKnown()) spnSecond_->setValue(passage.Sample);
    btnAsMatched_->setEnabled(std::ranges::find(as.SetNodes, *node, &SetNode::Node) != as.SetNodes.end());
    const auto own = OwnBandOf(as, *node);
    const Band& band = own ? *own : document_.Of().Nodes[*node].Around;
    spnUpstream_->setValue(document_.Shows().WholeLength(band.UpstreamFt));
    spnDownstream_->setValue(document_.Shows().WholeLength(band.DownstreamFt));
    btnBandOfAll_->setEnabled(own.has_value());
    lblBand_->setText(QLatin1String(BandCaption(own.has_value())));
}

void CorridorRunPage::ChangeRun(const QString& text,
                                const std::function<void(CorridorRun&, std::size_t node)>& change) {
    const auto node = ChosenNode();
    if (!node) return;
    Corridor changed = document_.Of();
    CorridorRun& run = changed.Runs[*document_.Run()];
    change(run, *node);
    document_.Change(text.arg(ToQt(changed.Nodes[*node].Name), ToQt(run.Name)), changed);
}

void CorridorRunPage::SetPassageTo(std::optional<std::int32_t> sample) {
    ChangeRun(QStringLiteral("Passage of %1 in %2"),
              [sample](CorridorRun& run, std::size_t node) { SetPassage(run, node, sample); });
}

void CorridorRunPage::SetBandTo(const std::optional<Band>& band) {
    ChangeRun(QStringLiteral("Own band at %1 of %2"),
              [&band](CorridorRun& run, std::size_t node) { SetOwnBand(run, node, band); });
}

std::vector<SheetRow> CorridorRunPage::Sheet() const {
    if (!document_.Run()) return {};
    return SheetOf(MatchTable(document_.Of(), document_.Shown().Runs[*document_.Run()], document_.Shows()));
}

}  // namespace vantor
