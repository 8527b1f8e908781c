#include "statistics/BoundsProposal.h"

#include <algorithm>
#include <map>
#include <numeric>

#include "core/Counted.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"

namespace vantor {
namespace {

std::vector<std::string> NamesOfNodes(const RunRecord& run, std::size_t nodes) {
    std::vector<std::string> names;
    constexpr auto MostNamed = static_cast<std::size_t>(decltype(RunHeader::SectionName)::LastIndex);
    for (std::size_t node = 1; node <= std::min(nodes, MostNamed); ++node)
        names.emplace_back(Trim(run.Header.SectionName[static_cast<int>(node)]));
    return names;
}

int NodeBetweenBoundaries(const RunEvents& found, const StudyRunEntry& entry) {
    if (!HasBothBoundaries(entry)) return 0;
    const auto isBetween = [&](std::int32_t feet) { return entry.CDStartDist <= feet && feet <= entry.CDEndDist; };
    if (std::ranges::count_if(found.NodeDistances, isBetween) != 1) return 0;
    return static_cast<int>(std::ranges::find_if(found.NodeDistances, isBetween) - found.NodeDistances.begin()) + 1;
}

bool IsHeldUpAt(const RunToPropose& run, int node) {
    const auto index = static_cast<std::size_t>(node - 1);
    return index < run.Found.EventOfNode.size() && run.Found.EventOfNode[index].has_value();
}

/// The number with the most votes, the first of those that are equal.
ProposedNode MostVoted(const std::map<int, int>& votes, ProposedNode::Reason why) {
    ProposedNode chosen;
    for (const auto& [node, runs] : votes)
        if (runs > chosen.Runs) chosen = {node, why, runs, 0};
    return chosen;
}

/// How many nodes most runs have.
int UsualNodes(const std::vector<RunToPropose>& runs) {
    std::map<int, int> counts;
    for (const RunToPropose& run : runs)
        if (run.Problem.empty()) ++counts[static_cast<int>(run.Found.Nodes.size())];
    return MostVoted(counts, ProposedNode::Reason::None).Node;
}

int ReadableRuns(const std::vector<RunToPropose>& runs) {
    return static_cast<int>(std::ranges::count_if(runs, &std::string::empty, &RunToPropose::Problem));
}

/// Feet from the node to where boundaries lie.
struct Reach {
    std::int32_t Start = 0;
    std::int32_t End = 0;
};

class Proposer {
public:
    Proposer(const std::vector<RunToPropose>& runs, int node, ProposalKind kind)
        : index_(static_cast<std::size_t>(node - 1)), kind_(kind), usualNodes_(UsualNodes(runs)) {
        for (const RunToPropose& run : runs) Widen(run);
    }

    RunProposal For(const RunToPropose& run) const {
        RunProposal proposal{run.Run, {}, run.Problem, false, false};
        if (!run.Problem.empty()) return proposal;
        const std::size_t nodes = run.Found.Nodes.size();
        if (index_ >= nodes) {
            const bool isFree = nodes > 0 && index_ == NoNode;
            proposal.Note = (isFree       ? "passed without delay"
                             : nodes == 0 ? "no nodes"
                                          : "only " + Counted(nodes, "node")) +
                            std::string(": no boundaries");
            return proposal;
        }
        std::vector<std::string> notes;
        const bool isFree = proposal.IsPassedFreely = !run.Found.EventOfNode[index_];
        if (isFree) notes.emplace_back(IsCommon() ? "passed without delay" : "passed without delay: no boundaries");
        if (nodes != static_cast<std::size_t>(usualNodes_))
            notes.push_back(Counted(nodes, "node") + ", most runs have " + std::to_string(usualNodes_));
        if (IsCommon()) {
            const Bounds common = CommonOf(run, notes);
            std::vector<std::string> cutting;
            if (IsInOtherEvent(run, common.StartDist)) cutting.emplace_back("start");
            if (IsInOtherEvent(run, common.EndDist)) cutting.emplace_back("end");
            proposal.CutsOtherEvent = !cutting.empty();
            if (proposal.CutsOtherEvent) notes.push_back(Joined(cutting, " and ") + " in another slowing");
            proposal.Proposed = common;
        }
        if (!IsCommon() && !isFree) proposal.Proposed = OwnOf(run.Found.Events[*run.Found.EventOfNode[index_]]);
        proposal.Note = Joined(notes, "; ");
        return proposal;
    }

private:
    static constexpr std::size_t NoNode = static_cast<std::size_t>(-1);

