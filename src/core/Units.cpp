#include "core/Units.h"

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr double FeetPerMetre = FeetPerMile / (1000 * KilometresPerMile);

}  // namespace

double Units::LengthOfFeet(double feet) const { return Metric ? feet / FeetPerMetre : feet; }
double Units::FeetOfLength(double length) const { return Metric ? length * FeetPerMetre : length; }
double Units::SpeedOfMph(double mph) const { return Metric ? mph * KilometresPerMile : mph; }
double Units::MphOfSpeed(double speed) const { return Metric ? speed / KilometresPerMile : speed; }

std::int32_t Units::WholeLength(double feet) const { return Round32(LengthOfFeet(feet)); }
std::int32_t Units::WholeSpeed(double mph) const { return Round32(SpeedOfMph(Round32(mph))); }

std::string Units::LengthText(double feet) const { return std::to_string(WholeLength(feet)) + " " + LengthLabel(); }
std::string Units::SpeedText(double mph) const { return std::to_string(WholeSpeed(mph)) + " " + SpeedLabel(); }

std::string Units::MphBoxLabel(double mph) const { return Metric ? "MPH = " + SpeedText(mph) : "MPH"; }

std::string Units::LengthTitle() const {
    const Units titles{Metric != TitlesAreOld};
    return std::string("(") + titles.LengthLabel() + ")";
}

std::string Units::LengthCell(double feet) const {
    return TitlesAreOld ? LengthText(feet) : std::to_string(WholeLength(feet));
}

Units UnitsOf(const AppSettings& settings) { return {settings.MetricUnits != 0}; }

Units UnitsOf(const ApplicationState& state) {
    Units units = UnitsOf(state.Settings);
    units.TitlesAreOld = !state.LengthUnitLabel.empty() && state.LengthUnitLabel != units.LengthLabel();
    return units;
}

}  // namespace vantor
