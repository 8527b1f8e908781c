#include "tracks/RunExport.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

#include "analysis/ProfileTrace.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Units.h"
#include "core/Windows1252.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

constexpr int PositionDecimals = 8;
constexpr int SpeedDecimals = 3;
constexpr double SecondsPerDay = 86400;
constexpr double DayOf1970 = 25569;
constexpr double MetresPerFoot = 0.3048;
/// What a file of ours is known by.
constexpr const char* GpxCreator = "creator=\"Vantor\"";
constexpr std::array<const char*, 3> FirstColumns = {"Run", "Second", "Local Time"};

/// The moments of a run's seconds. Its clock goes on where those of the zone are changed.
class Moments {
public:
    Moments(const ExportedRun& run, const TrackTimes& times) {
        if (run.Seconds.empty()) return;
        const double local = std::floor((run.Seconds.front().Time.Days - DayOf1970) * SecondsPerDay + 0.5);
        first_ = times.UtcOf(local);
    }
    /// Of a second from 0.
    std::string operator[](std::size_t index) const {
        return IsoDateTime({DayOf1970 + (first_ + static_cast<double>(index)) / SecondsPerDay}) + "Z";
    }

private:
    double first_ = 0;
};

/// Names come from files of any make, and XML holds neither all characters nor what is no UTF-8.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = NextCharacter(text, at);
        switch (character) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default:
                AppendUtf8(escaped, character < ' ' || character == 0xFFFE || character == 0xFFFF ? U' ' : character);
        }
    }
    return escaped;
}

std::string GpxPlace(const Position& at) {
    return " lat=\"" + FixedDecimals(at.Latitude, PositionDecimals) + "\" lon=\"" +
           FixedDecimals(at.Longitude, PositionDecimals) + "\"";
}

void AddTrackPoint(std::string& text, const ExportedSecond& second, const std::string& moment) {
    text += "      <trkpt" + GpxPlace(*second.At) + "><time>" + moment + "</time>";
    const double metresPerSecond = static_cast<double>(second.Speed) * FeetPerSecondOfMph * MetresPerFoot;
    text += "<extensions><tpx:TrackPointExtension><tpx:speed>" + FixedDecimals(metresPerSecond, SpeedDecimals) +
            "</tpx:speed>";
    if (second.Course) text += "<tpx:course>" + FixedDecimals(static_cast<double>(*second.Course), 1) + "</tpx:course>";
    text += "</tpx:TrackPointExtension>";
    if (second.IsNode) text += "<v:node>" + Escaped(second.Node) + "</v:node>";
    text += "</extensions></trkpt>\n";
}

Json PlaceJson(const Position& at) { return {at.Longitude, at.Latitude}; }

Json Feature(Json geometry, Json properties) {
    return {{"type", "Feature"}, {"geometry", std::move(geometry)}, {"properties", std::move(properties)}};
}

/// Of a line that crosses the date line, its parts on either side: both come to it at the same latitude.
class LineParts {
public:
    void Add(const Position& at) {
        const double east = last_ ? at.Longitude - last_->Longitude : 0;
        if (std::fabs(east) > 180) Cross(*last_, at);
        lines_.back().push_back(PlaceJson(at));
        last_ = at;
    }
    Json Geometry() const {
        return lines_.size() == 1 ? Json{{"type", "LineString"}, {"coordinates", lines_.front()}}
                                  : Json{{"type", "MultiLineString"}, {"coordinates", lines_}};
    }

private:
    void Cross(const Position& from, const Position& to) {
        const double side = from.Longitude > 0 ? 180 : -180;
        const double before = side - from.Longitude;
        const double behind = to.Longitude + side;
        const double way = before + behind;
        const double latitude = way == 0 ? to.Latitude : from.Latitude + (to.Latitude - from.Latitude) * before / way;
        if (before != 0) lines_.back().push_back(PlaceJson({latitude, side}));
        lines_.push_back(Json::array());
        if (behind != 0) lines_.back().push_back(PlaceJson({latitude, -side}));
    }

    std::vector<Json> lines_ = {Json::array()};
    std::optional<Position> last_;
};

