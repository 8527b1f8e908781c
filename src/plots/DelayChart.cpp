#include "plots/DelayChart.h"

#include <algorithm>
#include <cmath>

#include "core/Axis.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr double DotSize = 6;
constexpr double AverageWidth = 2;
/// The averages of the first runs are not settled: the points begin here, the line at the run before.
constexpr int FirstAverage = 3;

constexpr const char* DelayTitle = "Control Delay (s)";

PlotLook LookOf(const DelayChartStyle& style) { return {style.Inks, style.TextSize, style.HasLegend}; }
TextStyle TextOf(const DelayChartStyle& style) { return LookOf(style).Text(); }
TextStyle TitleOf(const DelayChartStyle& style) { return LookOf(style).Title(); }
double Space(const DelayChartStyle& style) { return style.TextSize / 2; }

std::int16_t Tens(double seconds) { return Round16(seconds * 10); }

/// Of the averages that are drawn, and 0.
double LowestAverage(const DelaySeries& series) {
    double lowest = 0;
    if (series.RunCount() >= FirstAverage)
        for (int run = FirstAverage - 1; run <= series.RunCount(); ++run)
            lowest = std::min(lowest, series.Runs()[run].RunningAverage);
    return lowest;
}

/// Averages below 0 need room below the baseline; they get half of the height at most.
double ShareAboveBaseline(const DelaySeries& series) {
    return std::max(series.YMax() / (series.YMax() - LowestAverage(series)), 0.5);
}

CanvasBox AreaOf(const DelayPlotEdges& edges) {
    return {double(edges.Left), double(edges.Top), double(edges.Right - edges.Left), double(edges.Bottom - edges.Top)};
}

/// What lies under the delays has a row of the legend for itself.
double LayersRow(const TextMeasure& measure, const DelayChartStyle& style) {
    return style.HasLegend && style.Layers.HasLegend() ? measure.LineHeight(TextOf(style)) : 0;
}

std::string LastNumber(const DelaySeries& series) {
    return std::to_string(series.RunCount() == 0 ? 0 : series.Runs()[series.RunCount()].Number);
}

PlotSample IntervalSample(const DelayChartLayers& layers) {
    return {.Caption = layers.IntervalCaption, .Ink = &Colours::AveragePoint, .Surface = 0.2};
}

PlotSample CorridorSample(const DelayChartLayers& layers) {
    return {.Caption = layers.CorridorCaption, .Ink = &Colours::IdealSpeed, .Pattern = LinePattern::Dashed};
}

/// Samples with their captions in a row, the first one rightmost. Returns where they begin.
double DrawSamples(Canvas& canvas, const std::vector<PlotSample>& samples, double right, double row,
                   const DelayChartStyle& style) {
    const PlotLook look = LookOf(style);
    for (const PlotSample& sample : samples) {
        const double length = sample.NamedLength(canvas, look, Space(style));
        right -= length;
        sample.DrawNamed(canvas, {right, row, length, canvas.LineHeight(look.Text())}, look, Space(style));
        right -= 3 * Space(style);
    }
    return right;
}

/// What stands around the plot area.
class FrameDrawing {
public:
    FrameDrawing(Canvas& canvas, const CanvasBox& box, const DelaySeries& series, const DelayChartStyle& style)
        : canvas_(canvas),
          box_(box),
          series_(series),
          style_(style),
          colours_(style.Inks),
          scale_(DelayPlotEdgesOf(canvas, box, series, style), series),
          edges_(scale_.Edges()),
          line_(canvas.LineHeight(TextOf(style))),
          space_(Space(style)) {}

    void Draw() {
        canvas_.FillBox(box_, colours_.Base);
        DrawHead();
        DrawDelayAxis();
        DrawRunAxis();
        canvas_.DrawFrame(AreaOf(edges_), {1, colours_.DimText});
    }

private:
    TextStyle Dim(TextSide side) const { return LookOf(style_).Dim(side); }

