#pragma once

#include <gmock/gmock.h>

#include <cstdio>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "tracks/CsvReader.h"
#include "tracks/GpxReader.h"
#include "tracks/NmeaReader.h"

namespace vantor {

/// "segment:time latitude longitude v=mph c=course q=fix s=satellites h=HDOP n=node name", what is missing left out.
inline std::string Told(const TrackPoint& point) {
    char text[64];
    std::string told = std::to_string(point.Segment) + ":";
    const auto add = [&](const char* format, double value) {
        std::snprintf(text, sizeof text, format, value);
        told += text;
    };
    if (point.Time) add("%.10g", *point.Time);
    if (point.Position) add(" %.6f", point.Position->Latitude);
    if (point.Position) add(" %.6f", point.Position->Longitude);
    if (point.Speed) add(" v=%.4f", *point.Speed);
    if (point.Course) add(" c=%g", *point.Course);
    if (point.FixQuality) add(" q=%g", *point.FixQuality);
    if (point.Satellites) add(" s=%g", *point.Satellites);
    if (point.HDOP) add(" h=%g", *point.HDOP);
    if (point.Node != 0) add(" n=%g", point.Node);
    return point.Name.empty() ? told : told + " " + std::string(point.Name);
}

/// Reads texts as files of a disk in memory.
struct TrackScene : testing::Test {
    MemoryFileSystem Files;
    FixedClock Zones;
    std::vector<std::string> Points;
    TrackSink Sink = [this](const TrackPoint& point) {
        Points.push_back(Told(point));
        return true;
    };

    TrackSummary Read(const std::string& name, const std::string& text) {
        Points.clear();
        Files.PutText("/f/" + name, text);
        const std::string path = "/f/" + name;
        if (name.ends_with(".gpx")) return ReadGpx(Files, path, Sink);
        if (name.ends_with(".nmea")) return ReadNmea(Files, path, Sink);
        return ReadCsv(Files, Zones, path, PreviewCsv(Files, path).Mapping, Sink);
    }

    /// What came of a broken file: "points, broken from line, further counts", its damage, or the error.
    std::string Outcome(const std::string& name, const std::string& text) {
        try {
            const TrackSummary read = Read(name, text);
            std::string told = std::to_string(read.Points) + " points";
            const auto add = [&](std::uint64_t count, const char* what) {
                if (count != 0) told += ", " + std::to_string(count) + " " + what;
            };
            add(read.WithoutTime, "untimed");
            add(read.Void, "void");
            add(read.OutOfOrder, "late");
            add(read.Duplicates, "twice");
            add(read.Broken, "broken from line");
            if (read.Broken != 0) told += " " + std::to_string(read.FirstBrokenLine) + ": " + read.FirstBrokenReason;
            return read.Damage.empty() ? told : told + ", " + read.Damage;
        } catch (const RunTimeError& error) {
            return error.Place();
        }
    }
};

}  // namespace vantor