Json LineFeature(const ExportedRun& run, const Moments& moments) {
    LineParts places;
    Json times = Json::array();
    Json speeds = Json::array();
    Json distances = Json::array();
    for (std::size_t i = 0; i < run.Seconds.size(); ++i) {
        const ExportedSecond& second = run.Seconds[i];
        if (!second.At) continue;
        places.Add(*second.At);
        times.push_back(moments[i]);
        speeds.push_back(std::floor(static_cast<double>(second.Speed) * 1000 + 0.5) / 1000);
        distances.push_back(second.Feet);
    }
    return Feature(places.Geometry(), {{"run", run.Name},
                                       {"times", std::move(times)},
                                       {"speedMph", std::move(speeds)},
                                       {"distanceFt", std::move(distances)}});
}

SheetField Number(double value, int decimals) { return {FixedDecimals(value, decimals), true}; }

std::vector<std::byte> BytesOf(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace

std::size_t ExportedRun::Positions() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(Seconds, [](const ExportedSecond& second) { return second.At.has_value(); }));
}

ExportedRun ExportOf(const RunRecord& run, const AppSettings& settings) {
    const ProfileTrace trace(run, settings.SpeedFactor);
    const double start = run.Header.RunDate.Days + run.Header.RunTime.Days;
    ExportedRun exported{run.Header.RunName,
                         std::vector<ExportedSecond>(static_cast<std::size_t>(trace.SampleCount()))};
    for (std::int32_t sample = 1; sample <= trace.SampleCount(); ++sample) {
        ExportedSecond& second = exported.Seconds[static_cast<std::size_t>(sample - 1)];
        second.Time = {start + (sample - 1) / SecondsPerDay};
        second.Speed = trace.SpeedOf(sample);
        second.Feet = trace.DistanceOf(sample);
        if (sample > run.RunSamples.LastIndex()) continue;
        const RunSample& event = run.RunSamples[sample];
        second.At = PositionOf(event);
        if (second.At && event.Heading >= 0 && event.Heading <= 360) second.Course = event.Heading;
    }
    int nodes = 0;
    for (const ProfileMark& mark : trace.Marks()) {
        ExportedSecond& second = exported.Seconds[static_cast<std::size_t>(mark.Sample - 1)];
        second.IsNode = mark.IsNode;
        if (mark.IsNode) ++nodes;
        (mark.IsNode ? second.Node : second.Key) =
            mark.IsNode && mark.Label.empty() ? "Node " + std::to_string(nodes) : mark.Label;
    }
    return exported;
}

std::string LeftOutText(const ExportedRun& run) {
    const std::size_t seconds = run.Seconds.size() - run.Positions();
    if (seconds == 0) return {};
    const auto nodes =
        std::ranges::count_if(run.Seconds, [](const ExportedSecond& second) { return second.IsNode && !second.At; });
    return run.Name + ": " + std::to_string(seconds) + " of its " + std::to_string(run.Seconds.size()) +
           " seconds have no position and are left out" +
           (nodes == 0 ? "" : ", among them " + std::to_string(nodes) + (nodes == 1 ? " node" : " nodes")) +
           "; CSV has all of them";
}

bool IsRunExport(std::string_view head) {
    std::string columns;
    for (const char* const column : FirstColumns) columns += std::string(column) + ",";
    return head.find(GpxCreator) != std::string_view::npos || head.find(columns) != std::string_view::npos;
}

std::optional<ExportForm> ExportFormOf(const std::string& path) {
    if (HasExtension(path, ".gpx")) return ExportForm::Gpx;
    if (HasExtension(path, ".geojson") || HasExtension(path, ".json")) return ExportForm::GeoJson;
    if (HasExtension(path, ".csv")) return ExportForm::Csv;
    return std::nullopt;
}