    void DrawHead() {
        double row = edges_.Top - line_ / 2 - line_;
        double left = box_.X + space_;
        const double right = style_.HasLegend ? DrawLegend(row) : edges_.Right;
        const double width = canvas_.TextWidth(DelayTitle, TextOf(style_));
        canvas_.DrawText({left, row, width, line_}, DelayTitle, TextOf(style_));
        left += width + 2 * space_;
        if (series_.YMin() < 0 && left < right)
            canvas_.DrawText({left, row, right - left, line_}, "Negative delays are drawn at 0.", Dim(TextSide::Left));
        row -= LayersRow(canvas_, style_);
        if (LayersRow(canvas_, style_) > 0) DrawLayersLegend(row);
        if (style_.Title.empty()) return;
        const double height = canvas_.LineHeight(TitleOf(style_));
        canvas_.DrawText({box_.X + space_, row - space_ - height, box_.Width - 2 * space_, height}, style_.Title,
                         TitleOf(style_));
    }

    /// Returns where it begins.
    double DrawLegend(double row) {
        std::vector<PlotSample> samples;
        for (const DelayLegend entry : {DelayLegend::NotCounted, DelayLegend::Data, DelayLegend::Average})
            if (entry != DelayLegend::NotCounted || series_.ShowsNotCounted()) samples.push_back(SampleOf(entry));
        return DrawSamples(canvas_, samples, edges_.Right, row, style_);
    }

    void DrawLayersLegend(double row) {
        std::vector<PlotSample> samples;
        if (style_.Layers.Corridor) samples.push_back(CorridorSample(style_.Layers));
        if (!style_.Layers.RunningInterval.empty()) samples.push_back(IntervalSample(style_.Layers));
        DrawSamples(canvas_, samples, edges_.Right, row, style_);
    }

    void DrawDelayAxis() {
        // As many values as have room for their line.
        const int labelled = std::min(RoundStep(line_ / std::max<double>(scale_.WindowStep(), 1)), 10);
        for (int step = 0; step <= DelayScale::AxisSteps; ++step) {
            const double y = edges_.Bottom - step * scale_.WindowStep();
            canvas_.DrawLine({double(edges_.Left), y}, {double(edges_.Right), y}, {1, colours_.Grid});
            if (step % labelled == 0)
                canvas_.DrawText({box_.X, y - line_ / 2, edges_.Left - space_ - box_.X, line_},
                                 std::to_string(step * scale_.ValueStep()), Dim(TextSide::Right));
        }
    }

    void DrawRunAxis() {
        const double width = canvas_.TextWidth(LastNumber(series_), Dim(TextSide::Centre)) + space_;
        const double row = box_.Y + box_.Height - space_ - line_;
        const double xStep = scale_.XStep();
        const int labelled = xStep > 0 ? RoundStep(width / xStep) : series_.RunCount() + 1;
        for (int run = labelled; run <= series_.RunCount(); run += labelled) {
            const double x = scale_.XOf(run);
            canvas_.DrawLine({x, double(edges_.Top)}, {x, double(edges_.Bottom)}, {1, colours_.Grid});
            canvas_.DrawText({x - width / 2, row - line_, width, line_}, std::to_string(series_.Runs()[run].Number),
                             Dim(TextSide::Centre));
        }
        TextStyle text = TextOf(style_);
        text.Side = TextSide::Centre;
        canvas_.DrawText({double(edges_.Left), row, AreaOf(edges_).Width, line_}, "Run", text);
    }

    Canvas& canvas_;
    const CanvasBox& box_;
    const DelaySeries& series_;
    const DelayChartStyle& style_;
    const Colours& colours_;
    const DelayScale scale_;
    const DelayPlotEdges& edges_;
    const double line_;
    const double space_;
};

/// The chart's own layout, with positions on whole units.
class DelayFrame : public PlotFrame {
public:
    DelayFrame(DelaySeries series, DelayChartStyle style) : series_(std::move(series)), style_(std::move(style)) {}

    PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const PlotLook& look) const override {
        const DelayScale scale(DelayPlotEdgesOf(measure, box, series_, StyleOf(look)), series_);
        for (int run = 1; run <= series_.RunCount(); ++run) {
            scale.XOf(run);
            scale.YOfDelay(series_.Runs()[run].ControlDelay);
            if (run >= FirstAverage - 1) scale.YOfAverage(series_.Runs()[run].RunningAverage);
        }
        const DelayPlotEdges& edges = scale.Edges();
        return PlotMap::OnWholeUnits(AreaOf(edges), {double(edges.Left), double(edges.Bottom)}, scale.XStep(),
                                     scale.YScale());
    }

    void Draw(Canvas& canvas, const CanvasBox& box, const PlotLook& look) const override {
        FrameDrawing(canvas, box, series_, StyleOf(look)).Draw();
    }

    CanvasBox Room(const CanvasBox& box, const PlotMap&) const override { return box; }

private:
    DelayChartStyle StyleOf(const PlotLook& look) const {
        return {look.Inks, look.TextSize, look.HasTitle ? style_.Title : "", look.HasLegend, style_.Layers};
    }

    DelaySeries series_;
    DelayChartStyle style_;
};

/// Straight ways from average to average, with points from the first settled one on.
class AverageLine : public PlotPart {
public:
    explicit AverageLine(const DelaySeries& series) {
        for (int run = FirstAverage - 1; run <= series.RunCount(); ++run)
            points_.push_back({double(run), series.Runs()[run].RunningAverage});
    }

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override {
        for (std::size_t i = 1; i < points_.size(); ++i)
            canvas.DrawLine(map.Of(points_[i - 1]), map.Of(points_[i]), {AverageWidth, look.Inks.Average});
        for (std::size_t i = 1; i < points_.size(); ++i)
            canvas.DrawDot(map.Of(points_[i]), DotSize, look.Inks.AveragePoint);
    }

    void Search(PlotSearch& search) const override {
        for (std::size_t i = 1; i < points_.size(); ++i) search.OfferPoint(static_cast<int>(points_[i].X), points_[i]);
    }

private:
    std::vector<PlotPoint> points_;
};

void AddLayers(Plot& plot, const DelayChartLayers& layers) {
    PlotLayers grades;
    grades.Layers = layers.Grades;
    plot.Add(std::move(grades));
    PlotBand band;
    band.Ink = &Colours::AveragePoint;
    for (std::size_t i = 0; i < layers.RunningInterval.size(); ++i)
        band.Slices.push_back({static_cast<double>(i + 1), layers.RunningInterval[i]});
    if (!band.Slices.empty()) {
        plot.Add(std::move(band));
        plot.Axes.Legend.push_back(IntervalSample(layers));
    }
    if (!layers.Corridor) return;
    PlotLines corridor;
    corridor.Ink = &Colours::IdealSpeed;
    corridor.Width = 1.5;
    corridor.Lines = {{layers.Corridor->Low, ""}, {layers.Corridor->High, ""}};
    plot.Add(std::move(corridor));
    plot.Axes.Legend.push_back(CorridorSample(layers));
}

std::string SecondsText(double seconds) { return OneDecimal(seconds) + " s"; }
std::string NotCountedText(const DelayRun& run) { return run.IsCounted ? "" : " (not counted)"; }

constexpr CanvasBox PictureBox = {12, 12, DelayPictureSize.Width - 24, DelayPictureSize.Height - 24};

}  // namespace

DelaySeries::DelaySeries(const Study& study, const std::vector<RunListRow>& rows, DelayRuns shown,
                         const std::vector<int>& order) {
    for (int place = 1; place <= study.Record.RunCount; ++place) {
        const int run = order.empty() ? place : order[static_cast<std::size_t>(place - 1)];
        const StudyRunEntry& entry = study.Entries[run];
        const bool isCounted = rows[static_cast<std::size_t>(run - 1)].State == RunState::Counted;
        if (!isCounted && shown == DelayRuns::Counted) continue;
        Append({.Name = std::string(Trim(entry.EntryRunName)), .Number = run, .IsCounted = isCounted},
               entry.ControlDelay);
    }
}

