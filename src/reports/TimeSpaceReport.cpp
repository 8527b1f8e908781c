#include <string>
#include <vector>

#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportParts.h"
#include "statistics/OverlayPlot.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {
void AddTimeSpace(ReportPages& pages, const ReportData& data) {
    const PlottedRuns runs = PlottedRunsAt(data.Measured, data.Statistics.RunsToPlot());
    if (runs.empty()) return pages.AddText("No run of this study can be read: there is nothing to draw.", BodyStyle);
    const Units units = UnitsOf(data.Settings);
    constexpr double Gap = 10;
    const double text = 2 * pages.Measure().LineHeight(CaptionStyle);
    const double height = (pages.Room() - text - 2 * Gap) / 2;
    AddPlot(pages, TimeSpacePlot(runs, TimeSpaceClock::FromStart, "Where the runs were", units), height);
    pages.Skip(Gap);
    AddPlot(pages, OverlayPlot(runs, false, "Speeds over the road, median and middle 70 %", units), height);
    std::vector<std::string> notes = data.Statistics.NotPlotted();
    notes.insert(notes.begin(),
                 "Distances are stretched from node to node, so that the nodes of all runs lie at one place.");
    pages.AddText(Joined(notes, " "), CaptionStyle);
}

}  // namespace vantor
