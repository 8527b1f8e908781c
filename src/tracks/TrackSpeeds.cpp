#include "tracks/TrackSpeeds.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "tracks/TrackSmoothing.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr double EarthMetres = 6371008.8;
constexpr double MetresPerFoot = 0.3048;
constexpr double RadiansPerDegree = std::numbers::pi / 180;

// What standing still looks like; docs/methods.md says why.
constexpr double JitterMetres = 5;
constexpr double ShortestStanding = 4;  // seconds
constexpr double ShortestCore = 2;      // seconds, without its ends
constexpr double FastestDrift = 1;      // metres a second, from end to end
constexpr double FastestWander = 0.25;  // metres a second, from third to third and between two places
constexpr double WidestWander = 3.5;    // metres, from third to third
constexpr double LongestTrim = 3;       // seconds at each end
constexpr double LongestRest = 8;       // seconds beside a trimmed end
constexpr double LeastSpread = 0.5;     // metres
constexpr double LongestLeaps = 30;     // seconds, between two places within the jitter
constexpr double LongestBetween = 3;    // seconds from one place to the next of the same standing

/// A point on a plane that follows the track, in metres.
struct PlanePoint {
    double X = 0;
    double Y = 0;
};

double DistanceOf(PlanePoint from, PlanePoint to) { return std::hypot(to.X - from.X, to.Y - from.Y); }

/// A point of a segment with time and position.
struct Place {
    std::size_t Index = 0;
    double Time = 0;
    TrackPosition Position;
    PlanePoint At;
};

/// Places `First` to `Last` at which the vehicle stood around `Centre`.
struct Standing {
    std::size_t First = 0;
    std::size_t Last = 0;
    PlanePoint Centre;
};

PlanePoint MeanOf(std::span<const Place> places) {
    PlanePoint sum;
    for (const Place& place : places) sum = {sum.X + place.At.X, sum.Y + place.At.Y};
    const auto count = static_cast<double>(places.size());
    return {sum.X / count, sum.Y / count};
}

/// The places from `first` on that lie within the jitter of their mean so far.
std::size_t LastAround(std::span<const Place> places, std::size_t first) {
    PlanePoint mean = places[first].At;
    std::size_t last = first;
    while (last + 1 < places.size() && DistanceOf(mean, places[last + 1].At) <= JitterMetres) {
        ++last;
        const auto count = static_cast<double>(last - first + 1);
        mean.X += (places[last].At.X - mean.X) / count;
        mean.Y += (places[last].At.Y - mean.Y) / count;
    }
    return last;
}

/// Where a receiver stood for a while, and how far its positions spread along an axis.
struct Rest {
    PlanePoint Centre;
    double Spread = LeastSpread;
};

Rest RestOf(std::span<const Place> places) {
    const PlanePoint centre = MeanOf(places);
    double squares = 0;
    for (const Place& place : places) squares += std::pow(DistanceOf(centre, place.At), 2);
    return {centre, std::max(LeastSpread, std::sqrt(squares / static_cast<double>(places.size()) / 2))};
}

/// The places next to those that may be trimmed: over longer times the receiver wanders. Of few places their middle.
Rest RestBeside(std::span<const Place> core, double from, double to) {
    const auto first = std::ranges::lower_bound(core, from, {}, &Place::Time);
    const auto last = std::ranges::upper_bound(core, to, {}, &Place::Time);
    if (last - first >= 3) return RestOf({first, last});
    const std::size_t quarter = core.size() / 4;
    return RestOf(core.subspan(quarter, core.size() - 2 * quarter));
}

bool IsTowards(const Place& place, const Place& outside, const Rest& rest) {
    const double distance = DistanceOf(rest.Centre, outside.At);
    const double along = (place.At.X - rest.Centre.X) * (outside.At.X - rest.Centre.X) +
                         (place.At.Y - rest.Centre.Y) * (outside.At.Y - rest.Centre.Y);
    return distance > 0 && along > rest.Spread * distance;
}