    bool IsCommon() const { return kind_ == ProposalKind::Common && reach_.has_value(); }

    void Widen(const RunToPropose& run) {
        if (!IsHeldUpAt(run, static_cast<int>(index_) + 1)) return;
        const DelayEvent& event = run.Found.Events[*run.Found.EventOfNode[index_]];
        const std::int32_t node = run.Found.NodeDistances[index_];
        const Reach own{event.OnsetDistance - node, event.EndDistance - node};
        if (!reach_) reach_ = own;
        reach_ = Reach{std::min(reach_->Start, own.Start), std::max(reach_->End, own.End)};
    }

    /// 0 is a boundary that is not set.
    static Bounds OwnOf(const DelayEvent& event) {
        return {std::max(event.OnsetDistance, 1), event.EndDistance, std::nullopt};
    }

    bool IsInOtherEvent(const RunToPropose& run, std::int32_t feet) const {
        for (std::size_t i = 0; i < run.Found.Events.size(); ++i) {
            const DelayEvent& event = run.Found.Events[i];
            if (run.Found.EventOfNode[index_] != i && event.OnsetDistance < feet && feet < event.EndDistance)
                return true;
        }
        return false;
    }

    Bounds CommonOf(const RunToPropose& run, std::vector<std::string>& notes) const {
        const std::int32_t node = run.Found.NodeDistances[index_];
        const Bounds whole{node + reach_->Start, node + reach_->End, std::nullopt};
        if (whole.StartDist < 1) notes.emplace_back("begins after the common start");
        if (whole.EndDist > run.Length) notes.emplace_back("ends before the common end");
        return {std::max(whole.StartDist, 1), std::min(whole.EndDist, run.Length), std::nullopt};
    }