std::string GpxText(std::span<const ExportedRun> runs, const TrackTimes& times) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<gpx version=\"1.1\" " +
        std::string(GpxCreator) +
        " xmlns=\"http://www.topografix.com/GPX/1/1\"\n"
        "     xmlns:tpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v2\" xmlns:v=\"urn:vantor:node\">\n";
    for (const ExportedRun& run : runs) {
        const Moments moments(run, times);
        for (std::size_t i = 0; i < run.Seconds.size(); ++i)
            if (const ExportedSecond& second = run.Seconds[i]; second.IsNode && second.At)
                text += "  <wpt" + GpxPlace(*second.At) + "><time>" + moments[i] + "</time><name>" +
                        Escaped(second.Node) + "</name><desc>" + Escaped(run.Name) + "</desc></wpt>\n";
    }
    for (const ExportedRun& run : runs) {
        const Moments moments(run, times);
        text += "  <trk><name>" + Escaped(run.Name) + "</name>\n    <trkseg>\n";
        for (std::size_t i = 0; i < run.Seconds.size(); ++i)
            if (run.Seconds[i].At) AddTrackPoint(text, run.Seconds[i], moments[i]);
        text += "    </trkseg>\n  </trk>\n";
    }
    return text + "</gpx>\n";
}

std::string GeoJsonText(std::span<const ExportedRun> runs, const TrackTimes& times) {
    Json features = Json::array();
    for (const ExportedRun& run : runs) {
        const Moments moments(run, times);
        features.push_back(LineFeature(run, moments));
        for (std::size_t i = 0; i < run.Seconds.size(); ++i)
            if (const ExportedSecond& second = run.Seconds[i]; second.IsNode && second.At)
                features.push_back(Feature({{"type", "Point"}, {"coordinates", PlaceJson(*second.At)}},
                                           {{"node", second.Node}, {"run", run.Name}, {"time", moments[i]}}));
    }
    const Json all = {{"type", "FeatureCollection"}, {"features", std::move(features)}};
    // Names may come from files of any make.
    return all.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::vector<SheetRow> SampleRows(std::span<const ExportedRun> runs, const TrackTimes& times,
                                 const AppSettings& settings) {
    const Units units = UnitsOf(settings);
    const std::string speed = std::string("Speed (") + (units.Metric ? "km/h" : "mph") + ")";
    const std::string distance = std::string("Distance (") + units.LengthLabel() + ")";
    std::vector<SheetRow> rows = {{{FirstColumns[0]},
                                   {FirstColumns[1]},
                                   {FirstColumns[2]},
                                   {"UTC"},
                                   {"Latitude"},
                                   {"Longitude"},
                                   {speed},
                                   {"Course"},
                                   {distance},
                                   {"Node"},
                                   {"Key"}}};
    for (const ExportedRun& run : runs) {
        const Moments moments(run, times);
        for (std::size_t i = 0; i < run.Seconds.size(); ++i) {
            const ExportedSecond& second = run.Seconds[i];
            const SheetField none{"", true};
            rows.push_back({{run.Name},
                            Number(static_cast<double>(i + 1), 0),
                            {IsoDateTime(second.Time)},
                            {moments[i]},
                            second.At ? Number(second.At->Latitude, PositionDecimals) : none,
                            second.At ? Number(second.At->Longitude, PositionDecimals) : none,
                            Number(units.SpeedOfMph(static_cast<double>(second.Speed)), SpeedDecimals),
                            second.Course ? Number(static_cast<double>(*second.Course), 1) : none,
                            Number(units.LengthOfFeet(second.Feet), 0),
                            {second.Node},
                            {second.Key}});
        }
    }
    return rows;
}

std::vector<std::byte> ExportBytes(ExportForm form, std::span<const ExportedRun> runs, const TrackTimes& times,
                                   const AppSettings& settings) {
    if (form == ExportForm::Csv) return BytesOf(CsvText(SampleRows(runs, times, settings)));
    for (const ExportedRun& run : runs)
        if (const std::size_t positions = run.Positions(); positions < 2)
            throw RunTimeError(ErrorNumber::TypeMismatch,
                               "Run " + run.Name +
                                   (positions == 0 ? " has no positions: it is of a counter or of an OBD log."
                                                   : " has a position in one of its seconds only.") +
                                   "\nGPX and GeoJSON need positions; write its samples as CSV.");
    return BytesOf(form == ExportForm::Gpx ? GpxText(runs, times) : GeoJsonText(runs, times));
}

}  // namespace vantor
