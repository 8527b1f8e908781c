#pragma once

#include <initializer_list>
#include <string>

#include "core/RunDecoding.h"
#include "core/Settings.h"
#include "editing/ProfileGeometry.h"

namespace vantor {

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

/// 100 s at 50 ft/s, 20 s at rest, 80 s at 50 ft/s: 200 s and 9000 ft.
inline RunRecord RunWithStop() {
    std::vector<int> values(200, 50);
    std::fill(values.begin() + 100, values.begin() + 120, 0);
    return RunOf(std::move(values));
}

/// 10, 20, 30, ... feet a second.
inline RunRecord RisingRun(int samples) {
    std::vector<int> values;
    for (int i = 1; i <= samples; ++i) values.push_back(10 * i);
    return RunOf(std::move(values));
}

inline AppSettings EnglishSettings() {
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
    return settings;
}

/// 1000 pixels wide and 400 high: 100 pixels a scale step.
inline constexpr PlotRectangle RoundArea{50, 40, 1050, 440};

}  // namespace vantor