/// Braking and starting lie within the jitter, too: takes the places off an end that lie towards the one outside of it.
void TrimEnds(std::span<const Place> places, Standing& standing) {
    const auto core = places.subspan(standing.First, standing.Last - standing.First + 1);
    const double begin = core.front().Time + LongestTrim;
    const double end = core.back().Time - LongestTrim;
    if (standing.First > 0) {
        const Rest rest = RestBeside(core, begin, begin + LongestRest);
        while (standing.First < standing.Last && places[standing.First + 1].Time <= begin &&
               IsTowards(places[standing.First], places[standing.First - 1], rest))
            ++standing.First;
    }
    if (standing.Last + 1 < places.size()) {
        const Rest rest = RestBeside(core, end - LongestRest, end);
        while (standing.Last > standing.First && places[standing.Last - 1].Time >= end &&
               IsTowards(places[standing.Last], places[standing.Last + 1], rest))
            --standing.Last;
    }
    standing.Centre = MeanOf(places.subspan(standing.First, standing.Last - standing.First + 1));
}

/// False where the vehicle crept on.
bool Stands(std::span<const Place> core) {
    const double seconds = core.back().Time - core.front().Time;
    if (seconds < ShortestCore) return false;
    const std::size_t third = std::max<std::size_t>(core.size() / 3, 1);
    const double wander = DistanceOf(MeanOf(core.first(third)), MeanOf(core.last(third)));
    return wander <= WidestWander || wander / (seconds * 2 / 3) < FastestWander;
}

std::vector<Standing> FindStanding(std::span<const Place> places) {
    std::vector<Standing> found;
    for (std::size_t first = 0; first < places.size();) {
        Standing standing{first, LastAround(places, first), {}};
        const std::size_t last = standing.Last;
        const double seconds = places[last].Time - places[first].Time;
        bool stands =
            seconds >= ShortestStanding && DistanceOf(places[first].At, places[last].At) < FastestDrift * seconds;
        if (stands) {
            TrimEnds(places, standing);
            stands = Stands(places.subspan(standing.First, standing.Last - standing.First + 1));
        }
        if (stands) found.push_back(standing);
        first = stands ? last + 1 : first + std::max<std::size_t>((last - first) / 8, 1);
    }
    return found;
}

/// The position of a receiver wanders over minutes from one place to the next, and leaps to and fro in between.
bool IsSameStanding(std::span<const Place> places, const Standing& standing, const Standing& next) {
    const auto middle = [&](const Standing& of) { return (places[of.First].Time + places[of.Last].Time) / 2; };
    const double distance = DistanceOf(standing.Centre, next.Centre);
    const double seconds = places[next.First].Time - places[standing.Last].Time;
    if (seconds <= LongestBetween && distance < FastestWander * (middle(next) - middle(standing))) return true;
    return seconds <= LongestLeaps && distance <= JitterMetres &&
           std::ranges::all_of(places.subspan(standing.Last, next.First - standing.Last), [&](const Place& place) {
               return DistanceOf(place.At, standing.Centre) <= 2 * JitterMetres;
           });
}

/// Metres from each place to the next; those of standing are 0.
std::vector<double> StepsOf(std::span<const Place> places, const std::vector<Standing>& standings) {
    std::vector<double> steps(places.size(), 0);
    for (std::size_t i = 1; i < places.size(); ++i)
        steps[i] = FeetBetween(places[i - 1].Position, places[i].Position) * MetresPerFoot;
    for (const Standing& standing : standings) {
        // The vehicle comes to the place around which it stands, and leaves from there.
        const auto [first, last, centre] = standing;
        std::fill(steps.begin() + static_cast<std::ptrdiff_t>(first) + 1,
                  steps.begin() + static_cast<std::ptrdiff_t>(last) + 1, 0.0);
        if (first > 0) steps[first] = DistanceOf(places[first - 1].At, centre);
        if (last + 1 < places.size()) steps[last + 1] = DistanceOf(centre, places[last + 1].At);
    }
    for (std::size_t i = 1; i < standings.size(); ++i)
        if (IsSameStanding(places, standings[i - 1], standings[i]))
            std::fill(steps.begin() + static_cast<std::ptrdiff_t>(standings[i - 1].Last) + 1,
                      steps.begin() + static_cast<std::ptrdiff_t>(standings[i].First) + 1, 0.0);
    return steps;
}

