#include "gpsobd/LogPoints.h"

#include <algorithm>
#include <cmath>

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr std::int64_t SecondsPerDay = 86400;

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

/// False where no place has a time to go by.
bool FillTimes(std::vector<Place>& places) {
    const auto firstTimed =
        std::find_if(places.begin(), places.end(), [](const Place& place) { return place.HasTime(); });
    if (firstTimed == places.end()) return false;
    for (auto place = firstTimed; place != places.begin(); --place) std::prev(place)->Seconds = place->Seconds - 1;
    for (auto place = firstTimed + 1; place != places.end(); ++place)
        if (!place->HasTime()) place->Seconds = std::prev(place)->Seconds + 1;
    return true;
}

}  // namespace

bool HasGps(LogKind kind) { return kind != LogKind::ObdLaptop && kind != LogKind::ObdHandheld; }

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
