#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <utility>

#include "core/RunArithmetic.h"
#include "core/Text.h"
#include "corridor/CorridorNodes.h"
#include "corridor/NodeOrder.h"

namespace vantor {
namespace {

/// Feet from `at` to the straight way between two places, on the plane about the first.
double FeetBeside(const Position& at, const Position& from, const Position& to) {
    const double feetNorth = FeetBetween({0, 0}, {1, 0});
    const double feetEast = feetNorth * std::cos(from.Latitude * std::numbers::pi / 180);
    const auto east = [&](const Position& place) {
        return std::remainder(place.Longitude - from.Longitude, 360.0) * feetEast;
    };
    const auto north = [&](const Position& place) { return (place.Latitude - from.Latitude) * feetNorth; };
    const double square = east(to) * east(to) + north(to) * north(to);
    const double along = east(at) * east(to) + north(at) * north(to);
    const double part = square > 0 ? std::clamp(along / square, 0.0, 1.0) : 0;
    return std::hypot(east(at) - part * east(to), north(at) - part * north(to));
}

/// The points without which the line would be more than 5 ft elsewhere.
std::vector<Position> Thinned(const std::vector<Position>& line) {
    constexpr double Nearest = 5;
    std::vector<bool> stays(line.size(), false);
    stays.front() = stays.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> open{{0, line.size() - 1}};
    while (!open.empty()) {
        const auto [first, last] = open.back();
        open.pop_back();
        double farthest = Nearest;
        std::size_t point = 0;
        for (std::size_t i = first + 1; i < last; ++i)
            if (const double feet = FeetBeside(line[i], line[first], line[last]); feet > farthest) {
                farthest = feet;
                point = i;
            }
        if (point == 0) continue;
        stays[point] = true;
        open.emplace_back(first, point);
        open.emplace_back(point, last);
    }
    std::vector<Position> thinned;
    for (std::size_t i = 0; i < line.size(); ++i)
        if (stays[i]) thinned.push_back(line[i]);
    return thinned;
}

/// The way of the run between two samples, without the knots of a receiver that stands.
std::vector<Position> WayOf(const RunRecord& run, int first, int last) {
    constexpr double Step = 30;
    std::vector<Position> line;
    for (int i = first; i <= last; ++i) {
        const auto at = PositionOf(run.RunSamples[i]);
        if (at && (line.empty() || FeetBetween(line.back(), *at) >= Step)) line.push_back(*at);
    }
    const auto end = PositionOf(run.RunSamples[last]);
    if (line.size() < 2 || !end) return {};
    if (line.back() != *end) line.back() = *end;
    return Thinned(line);
}

std::string NameOfNode(const RunRecord& run, int node) {
    std::string name;
    if (node <= decltype(RunHeader::SectionName)::LastIndex) name = Trim(run.Header.SectionName[node]);
    return name.empty() ? "Node " + std::to_string(node) : name;
}

}  // namespace

FoundNodes NodesFromRun(const RunRecord& run, Way along) {
    FoundNodes found;
    const int samples = std::min(run.SampleValues.LastIndex(), run.RunSamples.LastIndex());
    const double feetPerPulse = FeetPerPulse(run.Header.CalConstant);
    std::int64_t pulses = 0;
    int first = 0;
    int last = 0;
    for (int i = 1; i <= samples; ++i) {
        pulses += PulsesOf(run.SampleValues[i]);
        if (!HasNode(run.SampleValues[i])) continue;
        CorridorNode node;
        node.Name = NameOfNode(run, static_cast<int>(found.Nodes.size()) + 1);
        node.At = PositionOf(run.RunSamples[i]);
        node.DistanceFt = feetPerPulse * static_cast<double>(pulses);
        found.Nodes.push_back(std::move(node));
        first = first == 0 ? i : first;
        last = i;
    }
    if (found.Nodes.empty()) {
        found.Remarks.emplace_back("The run has no flagged node. Set its nodes in the profile editor first.");
        return found;
    }
    found.Alignment = WayOf(run, first, last);
    if (along == Way::Back) {
        std::ranges::reverse(found.Nodes);
        std::ranges::reverse(found.Alignment);
    }
    const double start = found.Nodes.front().DistanceFt;
    for (CorridorNode& node : found.Nodes) node.DistanceFt = std::fabs(node.DistanceFt - start);
    if (std::string remark = OrderRemark(found.Nodes); !remark.empty()) found.Remarks.push_back(std::move(remark));
    return found;
}

}  // namespace vantor
