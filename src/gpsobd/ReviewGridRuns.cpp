#include <algorithm>
#include <limits>
#include <map>
#include <set>

#include "core/RunTimeError.h"
#include "gpsobd/LogPoints.h"
#include "gpsobd/ReviewGrid.h"

namespace vantor {
std::vector<ReviewGrid::PointIndex> ReviewGrid::PointsOfRun(int row, int first, int last) const {
    const std::int16_t run = RunNumber(row);
    std::vector<PointIndex> points;
    for (int other = first; other <= last; ++other)
        if (RunNumber(other) == run) points.push_back(PointOf(other));
    return points;
}

// No gap becomes another one: the rows are all of an end of their run.
int ReviewGrid::StartRunAt(int row) {
    underWay_.Deleted = PointsOfRun(row, 1, row - 1);
    const int count = static_cast<int>(underWay_.Deleted.size());
    TakeOut(underWay_.Deleted);
    ActivateRow(row - count);
    EndStep();
    return count;
}

int ReviewGrid::EndRunAt(int row) {
    underWay_.Deleted = PointsOfRun(row, row + 1, RowCount());
    const int count = static_cast<int>(underWay_.Deleted.size());
    TakeOut(underWay_.Deleted);
    ActivateRow(row);
    EndStep();
    return count;
}

std::int16_t ReviewGrid::SplitRunAt(int row) {
    if (PointsOfRun(row, 1, row - 1).empty()) return 0;
    const std::int16_t run = RunNumber(row);
    const std::int16_t number = FreeRunNumber(run);
    const std::int64_t second = SecondAt(log_, PointOf(row));
    const std::map<GapPlace, GapFill> fills = gapFills_;
    for (const auto& [gap, fill] : fills) {
        const auto& [gapRun, from, to] = gap;
        if (gapRun != run || to <= second) continue;
        ChangeGapFill(gap, std::nullopt);
        ChangeGapFill({number, from, to}, fill);
    }
    underWay_.Moved = PointsOfRun(row, row, RowCount());
    underWay_.MovedFrom = run;
    underWay_.MovedTo = number;
    SetRunNumber(underWay_.Moved, number);
    ActivateRow(row);
    EndStep();
    return number;
}

std::int16_t ReviewGrid::FreeRunNumber(std::int16_t behind) const {
    std::set<std::int16_t> taken;
    for (const PointIndex point : rows_) taken.insert(RunNumberAt(log_, point));
    for (int number = std::max<int>(behind, 0) + 1; number <= std::numeric_limits<std::int16_t>::max(); ++number)
        if (!taken.contains(static_cast<std::int16_t>(number))) return static_cast<std::int16_t>(number);
    throw RunTimeError(ErrorNumber::Overflow, "No run number is left up to 32767.");
}

void ReviewGrid::SetRunNumber(const std::vector<PointIndex>& points, std::int16_t number) {
    for (const PointIndex point : points) {
        const std::int16_t before = RunNumberAt(log_, point);
        // The other half goes along where it told the same.
        if (!log_.Obd.empty() && log_.Obd[point].RunNumber == before) log_.Obd[point].RunNumber = number;
        WithLeadingHalf(log_, point, [&](auto& half) { half.RunNumber = number; });
    }
}

}  // namespace vantor
