#include "corridor/CorridorIntake.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/ContentHash.h"
#include "core/Text.h"

namespace vantor {
namespace {

Date MomentOf(const RunHeader& header) {
    return {std::floor(header.RunDate.Days) + (header.RunTime.Days - std::floor(header.RunTime.Days))};
}

auto Find(auto& runs, const std::string& group, const std::string& name) {
    return std::ranges::find_if(runs, [&](const CorridorRun& run) {
        return EqualIgnoringCase(run.Group, group) && EqualIgnoringCase(run.Name, name);
    });
}

}  // namespace

std::vector<TrackPass> PassesOfTrack(const RunRecord& track, const Corridor& corridor, const TrackSource& source) {
    const auto line = CorridorLine::Of(corridor);
    std::vector<TrackPass> passes;
    if (!line) return passes;
    constexpr double SecondsPerDay = 86400;
    for (const Pass& pass : FindPasses(track, corridor, *line)) {
        TrackPass& found =
            passes.emplace_back(TrackPass{CutPass(track, pass, corridor), pass.Along, KnownNodes(pass.Nodes), source});
        found.Source.From = MomentOf(found.Run.Header);
        found.Source.To = {found.Source.From.Days + found.Run.Header.SampleCount / SecondsPerDay};
    }
    return passes;
}

CorridorRun CorridorRunOf(const RunRecord& run, const std::string& group, const std::string& name, Way along) {
    CorridorRun of;
    of.Group = group;
    of.Name = name;
    of.Movement = MovementHash(run);
    of.Along = along;
    of.IsBefore = run.Header.Before != 0;
    return of;
}

void TakeRun(Corridor& corridor, CorridorRun run) {
    const auto there = Find(corridor.Runs, run.Group, run.Name);
    if (there == corridor.Runs.end())
        corridor.Runs.push_back(std::move(run));
    else
        *there = std::move(run);
}

const CorridorRun* FindCorridorRun(const Corridor& corridor, const std::string& group, const std::string& name) {
    const auto there = Find(corridor.Runs, group, name);
    return there == corridor.Runs.end() ? nullptr : &*there;
}

}  // namespace vantor
