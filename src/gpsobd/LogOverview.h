#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gpsobd/LogGaps.h"

namespace vantor {

/// What a log holds, without its points.
struct LogOverview {
    LogHead Head;
    std::uint64_t PointCount = 0;  ///< without those outside any run
    std::vector<LogGap> Gaps;
};

/// Holds no points, but of a log whose rows change their times or their order for the review what its runs are made of.
/// Errors as of ReadFieldLog.
LogOverview ReadLogOverview(const LogSources& sources, const LogFormat& format, const std::string& path);

}  // namespace vantor