    std::size_t index_;
    ProposalKind kind_;
    int usualNodes_;
    std::optional<Reach> reach_;
};

}  // namespace

RunToPropose ProposeFor(int run, const RunRecord& record, const StudyRunEntry& entry, const AppSettings& settings) {
    RunToPropose made{run, {}, FindDelayEvents(record, settings.SpeedFactor), {}, 0, 0};
    made.NodeNames = NamesOfNodes(record, made.Found.Nodes.size());
    const OneBased<std::int32_t> distances = RunningDistances(record);
    if (!distances.IsEmpty()) made.Length = distances[distances.LastIndex()];
    made.NodeBetween = NodeBetweenBoundaries(made.Found, entry);
    return made;
}

std::vector<RunToPropose> ReadRunsToPropose(const Study& study, const FileSystem& files, const std::string& folder,
                                            const AppSettings& settings, const Progress& progress) {
    std::vector<RunToPropose> runs;
    for (int run = 1; run <= study.Record.RunCount; ++run) {
        if (!progress(runs.size(), static_cast<std::uint64_t>(study.Record.RunCount))) return {};
        const StudyRunEntry& entry = study.Entries[run];
        const std::string name = RunFileName(entry);
        // The names of the nodes are in the part that a reading of the values alone leaves out.
        const RunReading reading = ReadRun(files, folder, name, RunPart::Whole);
        if (reading)
            runs.push_back(ProposeFor(run, reading.Run, entry, settings));
        else
            runs.push_back({run, FactsOf(reading, entry, settings).Problem, {}, {}, 0, 0});
    }
    return runs;
}

ProposedNode NodeOf(const std::vector<RunToPropose>& runs) {
    std::map<int, int> between;
    std::map<int, int> heldUp;
    const int nodes = MostNodes(runs);
    for (const RunToPropose& run : runs) {
        if (run.NodeBetween != 0) ++between[run.NodeBetween];
        for (int node = 1; node <= nodes; ++node) heldUp[node] += IsHeldUpAt(run, node) ? 1 : 0;
    }
    using Reason = ProposedNode::Reason;
    ProposedNode chosen = MostVoted(between, Reason::Boundaries);
    if (chosen.Node == 0) chosen = MostVoted(heldUp, Reason::Events);
    if (nodes == 1) chosen = {1, Reason::Only, heldUp[1], 0};
    chosen.OfRuns = ReadableRuns(runs);
    return chosen;
}

ProposedNode NodeOfUser(const std::vector<RunToPropose>& runs, int node) {
    const auto heldUp = std::ranges::count_if(runs, [node](const RunToPropose& run) { return IsHeldUpAt(run, node); });
    return {node, ProposedNode::Reason::User, static_cast<int>(heldUp), ReadableRuns(runs)};
}

int MostNodes(const std::vector<RunToPropose>& runs) {
    std::size_t most = 0;
    for (const RunToPropose& run : runs) most = std::max(most, run.Found.Nodes.size());
    return static_cast<int>(most);
}

std::string NodeText(const std::vector<RunToPropose>& runs, int node) {
    const auto index = static_cast<std::size_t>(node - 1);
    for (const RunToPropose& run : runs)
        if (index < run.NodeNames.size() && !run.NodeNames[index].empty())
            return "Node " + std::to_string(node) + ", " + run.NodeNames[index];
    return "Node " + std::to_string(node);
}

std::string NodeReason(const std::vector<RunToPropose>& runs, const ProposedNode& node) {
    const std::string name = node.Node == 0 ? std::string() : NodeText(runs, node.Node);
    const std::string share = std::to_string(node.Runs) + " of " + std::to_string(node.OfRuns) + " runs";
    using Reason = ProposedNode::Reason;
    switch (node.Why) {
        case Reason::Only: return name + ": the only one; " + share + " slow down there.";
        case Reason::Boundaries: return name + ": it lies between the boundaries of " + share + ".";
        case Reason::Events: return name + ": most runs slow down there, " + share + ".";
        case Reason::User: return name + ", as chosen: " + share + " slow down there.";
        case Reason::None: break;
    }
    return MostNodes(runs) == 0 ? "No run has a node, so that it is not known where the intersection is."
                                : "No run slows down at a node.";
}

std::vector<RunProposal> ProposeBounds(const std::vector<RunToPropose>& runs, int node, ProposalKind kind) {
    const Proposer proposer(runs, node, kind);
    std::vector<RunProposal> proposals;
    proposals.reserve(runs.size());
    for (const RunToPropose& run : runs) proposals.push_back(proposer.For(run));
    return proposals;
}

std::vector<BoundsPreview> PreviewProposals(const Study& study, const std::vector<RunProposal>& proposals,
                                            const FileSystem& files, const std::string& folder,
                                            const AppSettings& settings, const Progress& progress) {
    const std::vector<BoundsPreview> computed =
        PreviewBounds(study, BoundsToSet(proposals), files, folder, settings, progress);
    auto next = computed.begin();
    std::vector<BoundsPreview> previews;
    for (const RunProposal& proposal : proposals) {
        const StudyRunEntry& now = study.Entries[proposal.Run];
        if (!proposal.Proposed) {
            previews.push_back({proposal.Run, now, now, proposal.Note});
            continue;
        }
        if (next == computed.end()) return {};
        BoundsPreview& preview = previews.emplace_back(*next++);
        preview.Note = proposal.Note;
        // Without a delay it is about 0, on either side.
        if (proposal.IsPassedFreely && std::erase(preview.Warnings, NegativeDelayWarning) > 0)
            preview.Note += std::string("; ") + NegativeDelayWarning;
    }
    return previews;
}

std::vector<RunBounds> BoundsToSet(const std::vector<RunProposal>& proposals) {
    std::vector<RunBounds> bounds;
    for (const RunProposal& proposal : proposals)
        if (proposal.Proposed) bounds.push_back({proposal.Run, *proposal.Proposed});
    return bounds;
}

}  // namespace vantor
