#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/Csv.h"
#include "core/IndexedArray.h"
#include "core/StudyRecords.h"
#include "core/ports/Canvas.h"
#include "core/ports/DocumentWriter.h"
#include "plots/Plot.h"

namespace vantor {

struct DelayRun {
    std::string Name;
    int Number = 0;                 ///< in the study, from 1
    std::int16_t ControlDelay = 0;  ///< seconds
    double RunningAverage = 0;      ///< of the control delays of this run and those before it, seconds
    bool IsCounted = true;          ///< in the study's average
};

enum class DelayRuns { All, Counted };

/// The control delays of a study's runs, in its order, with their running average.
class DelaySeries {
public:
    DelaySeries() = default;
    /// `rows` are those of the study's run list; `order` has the runs (from 1) in theirs, none for the study's own.
    DelaySeries(const Study& study, const std::vector<RunListRow>& rows, DelayRuns shown,
                const std::vector<int>& order = {});
    /// Overflow (error 6) for a delay outside 16 bits or a sum outside 32.
    void Append(DelayRun run, std::int32_t controlDelay);

    /// True when a run is shown that is not counted.
    bool ShowsNotCounted() const;

    /// Runs from 1.
    const OneBased<DelayRun>& Runs() const { return runs_; }
    int RunCount() const { return runs_.LastIndex(); }
    /// The top of the delay axis: the next multiple of 10 seconds above the highest delay and above 0.
    std::int16_t YMax() const;
    /// The bottom of the range of delays: the multiple of 10 seconds at or below the lowest delay and 0. The axis
    /// begins at 0 all the same.
    std::int16_t YMin() const;

private:
    OneBased<DelayRun> runs_;
    std::int32_t sum_ = 0;
    std::int16_t highest_ = 0;
    std::int16_t lowest_ = 0;
};

/// The plot area in the units of its canvas; Bottom is where a delay of 0 lies.
struct DelayPlotEdges {
    std::int16_t Left = 0;
    std::int16_t Right = 0;
    std::int16_t Bottom = 0;
    std::int16_t Top = 0;
};

/// Where a series lies in a plot area. Positions are whole units; one outside 16 bits is Overflow (error 6).
class DelayScale {
public:
    DelayScale(const DelayPlotEdges& edges, const DelaySeries& series);

    /// Ten steps lead from 0 to the top of the axis.
    static constexpr int AxisSteps = 10;

    const DelayPlotEdges& Edges() const { return edges_; }
    float XStep() const { return xStep_; }                   ///< from run to run; a free step is left at each end
    float YScale() const { return yScale_; }                 ///< units to the second
    int ValueStep() const { return valueStep_; }             ///< of the axis, seconds
    std::int16_t WindowStep() const { return windowStep_; }  ///< of the axis, units

    std::int16_t XOf(int run) const;
    /// Of an average, wherever it lies.
    std::int16_t YOfAverage(double seconds) const;
    /// Of a run's delay; one below 0 lies on the baseline.
    std::int16_t YOfDelay(std::int16_t seconds) const;

private:
    DelayPlotEdges edges_;
    float xStep_;
    float yScale_;
    int valueStep_;
    std::int16_t windowStep_;
};

/// What may be drawn under a chart's delays, in seconds. It changes nothing of the scale; what lies beyond is cut off.
struct DelayChartLayers {
    /// Of the average after each shown run, run 1 first; nothing where it is not known yet.
    std::vector<std::optional<PlotRange>> RunningInterval;
    std::string IntervalCaption = "Interval of the average";
    std::optional<PlotRange> Corridor;  ///< within the permitted error of the average
    std::string CorridorCaption = "Permitted error";
    std::vector<PlotLayers::Layer> Grades;

    bool HasLegend() const { return !RunningInterval.empty() || Corridor.has_value(); }
};

/// How a chart is drawn; lengths in the units of its canvas.
struct DelayChartStyle {
    Colours Inks = LightColours;
    double TextSize = 9;
    std::string Title;  ///< above the chart; none where it is empty
    bool HasLegend = true;
    DelayChartLayers Layers = {};
};

/// The plot area of a chart that fills a box. The box must lie within 16 bits.
DelayPlotEdges DelayPlotEdgesOf(const TextMeasure& measure, const CanvasBox& box, const DelaySeries& series,
                                const DelayChartStyle& style);

/// Draws the chart into a box, runs that are not counted with a grey ring: on a window, in a picture, on a page. Errors
/// as of DelayScale, before anything is drawn.
void DrawDelayChart(Canvas& canvas, const CanvasBox& box, const DelaySeries& series, const DelayChartStyle& style);

/// The chart as a plot of its runs, which are its items, in the series' order. Shown whole it is drawn as
/// DrawDelayChart draws it.
Plot DelayPlot(const DelaySeries& series, const std::string& title, const DelayChartLayers& layers = {});

enum class DelayLegend { Average, Data, NotCounted };
PlotSample SampleOf(DelayLegend entry);

/// A run's number, name and values in one line.
std::string DelaysInWords(const DelaySeries& series, int run);

/// The values as a table: heads, then a row for each run.
std::vector<SheetRow> DelaySheet(const DelaySeries& series);

/// A title for charts that stand outside the program.
std::string DelayChartTitle(const Study& study);

inline constexpr CanvasSize DelayPictureSize = {720, 450};
/// The chart as a picture file of that size, in light colours.
std::vector<std::byte> DelayChartPicture(const DocumentWriter& documents, const DelaySeries& series,
                                         const std::string& title, PictureFormat format,
                                         const DelayChartLayers& layers = {});
/// The scale that the picture is drawn with.
DelayScale DelayPictureScale(const DocumentWriter& documents, const DelaySeries& series, const std::string& title);

}  // namespace vantor
