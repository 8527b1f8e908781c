#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/StudyEdits.h"
#include "statistics/DelayEvents.h"

namespace vantor {

/// What proposals are made from: a run of the study (from 1) with its events.
struct RunToPropose {
    int Run = 0;
    std::string Problem;  ///< why it cannot be read; empty where it can
    RunEvents Found;
    std::vector<std::string> NodeNames;  ///< of the nodes of Found, from the first on; or empty
    std::int32_t Length = 0;             ///< feet
    /// The one node (from 1) between the boundaries that are set; 0 for none, and for several.
    int NodeBetween = 0;
};

RunToPropose ProposeFor(int run, const RunRecord& record, const StudyRunEntry& entry, const AppSettings& settings);
/// All runs of a study; nothing when it was stopped.
std::vector<RunToPropose> ReadRunsToPropose(const Study& study, const FileSystem& files, const std::string& folder,
                                            const AppSettings& settings, const Progress& progress = {});

/// The node whose approach a study is about, and what speaks for it.
struct ProposedNode {
    enum class Reason { None, Only, Boundaries, Events, User };
    int Node = 0;  ///< from 1 in the order driven; 0 where no run has one
    Reason Why = Reason::None;
    int Runs = 0;    ///< that speak for it
    int OfRuns = 0;  ///< that can be read
};
/// The node between the boundaries of most runs that have them set around one; else the one at which most runs slow
/// down; the first of those that are equal.
ProposedNode NodeOf(const std::vector<RunToPropose>& runs);
/// A node that the user has named.
ProposedNode NodeOfUser(const std::vector<RunToPropose>& runs, int node);
/// How many nodes the run with the most of them has.
int MostNodes(const std::vector<RunToPropose>& runs);
/// "Node 3, Elm St", with the first name that a run has for it.
std::string NodeText(const std::vector<RunToPropose>& runs, int node);
/// Why it is this node, as a sentence that names it.
std::string NodeReason(const std::vector<RunToPropose>& runs, const ProposedNode& node);

enum class ProposalKind {
    Own,     ///< each run the event at its node
    Common,  ///< all runs the same: from the earliest onset to the latest end, measured from the node
};

struct RunProposal {
    int Run = 0;
    std::optional<Bounds> Proposed;
    std::string Note;             ///< why nothing is proposed, or what else is to be known; may be empty
    bool IsPassedFreely = false;  ///< no event at the node
    bool CutsOtherEvent = false;  ///< a common boundary lies in another event, of which a part counts, too
};
std::vector<RunProposal> ProposeBounds(const std::vector<RunToPropose>& runs, int node, ProposalKind kind);

/// What would become of the runs, each in its place; those without a proposal stay as they are, with the reason.
/// Nothing when it was stopped.
std::vector<BoundsPreview> PreviewProposals(const Study& study, const std::vector<RunProposal>& proposals,
                                            const FileSystem& files, const std::string& folder,
                                            const AppSettings& settings, const Progress& progress = {});
/// Those that have boundaries, for SetBounds.
std::vector<RunBounds> BoundsToSet(const std::vector<RunProposal>& proposals);

}  // namespace vantor