/// Stretches of a place a second, between standing or gaps.
void SmoothStretches(std::span<const Place> places, std::span<double> steps) {
    const auto follows = [&](std::size_t i) { return places[i].Time - places[i - 1].Time == 1; };
    for (std::size_t first = 1; first < places.size();) {
        std::size_t end = first;
        while (end < places.size() && follows(end) && steps[end] > 0) ++end;
        const bool standsBefore = first > 1 && follows(first - 1) && steps[first - 1] == 0;
        const bool standsBehind = end < places.size() && follows(end);
        if (end > first) SmoothSteps(steps.subspan(first, end - first), {standsBefore, standsBehind});
        first = std::max(end, first + 1);
    }
}

/// The places of the segment that begins at `first`, which moves behind it.
std::vector<Place> PlacesOf(std::span<const TrackPoint> points, std::size_t& first) {
    std::vector<Place> places;
    const std::int32_t segment = points[first].Segment;
    TrackPosition before;
    for (; first < points.size() && points[first].Segment == segment; ++first) {
        const TrackPoint& point = points[first];
        if (!point.Time || !point.Position) continue;
        PlanePoint at;
        if (!places.empty()) {
            const double degrees = std::remainder(point.Position->Longitude - before.Longitude, 360);
            const double latitude = (point.Position->Latitude + before.Latitude) / 2 * RadiansPerDegree;
            at = places.back().At;
            at.X += degrees * RadiansPerDegree * std::cos(latitude) * EarthMetres;
            at.Y += (point.Position->Latitude - before.Latitude) * RadiansPerDegree * EarthMetres;
        }
        before = *point.Position;
        if (places.empty() || *point.Time > places.back().Time)
            places.push_back({first, *point.Time, *point.Position, at});
    }
    return places;
}

}  // namespace

void WholeSeconds::Add(const TrackPoint& point) {
    if (!point.Time) return;
    const double second = std::floor(*point.Time + 0.5);
    const double distance = std::fabs(*point.Time - second);
    if (points_.empty() || points_.back().Segment != point.Segment || *points_.back().Time != second) {
        points_.push_back(point);
        nearest_ = distance;
        speeds_ = told_ = 0;
    } else if (distance < nearest_) {
        const std::int16_t node = points_.back().Node;
        points_.back() = point;
        if (node != 0) points_.back().Node = node;
        nearest_ = distance;
    } else if (points_.back().Node == 0) {
        points_.back().Node = point.Node;
    }
    speeds_ += point.Speed.value_or(0);
    told_ += point.Speed ? 1 : 0;
    points_.back().Time = second;
    if (told_ > 0) points_.back().Speed = speeds_ / told_;
}

std::vector<TrackPoint> WholeSecondsOf(std::span<const TrackPoint> points) {
    WholeSeconds seconds;
    for (const TrackPoint& point : points) seconds.Add(point);
    return seconds.Take();
}

FilledSpeeds FillSpeeds(std::span<TrackPoint> points) {
    FilledSpeeds filled;
    for (std::size_t next = 0; next < points.size();) {
        const std::vector<Place> places = PlacesOf(points, next);
        std::vector<double> steps = StepsOf(places, FindStanding(places));
        SmoothStretches(places, steps);
        for (std::size_t i = 0; i < places.size() && places.size() > 1; ++i) {
            TrackPoint& point = points[places[i].Index];
            if (point.Speed) continue;
            // The first place has none before it.
            const std::size_t to = std::max<std::size_t>(i, 1);
            point.Speed = steps[to] / (places[to].Time - places[to - 1].Time) * MphOfMetresPerSecond;
            ++filled.FromPositions;
            if (steps[to] == 0) ++filled.Standing;
        }
    }
    for (const TrackPoint& point : points) ++(point.Speed ? filled.Told : filled.None);
    filled.Told -= filled.FromPositions;
    return filled;
}

}  // namespace vantor
