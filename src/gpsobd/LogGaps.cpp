#include "gpsobd/LogGaps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include "core/Units.h"

namespace vantor {
namespace {

constexpr double FarthestStanding = 100;            // feet
constexpr double FastestBesideStanding = 15;        // mph
constexpr double EarthRadius = 6371008.8 / 0.3048;  // mean radius, feet

/// What is known of a second that has rows.
struct Moment {
    std::int64_t Second = 0;
    const LogPoint* Last = nullptr;
    std::optional<double> Speed;
};

std::vector<Moment> MomentsOf(LogKind kind, const RunPoints& points) {
    std::vector<Moment> moments;
    moments.reserve(points.size());
    for (const LogPoint* point : points) moments.push_back({SecondsOf(kind, *point), point, LoggedSpeed(kind, *point)});
    const auto isEarlier = [](const Moment& left, const Moment& right) { return left.Second < right.Second; };
    if (!std::ranges::is_sorted(moments, isEarlier)) std::ranges::stable_sort(moments, isEarlier);
    // The last row of a second stays.
    const auto kept = std::unique(moments.rbegin(), moments.rend(),
                                  [](const Moment& left, const Moment& right) { return left.Second == right.Second; });
    moments.erase(moments.begin(), kept.base());
    return moments;
}

/// A receiver without a fix writes -1 or 0, which as degrees and minutes is a sixtieth of a degree at most: no road
/// leads there.
bool HasPosition(const GpsPoint& point) {
    constexpr double noFix = 1.0 / 60 + 1e-9;
    return std::fabs(point.Latitude) <= 90 && std::fabs(point.Longitude) <= 180 && point.Latitude != -1 &&
           point.Longitude != -1 && (std::fabs(point.Latitude) > noFix || std::fabs(point.Longitude) > noFix);
}

/// The haversine formula, which is exact for short distances, too.
double FeetBetween(const GpsPoint& from, const GpsPoint& to) {
    constexpr double radians = std::numbers::pi / 180;
    const double sinLatitude = std::sin((to.Latitude - from.Latitude) * radians / 2);
    const double sinLongitude = std::sin((to.Longitude - from.Longitude) * radians / 2);
    const double half = sinLatitude * sinLatitude + std::cos(from.Latitude * radians) *
                                                        std::cos(to.Latitude * radians) * sinLongitude * sinLongitude;
    return 2 * EarthRadius * std::asin(std::sqrt(std::min(half, 1.0)));
}

/// The feet driven between two moments when the speed follows the line between the nearest seconds that have one,
/// `before` at the first moment or earlier, `behind` at the second or later.
double FeetAtSpeeds(const Moment& from, const Moment& to, const Moment* before, const Moment* behind) {
    if (before == nullptr) before = behind;
    if (behind == nullptr) behind = before;
    if (before == nullptr) return 0;
    const auto speedAt = [&](std::int64_t second) {
        if (behind->Second == before->Second) return *before->Speed;
        const double part =
            static_cast<double>(second - before->Second) / static_cast<double>(behind->Second - before->Second);
        return *before->Speed + (*behind->Speed - *before->Speed) * part;
    };
    const double mean = std::max(0.0, (speedAt(from.Second) + speedAt(to.Second)) / 2);
    return mean * FeetPerSecondOfMph * static_cast<double>(to.Second - from.Second);
}

GapFill FillOf(const LogGap& gap, const Moment& from, const Moment& to) {
    if (!gap.FeetByPosition) return GapFill::Speed;
    const auto isSlow = [](const Moment& moment) { return moment.Speed && *moment.Speed < FastestBesideStanding; };
    const bool stands = *gap.FeetByPosition < FarthestStanding && (isSlow(from) || isSlow(to));
    return stands ? GapFill::Standing : GapFill::Position;
}

void AddGaps(LogKind kind, std::int16_t runNumber, const std::vector<Moment>& moments, std::vector<LogGap>& gaps) {
    const Moment* before = nullptr;  // the last one with a speed
    std::size_t behind = 0;          // the first one with a speed behind the gap
    for (std::size_t i = 0; i + 1 < moments.size(); ++i) {
        const Moment& from = moments[i];
        const Moment& to = moments[i + 1];
        if (from.Speed) before = &from;
        if (to.Second - from.Second < ShortestGap) continue;
        behind = std::max(behind, i + 1);
        while (behind < moments.size() && !moments[behind].Speed) ++behind;
        LogGap gap{runNumber, from.Second, to.Second, {}, 0, GapFill::Speed};
        if (HasGps(kind) && HasPosition(from.Last->Gps) && HasPosition(to.Last->Gps))
            gap.FeetByPosition = FeetBetween(from.Last->Gps, to.Last->Gps);
        gap.FeetBySpeed = FeetAtSpeeds(from, to, before, behind < moments.size() ? &moments[behind] : nullptr);
        gap.Filled = FillOf(gap, from, to);
        gaps.push_back(gap);
    }
}

}  // namespace

std::vector<LogGap> FindGaps(LogKind kind, const std::map<std::int16_t, RunPoints>& runs) {
    std::vector<LogGap> gaps;
    for (const auto& [number, points] : runs) AddGaps(kind, number, MomentsOf(kind, points), gaps);
    return gaps;
}

std::vector<LogGap> FindGaps(const FieldLog& reviewed) { return FindGaps(reviewed.Kind, PointsOfRuns(reviewed)); }

bool CanBeFilled(const LogGap& gap, GapFill fill) { return fill != GapFill::Position || gap.FeetByPosition; }

std::span<const LogGap> GapsOfRun(std::span<const LogGap> gaps, std::int16_t runNumber) {
    const auto first = std::ranges::lower_bound(gaps, runNumber, {}, &LogGap::RunNumber);
    const auto end = std::ranges::upper_bound(gaps, runNumber, {}, &LogGap::RunNumber);
    return {first, end};
}

std::optional<double> MilesPerHourIn(const LogGap& gap) {
    if (gap.Filled == GapFill::Standing) return 0.0;
    if (gap.Filled == GapFill::Speed || !gap.FeetByPosition) return std::nullopt;
    return *gap.FeetByPosition / static_cast<double>(gap.Seconds()) / FeetPerSecondOfMph;
}

std::string GapNote(std::span<const LogGap> gaps) {
    struct Kind {
        GapFill Fill;
        const char* Name;
    };
    constexpr std::array kinds = {Kind{GapFill::Standing, "standing"}, Kind{GapFill::Position, "by position"},
                                  Kind{GapFill::Speed, "by speed"}};
    std::string note;
    for (const Kind& kind : kinds) {
        int count = 0;
        std::int64_t seconds = 0;
        for (const LogGap& gap : gaps)
            if (gap.Filled == kind.Fill) {
                ++count;
                seconds += gap.Seconds();
            }
        if (count == 0) continue;
        note += (note.empty() ? "gaps: " : ", ") + std::to_string(count) + " " + kind.Name + " " +
                std::to_string(seconds) + " s";
    }
    return note;
}

}  // namespace vantor
