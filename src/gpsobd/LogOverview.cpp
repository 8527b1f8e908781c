#include "gpsobd/LogOverview.h"

#include "gpsobd/LogPoints.h"

namespace vantor {

LogOverview ReadLogOverview(const LogSources& sources, const LogFormat& format, const std::string& path) {
    LogOverview overview;
    GapSearch search;
    bool isInOrder = true;
    const auto look = [&](LogPoint&& point) {
        ++overview.PointCount;
        isInOrder = isInOrder && search.Add(RunPointOf(format, point));
        return true;
    };
    overview.Head = ReadLogPoints(sources, format, path, look);
    overview.Gaps = isInOrder ? search.End() : FindGaps(ReadRunsOfLog(sources, format, path));
    return overview;
}

}  // namespace vantor
