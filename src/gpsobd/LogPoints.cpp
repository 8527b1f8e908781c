#include "gpsobd/LogPoints.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr std::int64_t SecondsPerDay = 86400;
constexpr float MissingSpeed = -1;

/// Where a point stands in the order of the review.
struct Place {
    std::int64_t Seconds = 0;
    std::uint32_t InFile = 0;
    std::int16_t RunNumber = 0;
};

template <class PlaceOf>
std::vector<Place> SortedPlaces(std::size_t count, PlaceOf placeOf) {
    std::vector<Place> places;
    places.reserve(count);
    for (std::size_t i = 0; i < count; ++i) places.push_back(placeOf(i));
    std::ranges::sort(places, {},
                      [](const Place& place) { return std::tuple(place.Seconds, place.RunNumber, place.InFile); });
    return places;
}

/// Gives places without a time one from their own run: a second after the place before them, or as many seconds before
/// its first timed place as they stand before it. Returns, in order, those of runs without any time.
std::vector<std::size_t> FillTimesWithinRuns(std::vector<Place>& places) {
    struct Run {
        const Place* Last = nullptr;
        std::vector<std::size_t> Waiting;
    };
    std::map<std::int16_t, Run> runs;
    for (std::size_t i = 0; i < places.size(); ++i) {
        Place& place = places[i];
        Run& run = runs[place.RunNumber];
        if (!HasTime(place.Seconds) && run.Last == nullptr) {
            run.Waiting.push_back(i);
            continue;
        }
        if (!HasTime(place.Seconds)) place.Seconds = run.Last->Seconds + 1;
        std::int64_t earlier = place.Seconds;
        while (!run.Waiting.empty()) {
            places[run.Waiting.back()].Seconds = --earlier;
            run.Waiting.pop_back();
        }
        run.Last = &place;
    }
    std::vector<std::size_t> untimed;
    for (const auto& [number, run] : runs) untimed.insert(untimed.end(), run.Waiting.begin(), run.Waiting.end());
    std::ranges::sort(untimed);
    return untimed;
}

/// False where no place has a time to go by.
bool FillTimes(std::vector<Place>& places) {
    const auto timed = std::ranges::find_if(places, [](const Place& place) { return HasTime(place.Seconds); });
    if (timed == places.end()) return false;
    const auto firstTimed = static_cast<std::size_t>(timed - places.begin());
    const std::int64_t firstTime = timed->Seconds;
    // A run without any time goes by the places around it, whatever their run.
    for (const std::size_t i : FillTimesWithinRuns(places))
        places[i].Seconds =
            i < firstTimed ? firstTime - static_cast<std::int64_t>(firstTimed - i) : places[i - 1].Seconds + 1;
    return true;
}

/// Puts the value that each place names into that place.
template <class Value>
void Rearrange(std::vector<Value>& values, const std::vector<Place>& places) {
    std::vector<bool> isPlaced(values.size());
    for (std::size_t first = 0; first < values.size(); ++first) {
        if (isPlaced[first] || places[first].InFile == first) continue;
        Value begun = std::move(values[first]);
        for (std::size_t to = first;;) {
            isPlaced[to] = true;
            const std::size_t from = places[to].InFile;
            if (from == first) {
                values[to] = std::move(begun);
                break;
            }
            values[to] = std::move(values[from]);
            to = from;
        }
    }
}

/// Points in the order of the file.
void ArrangeByRun(std::vector<RunPoint>& points) {
    std::vector<Place> places = SortedPlaces(points.size(), [&](std::size_t i) {
        return Place{points[i].Second, static_cast<std::uint32_t>(i), points[i].RunNumber};
    });
    if (FillTimes(places))
        for (const Place& place : places) points[place.InFile].Second = WholeSecondsOf(DateOfSeconds(place.Seconds));
    const auto isOfEarlierRun = [](const Place& left, const Place& right) { return left.RunNumber < right.RunNumber; };
    if (!std::ranges::is_sorted(places, isOfEarlierRun)) std::ranges::stable_sort(places, isOfEarlierRun);
    Rearrange(points, places);
}

}  // namespace

RunPoint RunPointOf(const GpsPoint* gps, const ObdPoint* obd) {
    RunPoint point;
    const auto takeLeading = [&](const auto& half) {
        point.Second = WholeSecondsOf(half.DateTime);
        point.Speed = half.Speed;
        point.RunNumber = half.RunNumber;
        point.Node = half.Node;
        point.DelayNumber = half.DelayNumber;
        point.Direction = half.Direction;
    };
    if (gps == nullptr) {
        takeLeading(*obd);
        return point;
    }
    takeLeading(*gps);
    point.Latitude = gps->Latitude;
    point.Longitude = gps->Longitude;
    point.Heading = gps->Heading;
    point.HDOP = gps->HDOP;
    point.FixQuality = gps->FixQuality;
    point.SatUsed = gps->SatUsed;
    if (obd != nullptr && obd->Speed != MissingSpeed) point.Speed = obd->Speed;
    return point;
}

