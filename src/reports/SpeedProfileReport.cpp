#include <algorithm>
#include <cmath>

#include "plots/DelayChart.h"
#include "reports/ReportContents.h"
#include "reports/ReportText.h"
#include "statistics/DelayLayers.h"

namespace vantor {
namespace {

constexpr double LeastPlotHeight = 132;
constexpr double RunGap = 10;

float TopSpeedOf(const ReportData& data) {
    float top = 0;
    for (const ReportRun& run : data.Runs) {
        if (run.Profile == nullptr || !run.Profile->HasMovement) continue;
        top = std::max(top, run.Profile->TopSpeed);
    }
    return top;
}

std::string NothingToDraw(const ReportRun& run) {
    if (!run.Problem.empty()) return run.Problem;
    return run.Profile->HasMovement ? "" : "This run does not move.";
}

/// The height of a run's strip with which whole strips fill the rest of a page.
double StripHeight(double room) {
    const double strips = std::max(1.0, std::floor((room + RunGap) / (LeastPlotHeight + RunGap)));
    constexpr double Hair = 0.01;  // so that rounding does not push the last one off the page
    return (room + RunGap) / strips - RunGap - Hair;
}

/// Pages are drawn where nothing catches an error; a delay that does not fit on the chart is one here.
void CheckDrawable(const DelaySeries& series, const DelayScale& scale) {
    for (int run = 1; run <= series.RunCount(); ++run) {
        const DelayRun& values = series.Runs()[run];
        scale.XOf(run);
        scale.YOfDelay(values.ControlDelay);
        scale.YOfAverage(values.RunningAverage);
    }
}

}  // namespace

void AddSpeedProfiles(ReportPages& pages, const ReportData& data) {
    const Units units = UnitsOf(data.Settings);
    const SpeedAxis speeds = NiceSpeedAxis(units.SpeedOfMph(TopSpeedOf(data)));
    const double heading = RunHeadingHeight(pages);
    double strip = StripHeight(pages.Room());
    for (const ReportRun& run : data.Runs) {
        const std::string nothing = NothingToDraw(run);
        const double height = nothing.empty() ? strip : heading + pages.Measure().LineHeight(BodyStyle);
        if (pages.Need(height)) strip = StripHeight(pages.Room());
        AddRunHeading(pages, data, run, true, 0);
        if (!nothing.empty()) {
            pages.AddText(nothing, BodyStyle);
        } else {
            const double plotHeight = strip - heading;
            const CanvasBox box{pages.Left(), pages.Take(plotHeight), pages.Width(), plotHeight};
            const ProfileFrame frame{units, speeds, data.Contents.Entries[run.Number]};
            pages.Draw([profile = run.Profile, box, frame](Canvas& canvas) {
                DrawReportProfile(canvas, box, *profile, frame);
            });
        }
        pages.Skip(RunGap);
    }
}

void AddDelayChart(ReportPages& pages, const ReportData& data) {
    constexpr double LargestShare = 0.62;  // of the width
    const double height = std::min(pages.Room(), pages.Width() * LargestShare);
    const CanvasBox box{pages.Left(), pages.Take(height), pages.Width(), height};
    try {
        const DelaySeries series(data.Contents, data.Rows(), DelayRuns::Counted);
        DelayChartStyle style;
        style.Layers = DelayLayersOf(series, data.Contents.Options, {true, true, true});
        CheckDrawable(series, DelayScale(DelayPlotEdgesOf(pages.Measure(), box, series, style), series));
        pages.Draw([series, box, style](Canvas& canvas) { DrawDelayChart(canvas, box, series, style); });
    } catch (const RunTimeError& error) {
        const double line = pages.Measure().LineHeight(BodyStyle);
        pages.DrawText({box.X, box.Y, box.Width, line},
                       "The control delays cannot be drawn: " + ErrorText(error.Number()), BodyStyle);
    }
}

}  // namespace vantor
