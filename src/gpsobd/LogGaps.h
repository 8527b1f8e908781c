#pragma once

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
std::vector<LogGap> FindGaps(LogKind kind, const std::map<std::int16_t, RunPoints>& runs);
std::vector<LogGap> FindGaps(const FieldLog& reviewed);

/// A gap without positions cannot be filled by position.
bool CanBeFilled(const LogGap& gap, GapFill fill);

/// The gaps of one run among those of all, which are in order.
std::span<const LogGap> GapsOfRun(std::span<const LogGap> gaps, std::int16_t runNumber);

/// The speed in each second inside a gap; nothing where it goes by the speeds beside it.
std::optional<double> MilesPerHourIn(const LogGap& gap);

/// "gaps: 3 standing 424 s, 1 by position 24 s"; empty without gaps.
std::string GapNote(std::span<const LogGap> gaps);

}  // namespace vantor
