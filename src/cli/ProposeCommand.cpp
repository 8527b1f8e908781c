#include <algorithm>
#include <memory>

#include "cli/Commands.h"
#include "cli/RecordJson.h"
#include "cli/StudyChange.h"
#include "core/StudyFile.h"
#include "statistics/BoundsProposal.h"

namespace vantor {
namespace {

struct ProposeOptions {
    std::string Path;
    std::optional<std::int32_t> Node;
    bool IsCommon = false;
    bool IsApplied = false;
};

Json DelayOf(const StudyRunEntry& entry) {
    return HasBothBoundaries(entry) && !Trim(entry.LOSGrade).empty() ? Json(entry.ControlDelay) : Json(nullptr);
}

std::int64_t EventsWithoutNode(const RunEvents& found) {
    std::int64_t count = std::ssize(found.Events);
    for (std::size_t i = 0; i < found.Events.size(); ++i)
        count -= std::ranges::find(found.EventOfNode, std::optional(i)) != found.EventOfNode.end() ? 1 : 0;
    return count;
}

Json RowOf(const BoundsPreview& preview, const RunProposal& proposal, const RunToPropose& run) {
    const auto& bounds = proposal.Proposed;
    const bool isComputed = bounds && preview.Problem.empty();
    std::vector<std::string> remarks = preview.Warnings;
    if (!preview.Problem.empty()) remarks.insert(remarks.begin(), preview.Problem);
    if (!preview.Note.empty()) remarks.push_back(preview.Note);
    return {{"name", RunFileName(preview.Now)},
            {"start_dist", bounds ? Json(bounds->StartDist) : Json(nullptr)},
            {"end_dist", bounds ? Json(bounds->EndDist) : Json(nullptr)},
            {"delay_now", DelayOf(preview.Now)},
            {"delay_then", isComputed ? DelayOf(preview.Then) : Json(nullptr)},
            {"grade_then", isComputed ? json::Value(preview.Then.LOSGrade) : Json(nullptr)},
            {"events_without_node", EventsWithoutNode(run.Found)},
            {"remarks", Joined(remarks, "; ")}};
}

int Propose(CommandContext& context, const ProposeOptions& options) {
    const NamedFile file = TakeApart(options.Path, StudyExtension, "study file");
    const auto lock = options.IsApplied ? context.Files.Lock(file.Folder) : nullptr;
    auto study = options.IsApplied ? LoadStudyToChange(context, file) : LoadNamedStudy(context, file);
    if (!study) return Failed;
    const AppSettings& settings = context.State.Settings;
    const auto runs = ReadRunsToPropose(*study, context.Files, file.Folder, settings, context.Work.PartOf(0, 2));
    if (runs.empty() && study->Record.RunCount > 0) return Stopped;
    if (options.Node && (*options.Node < 1 || *options.Node > MostNodes(runs))) {
        context.Err << "No run of the study has a node " << *options.Node
                    << ". Nodes count from 1 in the order driven; "
                    << (MostNodes(runs) == 0 ? "no run has one" : "the last is " + std::to_string(MostNodes(runs)))
                    << ".\n";
        return Failed;
    }
    const ProposedNode node = options.Node ? NodeOfUser(runs, *options.Node) : NodeOf(runs);
    const auto proposals = ProposeBounds(runs, node.Node, options.IsCommon ? ProposalKind::Common : ProposalKind::Own);
    const auto previews =
        PreviewProposals(*study, proposals, context.Files, file.Folder, settings, context.Work.PartOf(1, 2));
    if (previews.size() != proposals.size()) return Stopped;
    if (!context.Work(1, 1)) return Stopped;

    Json result = {{"node", node.Node == 0 ? Json(nullptr) : Json(node.Node)},
                   {"node_reason", NodeReason(runs, node)},
                   {"pairs", options.IsCommon ? "common" : "own"},
                   {"stored", options.IsApplied},
                   {"runs", Json::array()}};
    for (std::size_t i = 0; i < previews.size(); ++i)
        result["runs"].push_back(RowOf(previews[i], proposals[i], runs[i]));
    if (options.IsApplied) {
        const auto bounds = BoundsToSet(proposals);
        if (bounds.empty()) {
            context.Err << "Nothing is proposed, so the study was not changed. "
                        << result["node_reason"].get<std::string>() << '\n';
            return Failed;
        }
        return FinishStudy(context, file, *study, SetBounds(*study, bounds, context.Files, file.Folder, settings),
                           result);
    }
    context.Print(result);
    return Done;
}

}  // namespace

void AddProposeCommand(CLI::App& studyGroup, CommandAction& chosen) {
    auto options = std::make_shared<ProposeOptions>();
    CLI::App& propose =
        AddCommand(studyGroup, chosen, "propose", "Propose boundaries where the runs slow down at an intersection",
                   [options](CommandContext& context) { return Propose(context, *options); });
    propose.add_option("FILE", options->Path, "A study file (.ld2)")->required();
    propose.add_option("--node", options->Node, "The node of the intersection, from 1 in the order driven")
        ->transform(WholeNumber());
    propose.add_flag("--common", options->IsCommon, "One pair for all runs, measured from the node");
    propose.add_flag("--apply", options->IsApplied, "Give the runs these boundaries and compute the study");
}

}  // namespace vantor
