#pragma once

#include <initializer_list>
#include <string>

#include "core/RunDecoding.h"
#include "core/Settings.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

constexpr int Node = NodeFlag;

/// A run of these sample values with one foot a pulse, decoded.
inline RunRecord RunOf(std::vector<int> values, std::int16_t calConstant = 1000) {
    RunRecord run;
    run.Header.CalConstant = calConstant;
    run.Header.SampleCount = static_cast<std::int32_t>(values.size());
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    for (const int value : values) run.SampleValues.Append(static_cast<std::int16_t>(value));
    DecodeRunSamples(run);
    return run;
}

inline void Name(RunHeader& header, std::initializer_list<const char*> names) {
    int node = 0;
    for (const char* name : names) header.SectionName[node++] = name;
}

/// The names of the first nodes, parted by "|".
inline std::string NamesOf(const RunHeader& header, int count) {
    std::string names;
    for (int node = 0; node < count; ++node) names += (node == 0 ? "" : "|") + header.SectionName[node];
    return names;
}

inline StudyRunEntry EntryWith(std::int32_t start, std::int32_t end, std::int32_t idealSpeed = 0) {
    StudyRunEntry entry;
    entry.CDStartDist = start;
    entry.CDEndDist = end;
    entry.IdealSpeedUser = idealSpeed;
    return entry;
}
/// Start and end of an entry, in feet.
inline std::pair<std::int32_t, std::int32_t> BoundariesOf(const StudyRunEntry& entry) {
    return {entry.CDStartDist, entry.CDEndDist};
}

/// 100 s at 50 ft/s, 20 s at rest, 80 s at 50 ft/s: 200 s and 9000 ft.
inline RunRecord RunWithStop() {
    std::vector<int> values(200, 50);
    std::fill(values.begin() + 100, values.begin() + 120, 0);
    return RunOf(std::move(values));
}

/// 12 seconds of 10 feet; nodes after 3, 6 and 9, key 12, "Queue", in second 5. Each event record tells its sample.
inline RunRecord RunWithNodes() {
    RunRecord run = RunOf({10, 10, Node | 10, 10, 0x0C00 | 10, Node | 10, 10, 10, Node | 10, 10, 10, 10});
    Name(run.Header, {"Start St", "Ash", "Birch", "Cedar", "End St"});
    for (int i = 1; i <= 12; ++i) run.RunSamples[i].Speed = static_cast<float>(i);
    run.Header.RunDate = DateOf(2008, 3, 14);
    run.Header.RunTime = TimeOf(7, 59, 55);
    run.Header.ButtonLabel[12] = "Queue";
    return run;
}

inline AppSettings EnglishSettings() {
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
    return settings;
}

/// 1000 pixels wide and 400 high: 100 pixels a scale step.
inline constexpr PlotRectangle RoundArea{50, 40, 1050, 440};

}  // namespace vantor
