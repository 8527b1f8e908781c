#include "editing/TrimRun.h"

#include <algorithm>

#include "core/RunArithmetic.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"

namespace vantor {
namespace {

constexpr double SecondsPerDay = 86400;

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

std::int32_t FirstKept(const PlotState& plot) { return std::max(plot.CDStartSample, 1); }

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
    cut.Header.RunTime.Days += (first - 1) / SecondsPerDay;
    MoveNames(cut.Header, run, first, last);
    DecodeEditedRun(cut);
    return cut;
}

std::string TrimProblem(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry) {
    if (!HasBothBoundaries(entry))
        return "A boundary is not set yet.\nDrag both blue lines to where the run shall begin and end, then trim it.";
    const std::int32_t first = FirstKept(plot);
    if (first > plot.CDEndSample)
        return "The end boundary lies before the start boundary, so nothing of the run would be left.\n"
               "Drag the end boundary to the right of the start boundary, then trim the run.";
    if (CutRun(run, first, plot.CDEndSample).Header.RunLength <= 0)
        return "The vehicle does not move between the boundaries, so nothing of the run would be left.\n"
               "Drag the boundaries further apart, then trim the run.";
    return {};
}

void TrimRun(FileSystem& files, const std::string& folder, RunRecord& run, const PlotState& plot,
             StudyRunEntry& entry) {
    RunRecord cut = CutRun(run, FirstKept(plot), plot.CDEndSample);
    const std::string name = RunFileName(entry);
    const auto batch = files.BeginWrites();
    AddBackup(*batch, files, folder, name);
    AddRunFile(*batch, cut, folder, name);
    batch->Commit();

    run = std::move(cut);
    // 0 would stand for a boundary that is not set.
    entry.CDStartDist = std::max(FeetOfPulses(run.Header.CalConstant, PulsesOf(run.SampleValues[1])), 1);
    entry.CDEndDist = run.Header.RunLength;
}

}  // namespace vantor