void DelaySeries::Append(DelayRun run, std::int32_t controlDelay) {
    run.ControlDelay = To16(controlDelay);
    sum_ = Add32(sum_, run.ControlDelay);
    highest_ = std::max(highest_, run.ControlDelay);
    lowest_ = std::min(lowest_, run.ControlDelay);
    run.RunningAverage = static_cast<double>(sum_) / (RunCount() + 1);
    runs_.Append(std::move(run));
}

bool DelaySeries::ShowsNotCounted() const {
    return !std::ranges::all_of(runs_, [](const DelayRun& run) { return run.IsCounted; });
}

std::int16_t DelaySeries::YMax() const { return Tens(std::floor(highest_ / 10.0) + 1); }
std::int16_t DelaySeries::YMin() const { return Tens(std::floor(lowest_ / 10.0)); }

DelayScale::DelayScale(const DelayPlotEdges& edges, const DelaySeries& series)
    : edges_(edges),
      xStep_(static_cast<float>((edges.Right - edges.Left) / (series.RunCount() + 1.0))),
      yScale_(static_cast<float>((edges.Bottom - edges.Top) / static_cast<double>(series.YMax()))),
      valueStep_(series.YMax() / AxisSteps),
      windowStep_(Round16((edges.Bottom - edges.Top) / static_cast<double>(AxisSteps))) {}

std::int16_t DelayScale::XOf(int run) const { return Round16(run * static_cast<double>(xStep_) + edges_.Left); }

std::int16_t DelayScale::YOfAverage(double seconds) const {
    return Round16(edges_.Bottom - static_cast<double>(yScale_) * seconds);
}

std::int16_t DelayScale::YOfDelay(std::int16_t seconds) const { return std::min(YOfAverage(seconds), edges_.Bottom); }

DelayPlotEdges DelayPlotEdgesOf(const TextMeasure& measure, const CanvasBox& box, const DelaySeries& series,
                                const DelayChartStyle& style) {
    const double space = Space(style);
    const double line = measure.LineHeight(TextOf(style));
    const double values = measure.TextWidth(std::to_string(series.YMax()), TextOf(style));
    const double runs = measure.TextWidth(LastNumber(series), TextOf(style)) + space;
    const double title = style.Title.empty() ? 0 : measure.LineHeight(TitleOf(style)) + space;

    const double left = std::ceil(box.X + values + 2 * space);
    const double right = std::max(std::floor(box.X + box.Width - std::max(2 * space, runs / 2)), left);
    // Half a line more, for the topmost value.
    const double highest = box.Y + space + title + LayersRow(measure, style) + line + line / 2;
    const double room = std::max(box.Y + box.Height - 2 * line - 2 * space - highest, 0.0);
    const double bottom = std::floor(highest + room * ShareAboveBaseline(series));
    // A height that the steps of the axis divide evenly, so that its top is the top of the plot.
    const double height = std::max(std::floor((bottom - highest) / DelayScale::AxisSteps), 0.0) * DelayScale::AxisSteps;
    return {Round16(left), Round16(right), Round16(bottom), Round16(bottom - height)};
}

