#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Position.h"

namespace vantor {

using TrackPosition = Position;

/// A point of a track as a file tells it; what the file does not tell has no value.
struct TrackPoint {
    std::optional<double> Time;  ///< seconds UTC since 1970
    std::optional<TrackPosition> Position;
    std::optional<double> Speed;    ///< mph
    std::optional<double> Course;   ///< degrees from north, 0 to below 360
    std::optional<int> FixQuality;  ///< 1 GPS, 2 differential, 3 PPS, further ones as NMEA numbers them
    std::optional<int> Satellites;  ///< in use
    std::optional<double> HDOP;
    std::int16_t Node = 0;       ///< the number of a node or mark, which may have a name; 0 for none
    std::int32_t Segment = 0;    ///< from 0; every track and every segment of one has the next number
    std::string_view Name = {};  ///< of the track; holds for the call of the sink
};

/// Gets the points one by one; false ends the reading.
using TrackSink = std::function<bool(const TrackPoint& point)>;

/// A place that a file names.
struct TrackWaypoint {
    std::string Name;
    TrackPosition Position;
};

/// Names of nodes by their numbers.
using NodeNames = std::map<std::int16_t, std::string>;

/// Names and places that a summary keeps at most; all are counted.
inline constexpr std::size_t MostTrackNames = 1000;

/// What a file was found to hold. A reader keeps no more of it in memory, whatever the file's length.
struct TrackSummary {
    std::uint64_t Points = 0;           ///< given to the sink
    std::uint64_t WithoutTime = 0;      ///< of these
    std::uint64_t WithoutPosition = 0;  ///< of these
    std::uint64_t Void = 0;             ///< passed over: the receiver had no fix
    std::uint64_t OutOfOrder = 0;       ///< passed over: earlier than the point before
    std::uint64_t Duplicates = 0;       ///< passed over: of the same moment as the point before
    std::uint64_t Broken = 0;           ///< lines, or points of GPX, that could not be read and were passed over
    std::uint64_t FirstBrokenLine = 0;  ///< from 1
    std::string FirstBrokenReason;      ///< "The checksum is wrong."
    std::int32_t Segments = 0;
    std::uint64_t TrackCount = 0;
    std::vector<std::string> Names;  ///< of the tracks, in order
    NodeNames Nodes;                 ///< those of names
    std::uint64_t RoutePoints = 0;   ///< passed over
    std::uint64_t WaypointCount = 0;
    std::vector<TrackWaypoint> Waypoints;
    /// Why the file could not be read to its end: reason, place and remedy; empty where it was.
    std::string Damage;
    bool IsStopped = false;  ///< by the progress or the sink
};

}  // namespace vantor
