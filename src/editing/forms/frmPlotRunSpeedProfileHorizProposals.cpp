// What the screen of the speed profile does for other runs, and the boundaries it proposes.

#include <QComboBox>
#include <QUndoStack>
#include <algorithm>

#include "core/StudyFile.h"
#include "core/forms/Guarded.h"
#include "core/forms/Named.h"
#include "editing/forms/frmNodePlaces.h"
#include "editing/forms/frmPlotRunSpeedProfileHoriz.h"
#include "editing/forms/frmProposeBoundaries.h"
#include "editing/forms/frmUseBoundaries.h"

namespace vantor {
namespace {

/// Pixels, beside a proposal.
constexpr int LeastPlotHeight = 190;

Bounds BoundsOf(const StudyRunEntry& entry) { return {entry.CDStartDist, entry.CDEndDist, std::nullopt}; }

ProposedBoundaries LinesOf(const DelayEvent& event) {
    // 0 is a boundary that is not set.
    return {{std::max(event.OnsetDistance, 1), event.EndDistance}, {event.Onset, event.End}};
}

}  // namespace

std::vector<BoundsPreview> frmPlotRunSpeedProfileHoriz::ChooseRunsFor(const std::vector<BoundsPreview>& previews) {
    frmUseBoundaries dialog(context_, previews, BoundsOf(profile_.EntryByDistance()), this);
    return dialog.exec() == Accepted ? dialog.Chosen() : std::vector<BoundsPreview>();
}

void frmPlotRunSpeedProfileHoriz::UseForAll() {
    std::vector<int> runs;
    for (int run = 1; run <= context_.State.CurrentStudy.Record.RunCount; ++run) runs.push_back(run);
    UseFor(runs);
}

void frmPlotRunSpeedProfileHoriz::UseForSelected() { UseFor(visits_.Visit().Selected); }

void frmPlotRunSpeedProfileHoriz::UseFor(const std::vector<int>& runs) {
    for (const ProfileLine line : AllLines) LeaveBox(line);
    const StudyRunEntry entry = profile_.EntryByDistance();
    if (!HasBothBoundaries(entry))
        return context_.Messages.Tell(
            "A boundary is not set yet.\nSet both boundaries of this run, then use them for "
            "the others.",
            MessageIcon::Warning);
    std::vector<int> others;
    std::ranges::copy_if(runs, std::back_inserter(others), [this](int run) { return run != visits_.Run(); });
    std::vector<BoundsPreview> previews;
    context_.Work.Run("Computing the runs with these boundaries",
                      [&, study = visits_.ChangedStudy(), folder = StudyGroupFolder(context_.State),
                       settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
                          previews = PreviewBounds(study, others, BoundsOf(entry), files, folder, settings, progress);
                      });
    if (previews.empty()) return;
    TakeChosen(OnChooseRuns(previews));
}

void frmPlotRunSpeedProfileHoriz::TakeChosen(const std::vector<BoundsPreview>& runs) {
    for (const BoundsPreview& chosen : runs) {
        visits_.Take(chosen.Run, chosen.Then);
        // The steps of that run begin from other boundaries.
        if (const auto stack = stacks_.find(chosen.Run); stack != stacks_.end()) stack->second->clear();
    }
}

void frmPlotRunSpeedProfileHoriz::ConnectProposal() {
    MessageBoxes& messages = context_.Messages;
    ProposalBar& bar = *controls_.Proposal;
    Connect(controls_.btnPropose, &QPushButton::clicked, this, messages, [this] { Propose(); });
    Connect(bar.btnUseProposal, &QPushButton::clicked, this, messages, [this] { UseProposal(); });
    Connect(bar.btnRejectProposal, &QPushButton::clicked, this, messages, [this] { HideProposal(); });
    Connect(bar.cmbProposalNode, &QComboBox::activated, this, messages, [this](int item) {
        proposing_->UserNode = item + 1;
        ShowProposal();
    });
}

void frmPlotRunSpeedProfileHoriz::Propose() {
    for (const ProfileLine line : AllLines) LeaveBox(line);
    if (!profile_.Trace().HasMovement()) return context_.DesktopServices.Beep();
    if (!proposing_) proposing_ = Proposing();
    ShowProposal();
    if (controls_.Proposal->btnUseProposal->isEnabled()) controls_.Proposal->btnUseProposal->setFocus();
}

int frmPlotRunSpeedProfileHoriz::UserNode() const { return proposing_ ? proposing_->UserNode : 0; }

/// The node that the proposal is for, from 1, and why; 0 for none.
std::pair<int, QString> frmPlotRunSpeedProfileHoriz::NodeOfProposal(const RunToPropose& run) {
    const int nodes = static_cast<int>(run.Found.Nodes.size());
    if (nodes == 0)
        return {0, QStringLiteral("This run has no nodes, so that it is not known where the intersection is.")};
    if (proposing_->UserNode != 0 && proposing_->UserNode <= nodes) return {proposing_->UserNode, {}};
    if (nodes == 1) return {1, {}};
    if (run.NodeBetween != 0) return {run.NodeBetween, QStringLiteral("This node lies between the boundaries so far.")};
    if (!proposing_->Study) {
        std::vector<RunToPropose> runs;
        context_.Work.Run("Looking where the runs slow down",
                          [&runs, study = visits_.ChangedStudy(), folder = StudyGroupFolder(context_.State),
                           settings = context_.State.Settings](FileSystem& files, const Progress& progress) {
                              runs = ReadRunsToPropose(study, files, folder, settings, progress);
                          });
        const ProposedNode node = NodeOf(runs);
        proposing_->Study = {node.Node, ToQt(NodeReason(runs, node))};
    }
    const auto& [node, reason] = *proposing_->Study;
    if (node <= nodes) return {std::max(node, 1), node == 0 ? QString() : reason};
    return {0, QStringLiteral("This run has %1 nodes only. ").arg(nodes) + reason};
}

void frmPlotRunSpeedProfileHoriz::ShowProposal() {
    const RunToPropose run = ProposeFor(visits_.Run(), run_, profile_.EntryByDistance(), context_.State.Settings);
    const auto [node, reason] = NodeOfProposal(run);
    QStringList nodes;
    for (int each = 1; each <= static_cast<int>(run.Found.Nodes.size()); ++each)
        nodes << ToQt(NodeText({run}, each)) + (run.Found.EventOfNode[static_cast<std::size_t>(each - 1)]
                                                    ? QString()
                                                    : QStringLiteral(" (without delay)"));
    QStringList others;
    for (std::size_t i = 0; i < run.Found.Events.size(); ++i)
        if (std::ranges::find(run.Found.EventOfNode, std::optional(i)) == run.Found.EventOfNode.end())
            others << QStringLiteral("No node: ") + PlacesOf(run.Found.Events[i]);
    controls_.Proposal->ShowNodes(nodes, node - 1, others);
    const auto event = node == 0 ? std::nullopt : run.Found.EventOfNode[static_cast<std::size_t>(node - 1)];
    proposal_.reset();
    if (event) proposal_ = LinesOf(run.Found.Events[*event]);
    controls_.Proposal->ShowText(ProposalInWords(run, node, reason), event.has_value());
    // Where the screen is small the plot gives way.
    controls_.Plot->setMinimumHeight(LeastPlotHeight);
    controls_.Proposal->show();
    controls_.Plot->ShowProposal(proposal_);
    ShowFigures();
}

/// "3492 to 4070 ft".
QString frmPlotRunSpeedProfileHoriz::PlacesOf(const DelayEvent& event) const {
    const Units units = profile_.Geometry().Units();
    return QStringLiteral("%1 to %2")
        .arg(units.WholeLength(event.OnsetDistance))
        .arg(ToQt(units.LengthText(event.EndDistance)));
}

QString frmPlotRunSpeedProfileHoriz::ProposalInWords(const RunToPropose& run, int node, const QString& reason) const {
    QStringList texts;
    const auto event = node == 0 ? std::nullopt : run.Found.EventOfNode[static_cast<std::size_t>(node - 1)];
    if (event)
        texts << QStringLiteral("Proposed: %1.").arg(PlacesOf(run.Found.Events[*event]));
    else if (node != 0)
        texts << QStringLiteral("Passed without delay: no boundaries.");
    if (!reason.isEmpty()) texts << reason;
    return texts.join(QLatin1Char(' '));
}

void frmPlotRunSpeedProfileHoriz::UseProposal() {
    if (!proposal_ || profile_.Drag().DragLine() != ProfileLine::None) return context_.DesktopServices.Beep();
    const ProposedBoundaries proposed = *proposal_;
    TakeProposalAway();
    // By distance: over time a computation would move the end.
    const BoundaryAxis shown = profile_.Axis();
    profile_.ShowAlong(BoundaryAxis::Distance);
    for (const ProfileLine line : {ProfileLine::Start, ProfileLine::End}) {
        profile_.Grab(line);
        profile_.MoveTo(profile_.Geometry().AxisValueOf(proposed.PlaceOf(line, BoundaryAxis::Distance)));
        profile_.Release();
    }
    ShowReadiness();
    Guarded(context_.Messages, [this] { Compute(); });
    profile_.ShowAlong(shown);
    ShowAxis();
    controls_.Plot->Redraw();
    ShowFigures();
    Record(QStringLiteral("Use proposed boundaries"));
}

void frmPlotRunSpeedProfileHoriz::TakeProposalAway() {
    proposal_.reset();
    controls_.Plot->ShowProposal(std::nullopt);
    if (controls_.Proposal->isAncestorOf(focusWidget())) controls_.Plot->setFocus();
    controls_.Proposal->hide();
    controls_.Plot->setMinimumHeight(0);
}

void frmPlotRunSpeedProfileHoriz::HideProposal() {
    proposing_.reset();
    TakeProposalAway();
    ShowFigures();
}

void frmPlotRunSpeedProfileHoriz::GoOnProposing() {
    TakeProposalAway();
    if (proposing_ && !profile_.HasBothBoundaries() && profile_.Trace().HasMovement()) ShowProposal();
}

void frmPlotRunSpeedProfileHoriz::ProposeForAll() {
    for (const ProfileLine line : AllLines) LeaveBox(line);
    const int inView = visits_.Run();
    Study study = visits_.ChangedStudy();
    study.Entries[inView] = profile_.EntryByDistance();
    for (const BoundsPreview& chosen : OnProposals(study)) {
        if (chosen.Run != inView) {
            TakeChosen({chosen});
            continue;
        }
        const PlotState placed = PlacedBoundaries(run_, chosen.Then);
        proposal_ = {{chosen.Then.CDStartDist, chosen.Then.CDEndDist}, {placed.CDStartSample, placed.CDEndSample}};
        UseProposal();
    }
}

void frmPlotRunSpeedProfileHoriz::SetNodesForAll() {
    for (const ProfileLine line : AllLines) LeaveBox(line);
    if (AskForNodePlaces(context_, this) == 0) return;
    // The backups are the way back.
    for (const auto& [run, stack] : stacks_) stack->clear();
    HideProposal();
    const PlotState plot = profile_.Plot();
    profile_.RunCut(plot);
    ShowRun();
}

}  // namespace vantor
