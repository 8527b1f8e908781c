#pragma once

#include <string>
#include <vector>

#include "core/Colours.h"
#include "core/Units.h"

namespace vantor {

/// The classes of speed that tracks are coloured by, 0 the slowest; the last has no upper end. Their steps are round in
/// the shown unit.
class SpeedScale {
public:
    /// Of a point whose speed is not known.
    static constexpr int NoClass = static_cast<int>(std::tuple_size_v<SpeedInks>);

    SpeedScale() = default;
    /// Of all speeds that are to be drawn, in any order. A few that are far above the others, as a damaged log has
    /// them, do not stretch it.
    SpeedScale(std::vector<float> mph, const Units& units);

    int Classes() const { return classes_; }
    /// A speed that is no number has none.
    int ClassOf(double mph) const;
    /// What a class begins with, in the shown unit; "> 40" for the last where speeds lie far above.
    std::string NameOf(int speedClass) const;
    const Units& Shown() const { return units_; }
    /// The ink of a class; fewer classes than inks are spread over them.
    Colour InkOf(int speedClass, const Colours& inks) const;
    /// Slow ones are broader, so that they are told apart without colour, too.
    double WidthOf(int speedClass) const;

private:
    Units units_;
    int step_ = 10;
    int classes_ = 1;
    bool hasFarAbove_ = false;
};

}  // namespace vantor
