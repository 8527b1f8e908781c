#include "plots/forms/ProfileWords.h"

namespace vantor {

QString LengthUnitInWords(const ProfileGeometry& geometry) { return QLatin1String(geometry.Units().LengthName()); }

QString AxisUnit(const ProfileGeometry& geometry) {
    return geometry.Axis() == BoundaryAxis::Time ? QStringLiteral("Secs.") : LengthUnitInWords(geometry);
}

QString NameOf(ProfileLine line) {
    switch (line) {
        case ProfileLine::Start: return QStringLiteral("Start boundary");
        case ProfileLine::End: return QStringLiteral("End boundary");
        case ProfileLine::IdealSpeed: return QStringLiteral("Ideal speed");
        case ProfileLine::None: break;
    }
    return {};
}

QString PlaceInWords(const SpeedProfile& profile, ProfileLine line, const ProfileLabels& labels) {
    const bool isSpeed = line == ProfileLine::IdealSpeed;
    const auto value = isSpeed ? profile.ShownIdealSpeed() : profile.ShownBoundary(line);
    const QString unit = isSpeed ? labels.SpeedUnit : AxisUnit(profile.Geometry());
    return NameOf(line) + (value ? QStringLiteral(": %1 %2").arg(*value).arg(unit) : QStringLiteral(": not set"));
}

QString PointInWords(const SpeedProfile& profile, double x, const ProfileLabels& labels) {
    const ProfileTrace& trace = profile.Trace();
    const ProfileGeometry& geometry = profile.Geometry();
    const std::int32_t sample = trace.SampleAt(geometry.Axis(), geometry.PlaceOf(geometry.AxisValueAt(x)));
    return QStringLiteral("Distance %1 %2    Time %3 s    Speed %4 %5")
        .arg(geometry.Units().WholeLength(trace.DistanceOf(sample)))
        .arg(LengthUnitInWords(geometry))
        .arg(sample)
        .arg(geometry.Units().WholeSpeed(trace.SpeedOf(sample)))
        .arg(labels.SpeedUnit);
}

QString NothingToDraw(const ProfileTrace& trace, std::int16_t calConstant) {
    if (trace.HasMovement()) return {};
    if (trace.SampleCount() == 0) return QStringLiteral("This run has no samples, so there is no profile to draw.");
    if (calConstant <= 0)
        return QStringLiteral(
                   "The calibration constant of this run is %1, so its distances cannot be told.\n"
                   "Set it in the run's details, then open the profile again.")
            .arg(calConstant);
    return QStringLiteral("The vehicle does not move in this run, so there is no profile to draw.");
}

}  // namespace vantor
