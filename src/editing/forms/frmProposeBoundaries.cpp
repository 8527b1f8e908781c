#include "editing/forms/frmProposeBoundaries.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>

#include "core/StudyFile.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "core/forms/WindowLayout.h"

namespace vantor {

frmProposeBoundaries::frmProposeBoundaries(AppContext& context, Study study, std::vector<RunToPropose> runs, int node,
                                           QWidget* parent)
    : BoundsDialog(context, parent), study_(std::move(study)), runs_(std::move(runs)), chosenNode_(node) {
    setObjectName(QStringLiteral("frmProposeBoundaries"));
    setWindowTitle(QStringLiteral("Propose Boundaries"));
    BuildHead();
    BuildList(Columns::DelaysAndPlaces);
    FillNodes();
    Propose();
    resize(940, 460);
    RememberLayout(*this, context.Memory);
}

void frmProposeBoundaries::BuildHead() {
    cmbNode_ = Named<QComboBox>(this, "cmbNode");
    cmbPairs_ = Named<QComboBox>(this, "cmbPairs");
    cmbPairs_->addItems({QStringLiteral("Each run its own"), QStringLiteral("One common pair")});
    cmbPairs_->setToolTip(
        QStringLiteral("A common pair goes from the earliest onset to the latest end of all runs, measured from the "
                       "node"));
    lblReason_ = Named<WrappedLabel>(this, "lblReason");
    auto* row = new QHBoxLayout;
    row->addWidget(LabelFor(cmbNode_, QStringLiteral("N&ode of the intersection")));
    row->addWidget(cmbNode_);
    row->addSpacing(8);
    row->addWidget(LabelFor(cmbPairs_, QStringLiteral("&Boundaries")));
    row->addWidget(cmbPairs_);
    row->addStretch();
    Head().addLayout(row);
    Head().addWidget(lblReason_);
    Connect(cmbNode_, &QComboBox::activated, this, context_.Messages, [this](int item) {
        chosenNode_ = item + 1;
        Propose();
    });
    Connect(cmbPairs_, &QComboBox::activated, this, context_.Messages, [this] { Propose(); });
}

void frmProposeBoundaries::FillNodes() {
    const int nodes = MostNodes(runs_);
    for (int node = 1; node <= nodes; ++node) cmbNode_->addItem(ToQt(NodeText(runs_, node)));
    cmbNode_->setEnabled(nodes > 0);
    cmbPairs_->setEnabled(nodes > 0);
}

ProposedNode frmProposeBoundaries::Node() const {
    return chosenNode_ != 0 ? NodeOfUser(runs_, chosenNode_) : NodeOf(runs_);
}

ProposalKind frmProposeBoundaries::Kind() const {
    return cmbPairs_->currentIndex() == 1 ? ProposalKind::Common : ProposalKind::Own;
}

void frmProposeBoundaries::Propose() {
    const ProposedNode node = Node();
    cmbNode_->setCurrentIndex(node.Node - 1);
    const std::vector<RunProposal> proposals = ProposeBounds(runs_, node.Node, Kind());
    std::vector<BoundsPreview> previews;
    context_.Work.Run("Computing the runs with these boundaries",
                      [&previews, study = study_, proposals, folder = StudyGroupFolder(context_.State),
                       settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
                          previews = PreviewProposals(study, proposals, files, folder, settings, progress);
                      });
    lblReason_->setText(ToQt(NodeReason(runs_, node)) + WordsFor(proposals));
    ShowPreviews(std::move(previews));
}

/// What follows from the choice, behind why it is that node.
QString frmProposeBoundaries::WordsFor(const std::vector<RunProposal>& proposals) const {
    if (MostNodes(runs_) == 0)
        return QStringLiteral(" Give the runs nodes first: \"Nodes for All Runs\" in the menu Run does it.");
    if (const auto cutting = std::ranges::count(proposals, true, &RunProposal::CutsOtherEvent); cutting > 0)
        return QStringLiteral(" In %1 of %2 runs a boundary lies in another slowing, of which a part counts, too.")
            .arg(cutting)
            .arg(proposals.size());
    const auto without = std::ranges::count_if(proposals, [](const RunProposal& run) { return !run.Proposed; });
    if (without == 0 || Kind() == ProposalKind::Common || std::cmp_equal(without, proposals.size())) return {};
    QString text =
        QStringLiteral(" %1 of %2 runs get none and keep what they have.").arg(without).arg(proposals.size());
    if (std::ranges::count(proposals, true, &RunProposal::IsPassedFreely) > 0)
        text += QStringLiteral(
            " Runs that pass without delay belong into the average, too: one common pair takes them in.");
    return text;
}

std::vector<BoundsPreview> AskForProposals(AppContext& context, const Study& study, int node, QWidget* parent) {
    std::vector<RunToPropose> runs;
    const bool isRead =
        context.Work.Run("Looking where the runs slow down",
                         [&runs, study, folder = StudyGroupFolder(context.State), settings = context.State.Settings](
                             FileSystem& files, const Progress& progress) {
                             runs = ReadRunsToPropose(study, files, folder, settings, progress);
                         });
    if (!isRead) return {};
    frmProposeBoundaries dialog(context, study, std::move(runs), node, parent);
    return dialog.exec() == QDialog::Accepted ? dialog.Chosen() : std::vector<BoundsPreview>();
}

}  // namespace vantor