Plot DelayPlot(const DelaySeries& series, const std::string& title, const DelayChartLayers& layers) {
    Plot plot;
    plot.Axes = {
        title, {"Run", {0, series.RunCount() + 1.0}}, {DelayTitle, {LowestAverage(series), double(series.YMax())}}};
    plot.Axes.Across.IsWhole = true;
    plot.ZoomsUp = false;
    plot.ProblemText = "A delay lies too far below 0 to be drawn.";
    if (series.RunCount() == 0) plot.EmptyText = "There is no run to show.";
    AddLayers(plot, layers);
    for (const DelayLegend entry : {DelayLegend::Average, DelayLegend::Data, DelayLegend::NotCounted})
        if (entry != DelayLegend::NotCounted || series.ShowsNotCounted()) plot.Axes.Legend.push_back(SampleOf(entry));
    PlotPoints delays;
    delays.Size = DotSize;
    for (int run = 1; run <= series.RunCount(); ++run) {
        const DelayRun& values = series.Runs()[run];
        delays.Marks.push_back({{double(run), std::max<double>(values.ControlDelay, 0)},
                                run,
                                values.IsCounted ? PlotMarker::Dot : PlotMarker::RingedDot});
        plot.Items.push_back({values.Name + "\nControl delay: " + std::to_string(values.ControlDelay) + " s" +
                              NotCountedText(values) + "\nRunning average: " + SecondsText(values.RunningAverage)});
    }
    plot.Add(std::move(delays));
    plot.Add(AverageLine(series));
    plot.WholeFrame = std::make_shared<const DelayFrame>(series, DelayChartStyle{.Title = title, .Layers = layers});
    return plot;
}

void DrawDelayChart(Canvas& canvas, const CanvasBox& box, const DelaySeries& series, const DelayChartStyle& style) {
    const Plot plot = DelayPlot(series, style.Title, style.Layers);
    DrawPlot(canvas, box, plot, LookOf(style), plot.Whole());
}

PlotSample SampleOf(DelayLegend entry) {
    constexpr PlotInk Delay = &Colours::Delay;
    switch (entry) {
        case DelayLegend::Average:
            return {.Caption = "Running Avg. of Control Delay",
                    .Ink = &Colours::Average,
                    .Width = AverageWidth,
                    .Marker = PlotMarker::Dot,
                    .MarkerInk = &Colours::AveragePoint};
        case DelayLegend::Data:
            return {.Caption = "Control Delay Values", .Ink = Delay, .Width = 0, .Marker = PlotMarker::Dot};
        case DelayLegend::NotCounted:
            return {.Caption = "Not counted", .Ink = Delay, .Width = 0, .Marker = PlotMarker::RingedDot};
    }
    return {};
}

std::string DelaysInWords(const DelaySeries& series, int run) {
    const DelayRun& values = series.Runs()[run];
    return "Run " + std::to_string(values.Number) + ", " + values.Name + ": control delay " +
           std::to_string(values.ControlDelay) + " s" + NotCountedText(values) + ", running average " +
           SecondsText(values.RunningAverage);
}

std::vector<SheetRow> DelaySheet(const DelaySeries& series) {
    std::vector<SheetRow> rows = {{{"Run"}, {"Run Name"}, {"Control Delay (s)"}, {"Running Avg. (s)"}, {"Status"}}};
    for (int run = 1; run <= series.RunCount(); ++run) {
        const DelayRun& values = series.Runs()[run];
        rows.push_back({{std::to_string(values.Number), true},
                        {values.Name},
                        {std::to_string(values.ControlDelay), true},
                        {OneDecimal(values.RunningAverage), true},
                        {StateWord(values.IsCounted ? RunState::Counted : RunState::NotCounted)}});
    }
    return rows;
}

std::string DelayChartTitle(const Study& study) {
    const std::string name(Trim(study.Record.StudyName));
    return "Control Delays & Running Avg." + (name.empty() ? name : " for " + name);
}

std::vector<std::byte> DelayChartPicture(const DocumentWriter& documents, const DelaySeries& series,
                                         const std::string& title, PictureFormat format,
                                         const DelayChartLayers& layers) {
    const auto draw = [&](Canvas& canvas) {
        DrawDelayChart(canvas, PictureBox, series, {LightColours, 9, title, true, layers});
    };
    return documents.Picture(DelayPictureSize, draw, format);
}

DelayScale DelayPictureScale(const DocumentWriter& documents, const DelaySeries& series, const std::string& title) {
    return {DelayPlotEdgesOf(documents.Measure(), PictureBox, series, {LightColours, 9, title}), series};
}

}  // namespace vantor
