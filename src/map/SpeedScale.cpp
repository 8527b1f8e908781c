#include "map/SpeedScale.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/Axis.h"

namespace vantor {
namespace {

/// So many times the usual top, a speed is a fault of the log.
constexpr float FarAbove = 2;

/// The highest of the speeds without the fiftieth part of them; of a few ones all are usual.
float UsualTop(std::vector<float>& mph) {
    constexpr std::size_t Few = 20;
    constexpr std::size_t Part = 50;
    if (mph.empty()) return 0;
    const std::size_t left = mph.size() < Few ? 0 : std::max<std::size_t>(mph.size() / Part, 1);
    const auto top = mph.end() - 1 - static_cast<std::ptrdiff_t>(left);
    std::ranges::nth_element(mph, top);
    return *top;
}

}  // namespace

SpeedScale::SpeedScale(std::vector<float> mph, const Units& units) : units_(units) {
    std::erase_if(mph, [](float speed) { return !std::isfinite(speed) || speed <= 0; });
    const float most = mph.empty() ? 0 : *std::ranges::max_element(mph);
    const float usual = UsualTop(mph);
    hasFarAbove_ = most > FarAbove * usual;
    // The last class reaches up to twice its step.
    constexpr double LeastStep = 5;
    constexpr double MostSpeed = 1e6;
    const double top = std::min<double>(units.SpeedOfMph(hasFarAbove_ ? usual : most), MostSpeed);
    step_ = RoundStep(std::max(LeastStep, top / (NoClass + 1)));
    classes_ = std::clamp(static_cast<int>(std::ceil(top / step_)), 1, NoClass);
}

int SpeedScale::ClassOf(double mph) const {
    if (std::isnan(mph)) return NoClass;
    const double shown = std::max(units_.SpeedOfMph(mph), 0.0);
    return static_cast<int>(std::min(shown / step_, static_cast<double>(classes_ - 1)));
}

std::string SpeedScale::NameOf(int speedClass) const {
    const bool isOpen = hasFarAbove_ && speedClass == classes_ - 1;
    return (isOpen ? "> " : "") + std::to_string(speedClass * step_);
}

Colour SpeedScale::InkOf(int speedClass, const Colours& inks) const {
    if (speedClass >= classes_) return inks.Node;
    const int last = std::max(classes_ - 1, 1);
    return inks.Speeds[static_cast<std::size_t>(speedClass * (NoClass - 1) / last)];
}

double SpeedScale::WidthOf(int speedClass) const {
    constexpr double Broad = 5;
    constexpr double Narrow = 2.5;
    if (speedClass >= classes_) return Narrow;
    return Broad - (Broad - Narrow) * speedClass / std::max(classes_ - 1, 1);
}

}  // namespace vantor
