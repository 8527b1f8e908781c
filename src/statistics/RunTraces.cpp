#include "statistics/RunTraces.h"

#include "core/Counted.h"
#include "core/RunArithmetic.h"

namespace vantor {
namespace {

/// A value for the start, for each node and for the end.
template <class Value>
std::vector<double> WithEnds(const std::vector<Value>& atNodes, double atEnd) {
    std::vector<double> values{0};
    values.insert(values.end(), atNodes.begin(), atNodes.end());
    values.push_back(atEnd);
    return values;
}

std::vector<double> FeetOf(const MeasuredRun& run) {
    return WithEnds(run.Measures.NodeDistances, run.Measures.Whole.Distance);
}
std::vector<double> SecondsOf(const MeasuredRun& run) {
    return WithEnds(run.Measures.NodeTimes, run.Measures.Whole.TravelTime);
}

}  // namespace

RunTrace TraceOf(const RunRecord& run, float speedFactor) {
    const RunArithmetic arithmetic(run.Header.CalConstant, speedFactor);
    RunTrace trace{{0}, {}};
    for (const std::int16_t value : run.SampleValues) {
        trace.Distances.push_back(trace.Distances.back() + arithmetic.DistanceIncrement(value));
        trace.Speeds.push_back(arithmetic.Speed(value));
    }
    return trace;
}

TracedRuns ReadTracedRuns(const Study& study, const FileSystem& files, const std::string& folder,
                          const AppSettings& settings, const Progress& progress, const RunVisitor& visit,
                          RunPart part) {
    TracedRuns traced;
    std::vector<RunTrace> byEntry(static_cast<std::size_t>(study.Record.RunCount) + 1);
    const auto trace = [&](int entry, const RunReading& reading) {
        if (reading) byEntry[static_cast<std::size_t>(entry)] = TraceOf(reading.Run, settings.SpeedFactor);
        if (visit) visit(entry, reading);
    };
    traced.Read = ReadStudyRuns(study, files, folder, settings, progress, trace, part);
    for (const MeasuredRun& run : traced.Read.Runs)
        traced.Traces.push_back(std::move(byEntry[static_cast<std::size_t>(run.Entry)]));
    return traced;
}

PlottedRuns PlottedRunsAt(const TracedRuns& runs, const std::vector<std::size_t>& indexes) {
    PlottedRuns plotted;
    plotted.reserve(indexes.size());
    for (const std::size_t index : indexes) plotted.push_back({&runs.Read.Runs[index], &runs.Traces[index]});
    return plotted;
}

MeanPlaces MeanPlacesOf(const PlottedRuns& runs) {
    MeanPlaces places;
    if (runs.empty()) return places;
    const std::size_t count = static_cast<std::size_t>(runs.front().Run->Nodes()) + 2;
    places.Feet.assign(count, 0);
    places.Seconds.assign(count, 0);
    for (const PlottedRun& run : runs) {
        const auto feet = FeetOf(*run.Run);
        const auto seconds = SecondsOf(*run.Run);
        for (std::size_t i = 0; i < count; ++i) {
            places.Feet[i] += feet[i] / static_cast<double>(runs.size());
            places.Seconds[i] += seconds[i] / static_cast<double>(runs.size());
        }
    }
    return places;
}

std::vector<double> StretchedDistances(const PlottedRun& run, const MeanPlaces& places) {
    const auto feet = FeetOf(*run.Run);
    const auto seconds = SecondsOf(*run.Run);
    std::vector<double> stretched{0};
    stretched.reserve(run.Trace->Distances.size());
    for (std::size_t place = 1; place < feet.size(); ++place) {
        const double length = feet[place] - feet[place - 1];
        const double factor = length > 0 ? (places.Feet[place] - places.Feet[place - 1]) / length : 0;
        for (auto i = static_cast<std::size_t>(seconds[place - 1]) + 1; i <= static_cast<std::size_t>(seconds[place]);
             ++i)
            stretched.push_back(places.Feet[place - 1] + (run.Trace->Distances[i] - feet[place - 1]) * factor);
    }
    return stretched;
}

std::string RunInWords(const MeasuredRun& run) {
    std::string when = IsValidDate(run.RunDate) ? ShortDate(run.RunDate) + " " : std::string();
    if (IsValidDate(run.RunTime)) when += ShortTime(run.RunTime) + ", ";
    const PieceMeasures& whole = run.Measures.Whole;
    std::string text = run.Name + "\n" + when + (run.IsBefore ? "before" : "after");
    if (!run.Period.empty()) text += ", " + run.Period;
    text += "\n" + std::to_string(whole.TravelTime) + " s, " + std::to_string(whole.StoppedTime) + " s stopped, " +
            Counted(whole.Stops, "stop");
    if (!run.SetAside.empty()) text += "\nset aside: " + run.SetAside;
    return text;
}

}  // namespace vantor
