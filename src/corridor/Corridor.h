#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/Date.h"
#include "core/Position.h"
#include "core/StudyOptions.h"

namespace vantor {

/// What a file of a corridor's nodes, settings and runs is called behind its name.
inline constexpr const char* CorridorExtension = ".corridor.geojson";

/// The ways through a corridor: in the order of its nodes, or against it.
enum class Way { Forward, Back };
inline constexpr std::array<Way, 2> BothWays = {Way::Forward, Way::Back};

/// What rules a node. `signal`, `stop`, `all-way stop`, `roundabout`, `none` in files and commands.
enum class NodeControl { Signal, Stop, AllWayStop, Roundabout, None };
inline constexpr std::array<const char*, 5> NodeControlWords = {"signal", "stop", "all-way stop", "roundabout", "none"};
inline const char* WordOf(NodeControl control) { return NodeControlWords.at(static_cast<std::size_t>(control)); }

/// Where control delay is measured around a node, as a vehicle passes it: feet before and after it.
struct Band {
    std::int32_t UpstreamFt = 600;
    std::int32_t DownstreamFt = 400;

    bool operator==(const Band&) const = default;
};

/// When a signal is green for a way, by the clock: from GreenStartSeconds after midnight on, once a cycle.
struct SignalTiming {
    std::optional<Way> Of;         ///< nothing for both ways
    std::optional<bool> IsBefore;  ///< of runs before or after; nothing for both
    std::string Period;            ///< empty for any
    double CycleSeconds = 0;       ///< above 0
    double GreenStartSeconds = 0;  ///< from 0, below the cycle
    double GreenSeconds = 0;       ///< above 0, up to the cycle

    bool operator==(const SignalTiming&) const = default;
};

struct CorridorNode {
    std::string Name;
    std::optional<Position> At;  ///< nothing where only distances are known
    NodeControl Control = NodeControl::Signal;
    double DistanceFt = 0;  ///< from the first node, rising
    Band Around;
    std::optional<int> SpeedLimitMph;
    std::vector<SignalTiming> Timings;
    std::string OtherFacts;  ///< members of a later version, as the text of a JSON object; or empty

    bool operator==(const CorridorNode&) const = default;
};

struct CorridorDirection {
    std::string Name;                  ///< "NB"
    std::optional<int> IdealSpeedMph;  ///< above 0; nothing: each run's own, by the speeds at its boundaries

    bool operator==(const CorridorDirection&) const = default;
};

/// A time of day: from the minute From on, before the minute To; both after midnight. One whose To is not behind its
/// From goes over midnight.
struct CorridorPeriod {
    std::string Name;
    int From = 0;
    int To = 0;

    bool operator==(const CorridorPeriod&) const = default;
};

/// The track that a run was cut from.
struct TrackSource {
    std::string File;        ///< its name, without folder
    std::uint64_t Hash = 0;  ///< ContentHash of its bytes
    Date From, To;           ///< of the run in it, local time as the run has it

    bool operator==(const TrackSource&) const = default;
};

struct OwnBand {
    std::size_t Node = 0;  ///< from 0, as the corridor counts them
    Band Around;

    bool operator==(const OwnBand&) const = default;
};

/// Where the user has put a node in a run.
struct SetNode {
    std::size_t Node = 0;
    std::int32_t Sample = 0;  ///< the second that ends at it; 0: the run does not pass it

    bool operator==(const SetNode&) const = default;
};

struct CorridorRun {
    std::string Group;           ///< the Study Group that it lies in
    std::string Name;            ///< of its file, without extension
    std::uint64_t Movement = 0;  ///< MovementHash of the run when it was taken in; 0 where it was never read
    Way Along = Way::Forward;
    std::string Period;  ///< as the user has set it; empty: by the corridor's periods
    bool IsBefore = true;
    std::string SetAside;           ///< the reason why it does not count; empty for a run that counts
    std::vector<OwnBand> OwnBands;  ///< one a node at most, by node
    std::vector<SetNode> SetNodes;  ///< likewise
    std::optional<TrackSource> Source;
    std::string OtherFacts;  ///< as of a node

    bool operator==(const CorridorRun&) const = default;
};

/// How runs are matched with the nodes, and tracks cut into runs.
struct MatchOptions {
    double ToleranceFt = 100;  ///< a vehicle that is farther beside the line is not on it
    double LeadFt = 500;       ///< that a run cut from a track has before its first band

    bool operator==(const MatchOptions&) const = default;
};

/// A street with its nodes, and the runs along it.
struct Corridor {
    std::string Name;
    std::vector<CorridorNode> Nodes;
    std::vector<Position> Alignment;  ///< the line of the street; empty: straight from node to node
    std::array<CorridorDirection, 2> Directions = {CorridorDirection{"NB", {}}, CorridorDirection{"SB", {}}};
    std::vector<CorridorPeriod> Periods;
    std::vector<CorridorRun> Runs;
    MatchOptions Matching;
    bool BandsMayOverlap = false;  ///< else overlapping ones end in the middle of what they share
    StatisticsOptions Options;
    std::string OtherFacts;  ///< as of a node

    const CorridorDirection& Of(Way way) const { return Directions[static_cast<std::size_t>(way)]; }
    CorridorDirection& Of(Way way) { return Directions[static_cast<std::size_t>(way)]; }
    bool operator==(const Corridor&) const = default;
};

/// Node `passed`, from 0, of a way, as the corridor counts it.
inline std::size_t NodeAlong(const Corridor& corridor, Way way, std::size_t passed) {
    return way == Way::Forward ? passed : corridor.Nodes.size() - 1 - passed;
}

}  // namespace vantor
