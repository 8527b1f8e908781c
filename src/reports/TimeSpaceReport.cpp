#include <algorithm>

#include "reports/ReportContents.h"
#include "statistics/DetailedStatistics.h"
#include "statistics/OverlayPlot.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {
namespace {

/// The runs with as many nodes as most have, the first of them.
PlottedRuns DrawnRuns(const ReportData& data) {
    PlottedRuns runs;
    if (data.Statistics.NodeCounts.empty()) return runs;
    for (const std::size_t run : data.Statistics.NodeCounts.front().Runs)
        if (runs.size() < MostPlottedRuns) runs.push_back({&data.Measured.Read.Runs[run], &data.Measured.Traces[run]});
    return runs;
}

void AddPlot(ReportPages& pages, Plot plot, double height) {
    const CanvasBox box{pages.Left(), pages.Take(height), pages.Width(), height};
    pages.Draw([plot = std::move(plot), box](Canvas& canvas) { DrawPlot(canvas, box, plot, {}, plot.Whole()); });
}

}  // namespace

void AddTimeSpace(ReportPages& pages, const ReportData& data) {
    const PlottedRuns runs = DrawnRuns(data);
    if (runs.empty()) return pages.AddText("No run of this study can be read: there is nothing to draw.", BodyStyle);
    const Units units = UnitsOf(data.Settings);
    constexpr double Gap = 10;
    const double text = 2 * pages.Measure().LineHeight(CaptionStyle);
    const double height = (pages.Room() - text - 2 * Gap) / 2;
    AddPlot(pages, TimeSpacePlot(runs, TimeSpaceClock::FromStart, "Where the runs were", units), height);
    pages.Skip(Gap);
    AddPlot(pages, OverlayPlot(runs, false, "Speeds over the road, median and middle 70 %", units), height);
    std::string note = "Distances are stretched from node to node, so that the nodes of all runs lie at one place.";
    if (const std::string counts = data.Statistics.NodeCountText(); !counts.empty())
        note += " " + counts + "; only they are drawn.";
    if (data.Statistics.NodeCounts.front().Runs.size() > runs.size())
        note += " The first " + std::to_string(MostPlottedRuns) + " of them are drawn.";
    pages.AddText(note, CaptionStyle);
}

}  // namespace vantor
