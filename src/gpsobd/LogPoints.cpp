#include "gpsobd/LogPoints.h"

#include <algorithm>
#include <cmath>

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr std::int64_t SecondsPerDay = 86400;
constexpr float MissingSpeed = -1;

/// Where a point stands in the order of the review.
struct Place {
    std::int64_t Seconds = 0;
    std::int16_t RunNumber = 0;
    std::size_t InFile = 0;

    bool HasTime() const { return Seconds % SecondsPerDay != 0; }
};

std::vector<Place> SortedPlaces(const FieldLog& log) {
    std::vector<Place> places;
    places.reserve(log.Points.size());
    for (const LogPoint& point : log.Points)
        places.push_back(WithLeadingHalf(log.Kind, point, [&](const auto& half) {
            return Place{WholeSecondsOf(half.DateTime), half.RunNumber, places.size()};
        }));
    std::stable_sort(places.begin(), places.end(), [](const Place& left, const Place& right) {
        return std::pair(left.Seconds, left.RunNumber) < std::pair(right.Seconds, right.RunNumber);
    });
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
        if (!place.HasTime() && run.Last == nullptr) {
            run.Waiting.push_back(i);
            continue;
        }
        if (!place.HasTime()) place.Seconds = run.Last->Seconds + 1;
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
    const auto timed = std::ranges::find_if(places, &Place::HasTime);
    if (timed == places.end()) return false;
    const auto firstTimed = static_cast<std::size_t>(timed - places.begin());
    const std::int64_t firstTime = timed->Seconds;
    // A run without any time goes by the places around it, whatever their run.
    for (const std::size_t i : FillTimesWithinRuns(places))
        places[i].Seconds =
            i < firstTimed ? firstTime - static_cast<std::int64_t>(firstTimed - i) : places[i - 1].Seconds + 1;
    return true;
}

}  // namespace

bool HasGps(LogKind kind) { return kind != LogKind::ObdLaptop && kind != LogKind::ObdHandheld; }

std::int16_t RunNumberOf(LogKind kind, const LogPoint& point) {
    return WithLeadingHalf(kind, point, [](const auto& half) { return half.RunNumber; });
}

std::int64_t SecondsOf(LogKind kind, const LogPoint& point) {
    return WithLeadingHalf(kind, point, [](const auto& half) { return WholeSecondsOf(half.DateTime); });
}

float SpeedOf(LogKind kind, const LogPoint& point) {
    const bool isByVehicle = kind == LogKind::GpsObd ? point.Obd.Speed != MissingSpeed : !HasGps(kind);
    return isByVehicle ? point.Obd.Speed : point.Gps.Speed;
}

std::optional<double> LoggedSpeed(LogKind kind, const LogPoint& point) {
    const float speed = SpeedOf(kind, point);
    if (speed == MissingSpeed || !std::isfinite(speed)) return std::nullopt;
    return static_cast<double>(speed);
}

std::map<std::int16_t, RunPoints> PointsOfRuns(const FieldLog& reviewed) {
    std::map<std::int16_t, RunPoints> runs;
    for (const LogPoint& point : reviewed.Points)
        if (const std::int16_t number = RunNumberOf(reviewed.Kind, point); number >= 1) runs[number].push_back(&point);
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

void ArrangeForReview(FieldLog& log) {
    if (std::exchange(log.IsArranged, true)) return;
    std::vector<Place> places = SortedPlaces(log);
    const bool hasTimes = FillTimes(places);
    std::vector<LogPoint> arranged;
    arranged.reserve(places.size());
    for (const Place& place : places) {
        LogPoint& point = arranged.emplace_back(std::move(log.Points[place.InFile]));
        if (hasTimes)
            WithLeadingHalf(log.Kind, point, [&](auto& half) { half.DateTime = DateOfSeconds(place.Seconds); });
    }
    log.Points = std::move(arranged);
}

}  // namespace vantor
