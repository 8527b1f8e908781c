#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/AppSettings.h"
#include "core/Csv.h"
#include "core/Position.h"
#include "core/RunRecords.h"
#include "tracks/TrackTimes.h"

namespace vantor {

/// A second of a run as other programs take it.
struct ExportedSecond {
    Date Time;  ///< local
    std::optional<Position> At;
    float Speed = 0;              ///< mph
    std::int32_t Feet = 0;        ///< from the start of the run to the end of this second
    std::optional<float> Course;  ///< degrees
    bool IsNode = false;
    std::string Node;  ///< its name, "Node 3" where it has none
    std::string Key;   ///< that was pressed
};

struct ExportedRun {
    std::string Name;
    std::vector<ExportedSecond> Seconds;

    /// How many of the seconds have one.
    std::size_t Positions() const;
};
ExportedRun ExportOf(const RunRecord& run, const AppSettings& settings);
/// What GPX and GeoJSON do not tell of a run: its seconds without a position; empty where all have one.
std::string LeftOutText(const ExportedRun& run);

/// True for the beginning of a GPX or CSV file that was written here: it holds runs as they are.
bool IsRunExport(std::string_view head);
inline constexpr std::size_t RunExportHead = 256;  ///< bytes that tell it

/// What runs may be written as beside their own form.
enum class ExportForm { Gpx, GeoJson, Csv };
/// By the extension of a file: ".gpx", ".geojson" or ".json", ".csv".
std::optional<ExportForm> ExportFormOf(const std::string& path);

// Universal times: the run's first second by its zone's clocks, the others from there.

/// GPX 1.1: a track a run, of its seconds with a position; nodes are waypoints and marked in their track points, speeds
/// and courses stand in the extension that receivers use.
std::string GpxText(std::span<const ExportedRun> runs, const TrackTimes& times);
/// A FeatureCollection: a LineString a run, with the time, speed (mph) and distance (ft) of each of its places as
/// lists, and a Point a node.
std::string GeoJsonText(std::span<const ExportedRun> runs, const TrackTimes& times);
/// What runs are written as in a form. Error 13 for GPX and GeoJSON of a run without positions, which it names.
std::vector<std::byte> ExportBytes(ExportForm form, std::span<const ExportedRun> runs, const TrackTimes& times,
                                   const AppSettings& settings);
/// A row a second, in the units of the settings; positions are left empty where there are none.
std::vector<SheetRow> SampleRows(std::span<const ExportedRun> runs, const TrackTimes& times,
                                 const AppSettings& settings);

}  // namespace vantor
