#include "analysis/CutRun.h"

#include <cmath>
#include <string>
#include <vector>

#include "core/Date.h"
#include "core/RunDecoding.h"
#include "core/RunTimeError.h"

namespace vantor {
namespace {

constexpr std::int32_t SecondsPerDay = 86400;

std::int32_t NodesIn(const RunRecord& run, std::int32_t first, std::int32_t last) {
    std::int32_t nodes = 0;
    for (std::int32_t i = first; i <= last; ++i) nodes += HasNode(run.SampleValues[i]) ? 1 : 0;
    return nodes;
}

/// Names of the nodes of a run that is cut to samples `first` to `last`: node 0 is its start, then come the flagged
/// samples in order, then its end.
void MoveNames(RunHeader& header, const RunRecord& run, std::int32_t first, std::int32_t last) {
    constexpr int LastName = decltype(RunHeader::SectionName)::LastIndex;
    const std::int32_t dropped = NodesIn(run, 1, first - 1);
    const std::int32_t kept = NodesIn(run, first, last);
    const bool startsAtNode = first == 1 || HasNode(run.SampleValues[first - 1]);
    const bool keepsEnd = last == run.Header.SampleCount;
    for (int node = 0; node <= LastName; ++node) {
        const std::int32_t old = node + dropped;
        const bool stays = (node > 0 || startsAtNode) && (node <= kept || keepsEnd) && old <= LastName;
        header.SectionName[node] = stays ? run.Header.SectionName[old] : std::string();
    }
}

template <class Element>
OneBased<Element> Part(const OneBased<Element>& list, std::int32_t first, std::int32_t last) {
    return OneBased<Element>(std::vector<Element>(list.begin() + (first - 1), list.begin() + last));
}

/// A start time is a time of day; one that has a day before it goes on to the next day, too.
void MoveStart(RunHeader& header, std::int32_t seconds) {
    if (seconds == 0 || !IsValidDate(header.RunTime)) return;
    const CivilTime start = CivilOf(header.RunTime);
    const std::int32_t moved = (start.Hour * 60 + start.Minute) * 60 + start.Second + seconds;
    const std::int32_t daysOn = moved / SecondsPerDay;
    const double day = std::trunc(header.RunTime.Days);
    header.RunTime.Days = day + (day == 0 ? 0 : daysOn) + moved % SecondsPerDay / double{SecondsPerDay};
    header.RunDate.Days += daysOn;
}

}  // namespace

RunRecord CutRun(const RunRecord& run, std::int32_t first, std::int32_t last) {
    const std::int32_t count = run.Header.SampleCount;
    const bool isWhole = run.SampleValues.LastIndex() >= count && run.RunSamples.LastIndex() >= count;
    if (first < 1 || first > last || last > count || !isWhole) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
    RunRecord cut;
    cut.Header = run.Header;
    cut.SampleValues = Part(run.SampleValues, first, last);
    cut.RunSamples = Part(run.RunSamples, first, last);
    cut.Header.SampleCount = last - first + 1;
    MoveStart(cut.Header, first - 1);
    MoveNames(cut.Header, run, first, last);
    DecodeEditedRun(cut);
    return cut;
}

}  // namespace vantor
