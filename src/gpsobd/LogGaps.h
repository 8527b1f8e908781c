#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gpsobd/LogPoints.h"

namespace vantor {

/// What the seconds inside a gap are taken for.
enum class GapFill {
    Standing,  ///< the vehicle stood, its logger paused
    Position,  ///< driven from one position to the other at one speed
    Speed,     ///< along the line between the speeds beside the gap
};

/// Seconds.
inline constexpr std::int64_t ShortestGap = 3;

/// Two rows of one run, one behind the other, with nothing logged for three seconds or more between them.
struct LogGap {
    std::int16_t RunNumber = 0;
    std::int64_t From = 0;                 ///< the second of the row before it (WholeSecondsOf)
    std::int64_t To = 0;                   ///< the second of the row behind it
    std::optional<double> FeetByPosition;  ///< on the great circle; nothing where a row has no position
    double FeetBySpeed = 0;                ///< at the speeds beside it, interpolated where a row has none
    GapFill Filled = GapFill::Speed;

    std::int64_t Seconds() const { return To - From; }
    bool operator==(const LogGap&) const = default;
};

/// The gaps of a log's runs in order of run and time, whatever the order of the rows, filled as docs/methods.md has it
/// under "Gaps".
std::vector<LogGap> FindGaps(const std::vector<RunPoints>& runs);
std::vector<LogGap> FindGaps(const RunsOfLog& runs);

/// Finds the gaps of points that come one after the other, keeping next to none of them.
class GapSearch {
public:
    /// False for a point that lies before the last one of its run, or has no time to go by: the search is of no use
    /// then, for the run must be brought into the order of the review first.
    bool Add(const RunPoint& point);
    /// The gaps as of FindGaps. No more points can be added.
    std::vector<LogGap> End();

private:
    /// The gaps of a run as far as its points have come.
    struct Run {
        void Add(const RunPoint& point);
        void EndSecond();
        void Measure(const RunPoint* behind);

        std::vector<LogGap> Gaps;
        std::size_t Measured = 0;           ///< gaps whose speeds are known; the others wait for one behind them
        std::optional<RunPoint> Last;       ///< of a second that may go on
        std::optional<RunPoint> Previous;   ///< the last row of the second before
        std::optional<RunPoint> WithSpeed;  ///< that row, or the nearest one before it that has a speed
    };
    friend std::vector<LogGap> FindGaps(const std::vector<RunPoints>& runs);

    std::map<std::int16_t, Run> runs_;
};

/// A gap without positions cannot be filled by position.
bool CanBeFilled(const LogGap& gap, GapFill fill);

/// The gaps of one run among those of all, which are in order.
std::span<const LogGap> GapsOfRun(std::span<const LogGap> gaps, std::int16_t runNumber);

/// The speed in each second inside a gap; nothing where it goes by the speeds beside it.
std::optional<double> MilesPerHourIn(const LogGap& gap);

/// "gaps: 3 standing 424 s, 1 by position 24 s"; empty without gaps.
std::string GapNote(std::span<const LogGap> gaps);

}  // namespace vantor
