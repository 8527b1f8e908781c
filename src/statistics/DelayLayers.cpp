#include "statistics/DelayLayers.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "statistics/Figure.h"

namespace vantor {
namespace {

std::vector<double> DelaysOf(const DelaySeries& series) {
    std::vector<double> delays;
    for (const DelayRun& run : series.Runs()) delays.push_back(run.ControlDelay);
    return delays;
}

}  // namespace

std::vector<int> RunsInOrder(const std::vector<RunListRow>& rows, DelayOrder order) {
    if (order == DelayOrder::AsInStudy) return {};
    std::vector<int> runs(rows.size());
    std::iota(runs.begin(), runs.end(), 1);
    std::ranges::stable_sort(runs, {}, [&](int run) {
        const RunFacts& facts = rows[static_cast<std::size_t>(run - 1)].Facts;
        const double day = order == DelayOrder::AsDriven ? std::floor(facts.RunDate.Days) : 0;
        return std::pair(day, facts.RunTime.Days - std::floor(facts.RunTime.Days));
    });
    return runs;
}

DelayChartLayers DelayLayersOf(const DelaySeries& series, const StatisticsOptions& options,
                               const DelayLayerChoice& choice) {
    DelayChartLayers layers;
    const std::vector<double> delays = DelaysOf(series);
    if (choice.HasInterval) {
        layers.IntervalCaption = ConfidenceText(options.Confidence) + " interval of the average";
        for (const RunningMean& mean : RunningBand(delays, options.Confidence))
            layers.RunningInterval.push_back(
                mean.HalfWidth ? std::optional(PlotRange{mean.Mean - *mean.HalfWidth, mean.Mean + *mean.HalfWidth})
                               : std::nullopt);
    }
    if (choice.HasError) {
        const Summary summary = Summarise(delays, options.Confidence);
        layers.CorridorCaption =
            "Permitted error, \u00B1" + PermittedErrorText(options.Error, Measure::ControlDelay, Units{});
        if (const auto error = ErrorInUnit(options.Error, summary.Mean); error && summary.Mean)
            layers.Corridor = PlotRange{*summary.Mean - *error, *summary.Mean + *error};
    }
    if (choice.HasGrades) {
        char grade = 'A';
        for (const double bound : SignalBounds) layers.Grades.push_back({bound, std::string(1, grade++)});
        layers.Grades.push_back({0, std::string(1, grade)});
    }
    return layers;
}

}  // namespace vantor
