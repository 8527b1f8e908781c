#include "analysis/DelayChart.h"

#include <algorithm>
#include <cmath>

#include "core/Axis.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr double DotSize = 6;
constexpr double RingSize = 13;
constexpr double RingWidth = 1.5;
constexpr double AverageWidth = 2;
constexpr double SampleWidth = 24;
/// The averages of the first runs are not settled: the points begin here, the line at the run before.
constexpr int FirstAverage = 3;

constexpr const char* DelayTitle = "Control Delay (s)";

TextStyle TextOf(const DelayChartStyle& style) { return {style.TextSize, false, style.Inks.Text}; }
TextStyle TitleOf(const DelayChartStyle& style) { return {style.TextSize * 1.25, true, style.Inks.Text}; }
double Space(const DelayChartStyle& style) { return style.TextSize / 2; }

std::int16_t Tens(double seconds) { return Round16(seconds * 10); }

/// Averages below 0 need room below the baseline; they get half of the height at most.
double ShareAboveBaseline(const DelaySeries& series) {
    double lowest = 0;
    if (series.RunCount() >= FirstAverage)
        for (int run = FirstAverage - 1; run <= series.RunCount(); ++run)
            lowest = std::min(lowest, series.Runs()[run].RunningAverage);
    return std::max(series.YMax() / (series.YMax() - lowest), 0.5);
}

std::string LastNumber(const DelaySeries& series) {
    return std::to_string(series.RunCount() == 0 ? 0 : series.Runs()[series.RunCount()].Number);
}

void DrawRing(Canvas& canvas, CanvasPoint centre, const Colours& colours) {
    canvas.DrawDot(centre, RingSize, colours.DimText);
    canvas.DrawDot(centre, RingSize - 2 * RingWidth, colours.Base);
}

class ChartDrawing {
public:
    ChartDrawing(Canvas& canvas, const CanvasBox& box, const DelaySeries& series, const DelayChartStyle& style)
        : canvas_(canvas),
          box_(box),
          series_(series),
          style_(style),
          colours_(style.Inks),
          scale_(DelayPlotEdgesOf(canvas, box, series, style), series),
          edges_(scale_.Edges()),
          line_(canvas.LineHeight(TextOf(style))),
          space_(Space(style)) {
        for (int run = 1; run <= series.RunCount(); ++run) {
            const double x = scale_.XOf(run);
            delays_.push_back({x, double(scale_.YOfDelay(series.Runs()[run].ControlDelay))});
            if (run >= FirstAverage - 1)
                averages_.push_back({x, double(scale_.YOfAverage(series.Runs()[run].RunningAverage))});
        }
    }

    void Draw() {
        canvas_.FillBox(box_, colours_.Base);
        DrawHead();
        DrawDelayAxis();
        DrawRunAxis();
        canvas_.DrawFrame(PlotBox(), {1, colours_.DimText});
        if (series_.RunCount() == 0) {
            TextStyle text = TextOf(style_);
            text.Side = TextSide::Centre;
            canvas_.DrawText(PlotBox(), "There is no run to show.", text);
        }
        canvas_.DrawInside(box_, [this] {
            DrawDelays();
            DrawAverage();
        });
    }

private:
    CanvasBox PlotBox() const {
        return {double(edges_.Left), double(edges_.Top), double(edges_.Right - edges_.Left),
                double(edges_.Bottom - edges_.Top)};
    }

    TextStyle Dim(TextSide side) const { return {style_.TextSize, false, colours_.DimText, side}; }

    void DrawHead() {
        const double row = edges_.Top - line_ / 2 - line_;
        double left = box_.X + space_;
        const double right = style_.HasLegend ? DrawLegend(row) : edges_.Right;
        const double width = canvas_.TextWidth(DelayTitle, TextOf(style_));
        canvas_.DrawText({left, row, width, line_}, DelayTitle, TextOf(style_));
        left += width + 2 * space_;
        if (series_.YMin() < 0 && left < right)
            canvas_.DrawText({left, row, right - left, line_}, "Negative delays are drawn at 0.", Dim(TextSide::Left));
        if (style_.Title.empty()) return;
        const double height = canvas_.LineHeight(TitleOf(style_));
        canvas_.DrawText({box_.X + space_, row - space_ - height, box_.Width - 2 * space_, height}, style_.Title,
                         TitleOf(style_));
    }

