#include "tracks/TrackSeconds.h"

#include <algorithm>
#include <cmath>

#include "core/Units.h"
#include "tracks/TrackSpeeds.h"

namespace vantor {
namespace {

constexpr double ShortestInterval = 2;

bool IsInterval(const TrackPoint& from, const TrackPoint& to, double interval) {
    const double seconds = *to.Time - *from.Time;
    return from.Segment == to.Segment && seconds > 1 && seconds <= 1.5 * interval;
}

/// Miles an hour over the way from one point to the next; nothing without positions.
std::optional<double> MeanSpeed(const TrackPoint& from, const TrackPoint& to) {
    if (!from.Position || !to.Position) return std::nullopt;
    return FeetBetween(*from.Position, *to.Position) / (*to.Time - *from.Time) / FeetPerSecondOfMph;
}

TrackPosition Between(const TrackPosition& from, const TrackPosition& to, double share) {
    const double east = std::remainder(to.Longitude - from.Longitude, 360);
    return {from.Latitude + (to.Latitude - from.Latitude) * share, std::remainder(from.Longitude + east * share, 360)};
}

/// The speeds at the points themselves. One from positions is the mean of the way before it: where neither that nor the
/// way behind it is one of standing, the vehicle passes the point at about the mean of both.
std::vector<double> SpeedsAt(std::span<const TrackPoint> points, std::span<const TrackPoint> told) {
    std::vector<double> speeds;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double before = points[i].Speed.value_or(0);
        const bool isLast = i + 1 == points.size() || points[i + 1].Segment != points[i].Segment;
        const double behind = isLast ? before : points[i + 1].Speed.value_or(0);
        const bool stands = before == 0 || behind == 0;
        speeds.push_back(told[i].Speed ? before : stands ? 0 : (before + behind) / 2);
    }
    return speeds;
}

/// The seconds from one point to the next, the next one included.
void AddSeconds(const TrackPoint& from, const TrackPoint& to, double begin, double end,
                std::vector<TrackPoint>& seconds) {
    constexpr double FarthestStanding = 100;  // feet
    const double count = *to.Time - *from.Time;
    const std::size_t first = seconds.size();
    double sum = 0;
    for (double second = 1; second <= count; ++second) {
        TrackPoint point = second == count ? to : TrackPoint();
        point.Time = *from.Time + second;
        point.Segment = to.Segment;
        point.Speed = begin + (end - begin) * (second - 0.5) / count;
        if (from.Position && to.Position) point.Position = Between(*from.Position, *to.Position, second / count);
        sum += *point.Speed;
        seconds.push_back(point);
    }
    const auto mean = MeanSpeed(from, to);
    // A receiver that stands wanders; a vehicle that stopped at both ends has driven the rest.
    const bool stood = to.Speed.value_or(0) == 0 && (!mean || *mean * FeetPerSecondOfMph * count < FarthestStanding);
    if (!mean || (sum == 0 && stood)) return;
    for (std::size_t i = first; i < seconds.size(); ++i)
        seconds[i].Speed = sum > 0 ? *seconds[i].Speed * *mean * count / sum : *mean;
}

}  // namespace

double IntervalOf(std::span<const TrackPoint> points) {
    std::vector<double> steps;
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i].Segment == points[i - 1].Segment) steps.push_back(*points[i].Time - *points[i - 1].Time);
    if (steps.empty()) return 0;
    const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::ranges::nth_element(steps, middle);
    return *middle >= ShortestInterval && *middle <= LongestInterval ? *middle : 0;
}

std::vector<TrackPoint> WithSecondsBetween(std::span<const TrackPoint> points, std::span<const TrackPoint> told) {
    const double interval = IntervalOf(points);
    if (interval == 0) return {points.begin(), points.end()};
    const std::vector<double> speeds = SpeedsAt(points, told);
    std::vector<TrackPoint> seconds = {points.front()};
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (IsInterval(points[i - 1], points[i], interval))
            AddSeconds(points[i - 1], points[i], speeds[i - 1], speeds[i], seconds);
        else
            seconds.push_back(points[i]);
    }
    return seconds;
}

}  // namespace vantor
