#pragma once

#include <algorithm>
#include <cmath>

#include "core/Colours.h"

namespace vantor {

/// Relative luminance and contrast by WCAG 2.1.
inline double Luminance(Colour colour) {
    const auto linear = [](int part) {
        const double value = part / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.Red) + 0.7152 * linear(colour.Green) + 0.0722 * linear(colour.Blue);
}
inline double Contrast(Colour one, Colour other) {
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

}  // namespace vantor
