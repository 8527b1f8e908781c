#pragma once

#include <string>
#include <vector>

#include "statistics/StudyRuns.h"

namespace vantor {

/// The way of a run, second by second.
struct RunTrace {
    std::vector<double> Distances;  ///< feet at the end of each second, after 0 at the start
    std::vector<float> Speeds;      ///< mph in each second
};

/// The runs of a study with their traces, each file read once.
struct TracedRuns {
    StudyRuns Read;
    std::vector<RunTrace> Traces;  ///< of Read.Runs, in their order
};
TracedRuns ReadTracedRuns(const Study& study, const FileSystem& files, const std::string& folder,
                          const AppSettings& settings, const Progress& progress = {}, const RunVisitor& visit = {},
                          RunPart part = RunPart::Values);
RunTrace TraceOf(const RunRecord& run, float speedFactor);

/// A run as a plot over several runs takes it.
struct PlottedRun {
    const MeasuredRun* Run = nullptr;
    const RunTrace* Trace = nullptr;
};
using PlottedRuns = std::vector<PlottedRun>;
/// Those at some indexes; they must outlive it.
PlottedRuns PlottedRunsAt(const TracedRuns& runs, const std::vector<std::size_t>& indexes);

/// Where runs with the same number of nodes have their start, their nodes and their end on the average.
struct MeanPlaces {
    std::vector<double> Feet;
    std::vector<double> Seconds;  ///< from the start
};
MeanPlaces MeanPlacesOf(const PlottedRuns& runs);

/// Each run measures the road a little differently: its distances, stretched from node to node so that its nodes lie at
/// the mean places. A section without length stays at its beginning.
std::vector<double> StretchedDistances(const PlottedRun& run, const MeanPlaces& places);

/// What a plot tells of a run: its name, when it was driven, its travel time and its stops.
std::string RunInWords(const MeasuredRun& run);

}  // namespace vantor
