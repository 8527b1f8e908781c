#pragma once

#include "core/StudyOptions.h"
#include "plots/DelayChart.h"

namespace vantor {

/// What the user wants to see under the control delay chart.
struct DelayLayerChoice {
    bool HasInterval = false;
    bool HasError = false;
    bool HasGrades = false;
};

/// In what order the chart draws the runs.
enum class DelayOrder { AsInStudy, AsDriven, ByTimeOfDay };
/// The runs (from 1) of a study's run list in that order; none for the study's own.
std::vector<int> RunsInOrder(const std::vector<RunListRow>& rows, DelayOrder order);

/// The interval of the average after each run of the series, in its order; what the mean of all of them may err by; the
/// grades of the study.
DelayChartLayers DelayLayersOf(const DelaySeries& series, const StatisticsOptions& options,
                               const DelayLayerChoice& choice);

}  // namespace vantor
