#include "gpsobd/LogGaps.h"

#include <algorithm>
#include <array>
#include "core/Position.h"
#include "core/Units.h"

namespace vantor {
namespace {

constexpr double FarthestStanding = 100;      // feet
constexpr double FastestBesideStanding = 15;  // mph

/// The feet driven in a gap when the speed follows the line between the nearest seconds that have one, `before` at its
/// first second or earlier, `behind` at its last or later.
double FeetAtSpeeds(const LogGap& gap, const RunPoint* before, const RunPoint* behind) {
    if (before == nullptr) before = behind;
    if (behind == nullptr) behind = before;
    if (before == nullptr) return 0;
    const double first = static_cast<double>(before->Speed);
    const double last = static_cast<double>(behind->Speed);
    const auto speedAt = [&](std::int64_t second) {
        if (behind->Second == before->Second) return first;
        const double part =
            static_cast<double>(second - before->Second) / static_cast<double>(behind->Second - before->Second);
        return first + (last - first) * part;
    };
    const double mean = std::max(0.0, (speedAt(gap.From) + speedAt(gap.To)) / 2);
    return mean * FeetPerSecondOfMph * static_cast<double>(gap.Seconds());
}

GapFill FillOf(const LogGap& gap, const RunPoint& from, const RunPoint& to) {
    if (!gap.FeetByPosition) return GapFill::Speed;
    const auto isSlow = [](const RunPoint& point) {
        return HasSpeed(point) && static_cast<double>(point.Speed) < FastestBesideStanding;
    };
    const bool stands = *gap.FeetByPosition < FarthestStanding && (isSlow(from) || isSlow(to));
    return stands ? GapFill::Standing : GapFill::Position;
}

const RunPoint* PointIn(const std::optional<RunPoint>& point) { return point ? &*point : nullptr; }

}  // namespace

void GapSearch::Run::Add(const RunPoint& point) {
    if (Last && Last->Second != point.Second) EndSecond();
    Last = point;
}

void GapSearch::Run::EndSecond() {
    if (!Last) return;
    if (Previous && Last->Second - Previous->Second >= ShortestGap) {
        LogGap gap{Last->RunNumber, Previous->Second, Last->Second, {}, 0, GapFill::Speed};
        const auto from = PositionOf(*Previous);
        const auto to = PositionOf(*Last);
        if (from && to) gap.FeetByPosition = FeetBetween(*from, *to);
        gap.Filled = FillOf(gap, *Previous, *Last);
        Gaps.push_back(gap);
    }
    if (HasSpeed(*Last)) {
        Measure(&*Last);
        WithSpeed = Last;
    }
    Previous = Last;
}

void GapSearch::Run::Measure(const RunPoint* behind) {
    for (; Measured < Gaps.size(); ++Measured)
        Gaps[Measured].FeetBySpeed = FeetAtSpeeds(Gaps[Measured], PointIn(WithSpeed), behind);
}

bool GapSearch::Add(const RunPoint& point) {
    Run& run = runs_[point.RunNumber];
    if (!HasTime(point.Second) || (run.Last && point.Second < run.Last->Second)) return false;
    run.Add(point);
    return true;
}

std::vector<LogGap> GapSearch::End() {
    std::vector<LogGap> gaps;
    for (auto& [number, run] : runs_) {
        run.EndSecond();
        run.Measure(nullptr);
        if (number >= 1) gaps.insert(gaps.end(), run.Gaps.begin(), run.Gaps.end());
    }
    return gaps;
}

std::vector<LogGap> FindGaps(const std::vector<RunPoints>& runs) {
    std::vector<LogGap> gaps;
    for (const RunPoints& points : runs) {
        GapSearch::Run run;
        const auto addAll = [&](std::span<const RunPoint> inOrder) {
            for (const RunPoint& point : inOrder) run.Add(point);
        };
        if (std::ranges::is_sorted(points, {}, &RunPoint::Second)) {
            addAll(points);
        } else {
            std::vector<RunPoint> sorted(points.begin(), points.end());
            std::ranges::stable_sort(sorted, {}, &RunPoint::Second);
            addAll(sorted);
        }
        run.EndSecond();
        run.Measure(nullptr);
        gaps.insert(gaps.end(), run.Gaps.begin(), run.Gaps.end());
    }
    return gaps;
}

std::vector<LogGap> FindGaps(const RunsOfLog& runs) { return FindGaps(RunsAmong(runs.Points)); }

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