RunPoint RunPointOf(const LogFormat& format, const LogPoint& point) {
    return RunPointOf(format.HasGps ? &point.Gps : nullptr, format.HasObd ? &point.Obd : nullptr);
}

RunPoint RunPointAt(const FieldLog& log, std::size_t index) {
    return RunPointOf(log.Format->HasGps ? &log.Gps[index] : nullptr, log.Format->HasObd ? &log.Obd[index] : nullptr);
}

bool HasSpeed(const RunPoint& point) { return point.Speed != MissingSpeed && std::isfinite(point.Speed); }

std::optional<Position> PositionOf(const RunPoint& point) { return PositionFrom(point.Latitude, point.Longitude); }

std::int16_t RunNumberAt(const FieldLog& log, std::size_t index) {
    return WithLeadingHalf(log, index, [](const auto& half) { return half.RunNumber; });
}

std::int64_t SecondAt(const FieldLog& log, std::size_t index) {
    return WithLeadingHalf(log, index, [](const auto& half) { return WholeSecondsOf(half.DateTime); });
}

RunsOfLog RunsOf(const FieldLog& reviewed) {
    RunsOfLog runs{reviewed.Head(), {}};
    runs.Points.reserve(reviewed.PointCount());
    for (std::size_t i = 0; i < reviewed.PointCount(); ++i) runs.Points.push_back(RunPointAt(reviewed, i));
    SortByRun(runs.Points);
    return runs;
}

RunsOfLog ReadRunsOfLog(const LogSources& sources, const LogFormat& format, const std::string& path,
                        const Progress& progress) {
    RunsOfLog runs;
    const auto keep = [&](LogPoint&& point) {
        runs.Points.push_back(RunPointOf(format, point));
        return true;
    };
    runs.Head = ReadLogPoints(sources, format, path, keep, progress);
    ArrangeByRun(runs.Points);
    return runs;
}

void SortByRun(std::vector<RunPoint>& points) {
    if (!std::ranges::is_sorted(points, {}, &RunPoint::RunNumber))
        std::ranges::stable_sort(points, {}, &RunPoint::RunNumber);
}

std::vector<RunPoints> RunsAmong(std::span<const RunPoint> points) {
    std::vector<RunPoints> runs;
    auto first = std::ranges::lower_bound(points, 1, {}, &RunPoint::RunNumber);
    while (first != points.end()) {
        const auto end = std::ranges::upper_bound(first, points.end(), first->RunNumber, {}, &RunPoint::RunNumber);
        runs.emplace_back(first, end);
        first = end;
    }
    return runs;
}

std::int64_t WholeSecondsOf(Date date) {
    if (!IsValidDate(date)) return 0;
    // Before day 0 the fraction still counts forward from midnight.
    const double day = std::trunc(date.Days);
    return static_cast<std::int64_t>(day) * SecondsPerDay +
           Round32(std::fabs(date.Days - day) * static_cast<double>(SecondsPerDay));
}

Date DateOfSeconds(std::int64_t seconds) {
    std::int64_t day = seconds / SecondsPerDay;
    if (seconds % SecondsPerDay < 0) --day;
    const double time = static_cast<double>(seconds - day * SecondsPerDay) / static_cast<double>(SecondsPerDay);
    return {day < 0 ? static_cast<double>(day) - time : static_cast<double>(day) + time};
}

bool HasTime(std::int64_t second) { return second % SecondsPerDay != 0; }

void ArrangeForReview(FieldLog& log) {
    if (std::exchange(log.IsArranged, true)) return;
    std::vector<Place> places = SortedPlaces(log.PointCount(), [&](std::size_t i) {
        return Place{SecondAt(log, i), static_cast<std::uint32_t>(i), RunNumberAt(log, i)};
    });
    if (FillTimes(places))
        for (const Place& place : places)
            WithLeadingHalf(log, place.InFile, [&](auto& half) { half.DateTime = DateOfSeconds(place.Seconds); });
    if (!log.Gps.empty()) Rearrange(log.Gps, places);
    if (!log.Obd.empty()) Rearrange(log.Obd, places);
}

}  // namespace vantor
