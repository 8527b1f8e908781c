#include "plots/forms/ProfileWords.h"

namespace vantor {

namespace {

QString SpeedUnit(const SpeedProfile& profile) { return QLatin1String(profile.Geometry().Units().SpeedLabel()); }

}  // namespace

QString LengthUnitInWords(const ProfileGeometry& geometry) { return QLatin1String(geometry.Units().LengthName()); }

QString NameOf(ProfileLine line) {
    switch (line) {
        case ProfileLine::Start: return QStringLiteral("Start boundary");
        case ProfileLine::End: return QStringLiteral("End boundary");
        case ProfileLine::IdealSpeed: return QStringLiteral("Ideal speed");
        case ProfileLine::None: break;
    }
    return {};
}

QString PlaceInWords(const SpeedProfile& profile, ProfileLine line) {
    const bool isSpeed = line == ProfileLine::IdealSpeed;
    const auto value = isSpeed ? profile.ShownIdealSpeed() : profile.ShownBoundary(line);
    const QString unit = isSpeed ? SpeedUnit(profile) : QString(QLatin1String(profile.Geometry().AxisUnit()));
    return NameOf(line) + (value ? QStringLiteral(": %1 %2").arg(*value).arg(unit) : QStringLiteral(": not set"));
}

QString PlacesInWords(const SpeedProfile& profile) {
    return QStringLiteral("%1. %2. %3.")
        .arg(PlaceInWords(profile, ProfileLine::Start), PlaceInWords(profile, ProfileLine::End),
             PlaceInWords(profile, ProfileLine::IdealSpeed));
}

QString RangeInWords(const SpeedProfile& profile, ProfileLine boundary) {
    const bool inTime = profile.Axis() == BoundaryAxis::Time;
    return QStringLiteral("The %1 is a whole number of %2 from 0 to %3.%4")
        .arg(NameOf(boundary).toLower(),
             inTime ? QStringLiteral("seconds") : LengthUnitInWords(profile.Geometry()).toLower())
        .arg(profile.LastShownBoundary())
        .arg(inTime ? QString() : QStringLiteral("\n0 stands for a boundary that is not set."));
}

QString BetweenInWords(const SpeedProfile& profile) {
    const auto between = profile.Between();
    if (!between) return {};
    const Units units = profile.Geometry().Units();
    QString text = QStringLiteral("%1 %2, %3 s")
                       .arg(units.WholeLength(between->Feet))
                       .arg(QLatin1String(units.LengthLabel()))
                       .arg(between->Seconds);
    if (const auto speed = between->Speed())
        text += QStringLiteral(", %1 %2").arg(units.WholeSpeed(*speed)).arg(SpeedUnit(profile));
    return text + QStringLiteral(" between the boundaries");
}

QString PointInWords(const SpeedProfile& profile, double x) {
    const ProfileTrace& trace = profile.Trace();
    const ProfileGeometry& geometry = profile.Geometry();
    const std::int32_t sample = trace.SampleAt(geometry.Axis(), geometry.PlaceOf(geometry.AxisValueAt(x)));
    return QStringLiteral("Distance %1 %2    Time %3 s    Speed %4 %5")
        .arg(geometry.Units().WholeLength(trace.DistanceOf(sample)))
        .arg(LengthUnitInWords(geometry))
        .arg(sample)
        .arg(geometry.Units().WholeSpeed(trace.SpeedOf(sample)))
        .arg(SpeedUnit(profile));
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
