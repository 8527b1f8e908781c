#include "tracks/RunExport.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "analysis/ProfileTrace.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Units.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

constexpr int PositionDecimals = 8;
constexpr int SpeedDecimals = 3;
constexpr double SecondsPerDay = 86400;
constexpr double DayOf1970 = 25569;
constexpr double MetresPerFoot = 0.3048;

constexpr double SecondsOf(Date date) { return (date.Days - DayOf1970) * SecondsPerDay; }

std::string UniversalText(const ExportedSecond& second, const TrackTimes& times) {
    return IsoDateTime({DayOf1970 + times.UtcOf(SecondsOf(second.Time)) / SecondsPerDay}) + "Z";
}

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char character : text) switch (character) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            // Other control characters cannot stand in XML at all.
            default: escaped += static_cast<unsigned char>(character) < ' ' ? ' ' : character;
        }
    return escaped;
}

std::string GpxPlace(const Position& at) {
    return " lat=\"" + FixedDecimals(at.Latitude, PositionDecimals) + "\" lon=\"" +
           FixedDecimals(at.Longitude, PositionDecimals) + "\"";
}

void AddTrackPoint(std::string& text, const ExportedSecond& second, const TrackTimes& times) {
    text += "      <trkpt" + GpxPlace(*second.At) + "><time>" + UniversalText(second, times) + "</time>";
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

Json LineFeature(const ExportedRun& run, const TrackTimes& times) {
    Json places = Json::array();
    Json moments = Json::array();
    Json speeds = Json::array();
    Json distances = Json::array();
    for (const ExportedSecond& second : run.Seconds) {
        if (!second.At) continue;
        places.push_back(PlaceJson(*second.At));
        moments.push_back(UniversalText(second, times));
        speeds.push_back(static_cast<double>(second.Speed));
        distances.push_back(second.Feet);
    }
    return Feature({{"type", "LineString"}, {"coordinates", std::move(places)}},
                   {{"run", run.Name},
                    {"times", std::move(moments)},
                    {"speedMph", std::move(speeds)},
                    {"distanceFt", std::move(distances)}});
}

SheetField Number(double value, int decimals) { return {FixedDecimals(value, decimals), true}; }

std::vector<std::byte> BytesOf(const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace

bool ExportedRun::HasPositions() const {
    return std::ranges::count_if(Seconds, [](const ExportedSecond& second) { return second.At.has_value(); }) > 1;
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
        if (second.At && event.Heading >= 0) second.Course = event.Heading;
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

std::optional<ExportForm> ExportFormOf(const std::string& path) {
    if (HasExtension(path, ".gpx")) return ExportForm::Gpx;
    if (HasExtension(path, ".geojson") || HasExtension(path, ".json")) return ExportForm::GeoJson;
    if (HasExtension(path, ".csv")) return ExportForm::Csv;
    return std::nullopt;
}

std::string GpxText(std::span<const ExportedRun> runs, const TrackTimes& times) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<gpx version=\"1.1\" creator=\"Vantor\" "
        "xmlns=\"http://www.topografix.com/GPX/1/1\"\n"
        "     "
        "xmlns:tpx=\"http://www.garmin.com/xmlschemas/"
        "TrackPointExtension/v2\" xmlns:v=\"urn:vantor:node\">\n";
    for (const ExportedRun& run : runs)
        for (const ExportedSecond& second : run.Seconds)
            if (second.IsNode && second.At)
                text += "  <wpt" + GpxPlace(*second.At) + "><time>" + UniversalText(second, times) + "</time><name>" +
                        Escaped(second.Node) + "</name><desc>" + Escaped(run.Name) + "</desc></wpt>\n";
    for (const ExportedRun& run : runs) {
        text += "  <trk><name>" + Escaped(run.Name) + "</name>\n    <trkseg>\n";
        for (const ExportedSecond& second : run.Seconds)
            if (second.At) AddTrackPoint(text, second, times);
        text += "    </trkseg>\n  </trk>\n";
    }
    return text + "</gpx>\n";
}

std::string GeoJsonText(std::span<const ExportedRun> runs, const TrackTimes& times) {
    Json features = Json::array();
    for (const ExportedRun& run : runs) {
        features.push_back(LineFeature(run, times));
        for (const ExportedSecond& second : run.Seconds)
            if (second.IsNode && second.At)
                features.push_back(
                    Feature({{"type", "Point"}, {"coordinates", PlaceJson(*second.At)}},
                            {{"node", second.Node}, {"run", run.Name}, {"time", UniversalText(second, times)}}));
    }
    const Json all = {{"type", "FeatureCollection"}, {"features", std::move(features)}};
    // Names may come from files of any make.
    return all.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::vector<SheetRow> SampleRows(std::span<const ExportedRun> runs, const AppSettings& settings) {
    const Units units = UnitsOf(settings);
    const std::string speed = std::string("Speed (") + (units.Metric ? "km/h" : "mph") + ")";
    const std::string distance = std::string("Distance (") + units.LengthLabel() + ")";
    std::vector<SheetRow> rows = {{{"Run"},
                                   {"Second"},
                                   {"Local Time"},
                                   {"Latitude"},
                                   {"Longitude"},
                                   {speed},
                                   {"Course"},
                                   {distance},
                                   {"Node"},
                                   {"Key"}}};
    for (const ExportedRun& run : runs) {
        double seconds = 0;
        for (const ExportedSecond& second : run.Seconds) {
            const SheetField none{"", true};
            rows.push_back({{run.Name},
                            Number(++seconds, 0),
                            {IsoDateTime(second.Time)},
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
    if (form == ExportForm::Csv) return BytesOf(CsvText(SampleRows(runs, settings)));
    for (const ExportedRun& run : runs)
        if (!run.HasPositions())
            throw RunTimeError(ErrorNumber::TypeMismatch, "Run " + run.Name +
                                                              " has no positions: it is of a counter or of an "
                                                              "OBD log.\nGPX and GeoJSON need "
                                                              "positions; write its samples as CSV.");
    return BytesOf(form == ExportForm::Gpx ? GpxText(runs, times) : GeoJsonText(runs, times));
}

}  // namespace vantor
