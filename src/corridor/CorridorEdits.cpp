#include "corridor/CorridorEdits.h"

#include <algorithm>
#include <utility>

#include "corridor/CorridorLine.h"

namespace vantor {
namespace {

constexpr double UsualSpacingFt = 1000;  // to a node of which nothing is known

/// Gives what the runs hold by node its new place; nothing for a node that is gone.
template <class PlaceOf>
void Renumber(Corridor& corridor, PlaceOf placeOf) {
    const auto renumber = [&](auto& items) {
        std::erase_if(items, [&](const auto& item) { return !placeOf(item.Node); });
        for (auto& item : items) item.Node = *placeOf(item.Node);
        std::ranges::sort(items, {}, [](const auto& item) { return item.Node; });
    };
    for (CorridorRun& run : corridor.Runs) {
        renumber(run.OwnBands);
        renumber(run.SetNodes);
    }
}

/// Puts an item in its place by node; nothing takes it out.
template <class Item>
void SetByNode(std::vector<Item>& items, std::size_t node, const std::optional<Item>& item) {
    std::erase_if(items, [&](const Item& each) { return each.Node == node; });
    if (!item) return;
    items.push_back(*item);
    std::ranges::sort(items, {}, &Item::Node);
}

std::string FreeNodeName(const Corridor& corridor) {
    for (std::size_t number = corridor.Nodes.size() + 1;; ++number) {
        std::string name = "Node " + std::to_string(number);
        if (std::ranges::find(corridor.Nodes, name, &CorridorNode::Name) == corridor.Nodes.end()) return name;
    }
}

}  // namespace

bool HasMeasuredDistance(const Corridor& corridor, std::size_t node) {
    return corridor.Nodes[node].At &&
           std::ranges::count_if(corridor.Nodes, [](const CorridorNode& each) { return each.At.has_value(); }) >= 2;
}

void Remeasure(Corridor& corridor) {
    std::vector<CorridorNode>& nodes = corridor.Nodes;
    if (nodes.empty()) return;
    const std::vector<CorridorNode> old = nodes;
    MeasureNodes(corridor);
    // Nodes outside of those with positions keep their distances to them.
    const auto isPlaced = [](const CorridorNode& node) { return node.At.has_value(); };
    const auto firstPlaced = static_cast<std::size_t>(std::ranges::find_if(nodes, isPlaced) - nodes.begin());
    const auto behindLast =
        static_cast<std::size_t>(std::ranges::find_if(nodes.rbegin(), nodes.rend(), isPlaced).base() - nodes.begin());
    if (behindLast > 0) {
        for (std::size_t i = 0; i < firstPlaced; ++i)
            nodes[i].DistanceFt += nodes[firstPlaced].DistanceFt - old[firstPlaced].DistanceFt;
        for (std::size_t i = behindLast; i < nodes.size(); ++i)
            nodes[i].DistanceFt += nodes[behindLast - 1].DistanceFt - old[behindLast - 1].DistanceFt;
    }
    const double first = nodes.front().DistanceFt;
    for (CorridorNode& node : nodes) node.DistanceFt -= first;
}

void InsertNode(Corridor& corridor, std::size_t at, CorridorNode node) {
    std::vector<CorridorNode>& nodes = corridor.Nodes;
    if (node.Name.empty()) node.Name = FreeNodeName(corridor);
    if (at == nodes.size())
        node.DistanceFt = nodes.empty() ? 0 : nodes.back().DistanceFt + UsualSpacingFt;
    else if (at == 0)
        node.DistanceFt = nodes.front().DistanceFt - UsualSpacingFt;
    else
        node.DistanceFt = (nodes[at - 1].DistanceFt + nodes[at].DistanceFt) / 2;
    nodes.insert(nodes.begin() + static_cast<std::ptrdiff_t>(at), std::move(node));
    Renumber(corridor, [at](std::size_t each) { return std::optional(each < at ? each : each + 1); });
    Remeasure(corridor);
}

std::size_t InsertNodeAt(Corridor& corridor, const Position& position) {
    CorridorNode node;
    node.At = position;
    std::size_t at = corridor.Nodes.size();
    if (const auto line = CorridorLine::Of(corridor)) {
        const double along = line->FootOf(position).Along;
        at = static_cast<std::size_t>(std::ranges::count_if(
            corridor.Nodes, [along](const CorridorNode& each) { return each.DistanceFt < along; }));
    }
    InsertNode(corridor, at, std::move(node));
    return at;
}

void RemoveNode(Corridor& corridor, std::size_t node) {
    corridor.Nodes.erase(corridor.Nodes.begin() + static_cast<std::ptrdiff_t>(node));
    Renumber(corridor, [node](std::size_t each) {
        return each == node ? std::nullopt : std::optional(each < node ? each : each - 1);
    });
    Remeasure(corridor);
}

void SwapNodes(Corridor& corridor, std::size_t first) {
    CorridorNode& one = corridor.Nodes[first];
    CorridorNode& other = corridor.Nodes[first + 1];
    std::swap(one, other);
    std::swap(one.DistanceFt, other.DistanceFt);
    Renumber(corridor, [first](std::size_t each) {
        return std::optional(each == first ? first + 1 : each == first + 1 ? first : each);
    });
    Remeasure(corridor);
}

void ReplaceNodes(Corridor& corridor, FoundNodes nodes) {
    const std::vector<CorridorNode> old = std::move(corridor.Nodes);
    PutNodes(corridor, std::move(nodes));
    Renumber(corridor, [&](std::size_t each) {
        const auto there = std::ranges::find(corridor.Nodes, old[each].Name, &CorridorNode::Name);
        return there == corridor.Nodes.end() ? std::nullopt
                                             : std::optional(static_cast<std::size_t>(there - corridor.Nodes.begin()));
    });
}

void SetOwnBand(CorridorRun& run, std::size_t node, const std::optional<Band>& band) {
    SetByNode(run.OwnBands, node, band ? std::optional(OwnBand{node, *band}) : std::nullopt);
}

std::optional<Band> OwnBandOf(const CorridorRun& run, std::size_t node) {
    const auto own = std::ranges::find(run.OwnBands, node, &OwnBand::Node);
    return own == run.OwnBands.end() ? std::nullopt : std::optional(own->Around);
}

void SetPassage(CorridorRun& run, std::size_t node, std::optional<std::int32_t> sample) {
    SetByNode(run.SetNodes, node, sample ? std::optional(SetNode{node, *sample}) : std::nullopt);
}

void RemoveRuns(Corridor& corridor, const std::vector<std::size_t>& runs) {
    std::vector<CorridorRun> left;
    for (std::size_t i = 0; i < corridor.Runs.size(); ++i)
        if (std::ranges::find(runs, i) == runs.end()) left.push_back(std::move(corridor.Runs[i]));
    corridor.Runs = std::move(left);
}

}  // namespace vantor
