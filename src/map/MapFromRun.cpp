#include "map/MapFromRun.h"

#include <algorithm>

#include "core/Text.h"

namespace vantor {
namespace {

Position PlaceOf(const RunSample& sample) { return {sample.Latitude, sample.Longitude}; }

}  // namespace

bool HasPositions(const RunRecord& run) {
    return std::ranges::any_of(run.RunSamples, [](const RunSample& sample) { return IsPosition(PlaceOf(sample)); });
}

MapTrack TrackOf(const RunRecord& run, const std::string& name) {
    MapTrack track;
    track.Name = name;
    for (const RunSample& sample : run.RunSamples) track.Add({PlaceOf(sample), sample.Speed, sample.DateTime});
    return track;
}

std::vector<MapNode> NodesOf(const RunRecord& run) {
    std::vector<MapNode> nodes;
    const int samples = std::min(run.SampleValues.LastIndex(), run.RunSamples.LastIndex());
    int node = 0;
    for (int i = 1; i <= samples; ++i) {
        if (!HasNode(run.SampleValues[i])) continue;
        ++node;
        const Position at = PlaceOf(run.RunSamples[i]);
        if (!IsPosition(at)) continue;
        std::string name;
        if (node <= decltype(RunHeader::SectionName)::LastIndex) name = Trim(run.Header.SectionName[node]);
        nodes.push_back({name.empty() ? "Node " + std::to_string(node) : name, at});
    }
    return nodes;
}

}  // namespace vantor