    /// Returns where it begins.
    double DrawLegend(double row) {
        double right = edges_.Right;
        for (const DelayLegend entry : {DelayLegend::NotCounted, DelayLegend::Data, DelayLegend::Average}) {
            if (entry == DelayLegend::NotCounted && !series_.ShowsNotCounted()) continue;
            const double width = canvas_.TextWidth(LegendCaption(entry), TextOf(style_));
            canvas_.DrawText({right - width, row, width, line_}, LegendCaption(entry), TextOf(style_));
            right -= width + space_ + SampleWidth;
            DrawLegendSample(canvas_, {right, row, SampleWidth, line_}, entry, colours_);
            right -= 3 * space_;
        }
        return right;
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
        canvas_.DrawText({double(edges_.Left), row, PlotBox().Width, line_}, "Run", text);
    }

    void DrawDelays() {
        for (int run = 1; run <= series_.RunCount(); ++run) {
            const CanvasPoint& point = delays_[static_cast<std::size_t>(run - 1)];
            if (!series_.Runs()[run].IsCounted) DrawRing(canvas_, point, colours_);
            canvas_.DrawDot(point, DotSize, colours_.Delay);
        }
    }

    void DrawAverage() {
        for (std::size_t i = 1; i < averages_.size(); ++i)
            canvas_.DrawLine(averages_[i - 1], averages_[i], {AverageWidth, colours_.Average});
        for (std::size_t i = 1; i < averages_.size(); ++i)
            canvas_.DrawDot(averages_[i], DotSize, colours_.AveragePoint);
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
    std::vector<CanvasPoint> delays_;
    std::vector<CanvasPoint> averages_;  ///< the line begins one run before the first point
};

constexpr CanvasBox PictureBox = {12, 12, DelayPictureSize.Width - 24, DelayPictureSize.Height - 24};

}  // namespace

DelaySeries::DelaySeries(const Study& study, const std::vector<RunListRow>& rows, DelayRuns shown) {
    for (int run = 1; run <= study.Record.RunCount; ++run) {
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
    const double highest = box.Y + space + title + line + line / 2;
    const double room = std::max(box.Y + box.Height - 2 * line - 2 * space - highest, 0.0);
    const double bottom = std::floor(highest + room * ShareAboveBaseline(series));
    // A height that the steps of the axis divide evenly, so that its top is the top of the plot.
    const double height = std::max(std::floor((bottom - highest) / DelayScale::AxisSteps), 0.0) * DelayScale::AxisSteps;
    return {Round16(left), Round16(right), Round16(bottom), Round16(bottom - height)};
}

void DrawDelayChart(Canvas& canvas, const CanvasBox& box, const DelaySeries& series, const DelayChartStyle& style) {
    ChartDrawing(canvas, box, series, style).Draw();
}

const char* LegendCaption(DelayLegend entry) {
    switch (entry) {
        case DelayLegend::Average: return "Running Avg. of Control Delay";
        case DelayLegend::Data: return "Control Delay Values";
        case DelayLegend::NotCounted: return "Not counted";
    }
    return "";
}

void DrawLegendSample(Canvas& canvas, const CanvasBox& box, DelayLegend entry, const Colours& colours) {
    const CanvasPoint middle = {box.X + box.Width / 2, box.Y + box.Height / 2};
    const bool isAverage = entry == DelayLegend::Average;
    if (isAverage) canvas.DrawLine({box.X, middle.Y}, {box.X + box.Width, middle.Y}, {AverageWidth, colours.Average});
    if (entry == DelayLegend::NotCounted) DrawRing(canvas, middle, colours);
    canvas.DrawDot(middle, DotSize, isAverage ? colours.AveragePoint : colours.Delay);
}

int DelayRunNear(const DelaySeries& series, const DelayScale& scale, CanvasPoint place, double reach) {
    int nearest = 0;
    const auto look = [&](int run, std::int16_t y) {
        const double distance = std::hypot(scale.XOf(run) - place.X, y - place.Y);
        if (distance > reach) return;
        reach = distance;
        nearest = run;
    };
    for (int run = 1; run <= series.RunCount(); ++run) {
        look(run, scale.YOfDelay(series.Runs()[run].ControlDelay));
        if (run >= FirstAverage) look(run, scale.YOfAverage(series.Runs()[run].RunningAverage));
    }
    return nearest;
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
                                         const std::string& title, PictureFormat format) {
    const auto draw = [&](Canvas& canvas) { DrawDelayChart(canvas, PictureBox, series, {LightColours, 9, title}); };
    return documents.Picture(DelayPictureSize, draw, format);
}

DelayScale DelayPictureScale(const DocumentWriter& documents, const DelaySeries& series, const std::string& title) {
    return {DelayPlotEdgesOf(documents.Measure(), PictureBox, series, {LightColours, 9, title}), series};
}

}  // namespace vantor
