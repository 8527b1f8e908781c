#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "core/Numeric.h"
#include "core/Text.h"
#include "core/Units.h"
#include "corridor/CorridorPeriods.h"
#include "corridor/CorridorReportTables.h"
#include "corridor/FiguresFile.h"
#include "reports/CorridorReport.h"
#include "reports/ReportParts.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

std::string IdealSpeedText(const Corridor& corridor, Way way, const Units& units) {
    const CorridorDirection& direction = corridor.Of(way);
    if (!direction.IdealSpeedMph) return direction.Name + ": each run's own, the mean of the speeds at its boundaries";
    const bool isPosted = std::ranges::all_of(
        corridor.Nodes, [&](const CorridorNode& node) { return node.SpeedLimitMph == direction.IdealSpeedMph; });
    return direction.Name + ": " + units.SpeedText(*direction.IdealSpeedMph) + " for all runs, " +
           (isPosted ? "the posted speed limit" : "as it was entered");
}

void AddSources(ReportPages& pages, const CorridorReportData& data) {
    const Corridor& corridor = data.Of->Of;
    const Units units = UnitsOf(data.Settings);
    const std::string tolerance =
        ShownNumber(corridor.Matching.ToleranceFt, FigureUnit::Feet, 0, units) + " " + units.LengthLabel();
    pages.AddHeading("How the nodes of the runs were found", 6 * pages.Measure().LineHeight(BodyStyle));
    pages.AddText(
        "By position: a run with positions passes a node where its place on the line of the street does, and is on the "
        "line within " +
            tolerance +
            ". By mark: where the observer marked a node in a run without positions. By distance: between two nodes "
            "that "
            "are known. By user: set by hand.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    AddTable(pages, OnPaper(MatchSourcesTable(*data.Of)));
    pages.Skip(SectionGap / 2);
    const StatisticsTable tracks = TracksTable(corridor);
    if (tracks.Rows.empty()) return;
    pages.AddHeading("Tracks that runs were cut from", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    AddTable(pages, WithTexts(OnPaper(tracks), {"Hash", "From", "To"}));
    pages.Skip(SectionGap / 2);
}

std::string PermittedText(const StatisticsOptions& options, const Units& units) {
    return "Intervals hold the true mean with a confidence of " + ConfidenceText(options.Confidence) +
           "; the permitted error, for the runs needed, is " +
           PermittedErrorText(options.Error, Measure::TravelTime, units) +
           ". Before and after are compared by Welch's test, with the ranks (Mann-Whitney) as a check.";
}

void AddProof(ReportPages& pages, const CorridorReportData& data) {
    const std::string file = data.FiguresFile.empty() ? "a file that ends in " + std::string(FiguresExtension) +
                                                            ", which is written with the PDF file"
                                                      : data.FiguresFile;
    const std::string named = data.FiguresFile.empty() ? "FILE" : "\"" + data.FiguresFile + "\"";
    pages.AddHeading("Proof", 3 * pages.Measure().LineHeight(BodyStyle));
    pages.AddText(
        "All figures of this report, and what they are computed from but for the samples of the runs, stand in " +
            file + ". This computes them again from the runs and says \"same\", or names the first that differs:",
        BodyStyle);
    pages.AddText("vantor corridor verify " + named, BodyStyle);
    pages.Skip(SectionGap / 2);
}

}  // namespace

void AddCorridorMethod(ReportPages& pages, const CorridorReportData& data) {
    const Corridor& corridor = data.Of->Of;
    const Units units = UnitsOf(data.Settings);
    pages.AddText(
        "Vehicles are driven along the street and their distance is recorded once a second. Around each node lies a "
        "band: control delay is the time that a run takes from its beginning to its end, less the time that the same "
        "distance takes at the ideal speed, in whole seconds. The grade is that of the mean over the runs in whole "
        "seconds. Travel times are those from node to node, one sample a second.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    pages.AddText("Ideal speed. " + IdealSpeedText(corridor, Way::Forward, units) + ". " +
                      IdealSpeedText(corridor, Way::Back, units) + ".",
                  BodyStyle);
    pages.AddText(PermittedText(corridor.Options, units), BodyStyle);
    std::vector<std::string> periods;
    for (const CorridorPeriod& period : corridor.Periods) periods.push_back(TextOf(period));
    if (!periods.empty()) pages.AddText("Periods: " + Joined(periods, ", ") + ".", BodyStyle);
    pages.Skip(SectionGap / 2);
    pages.AddHeading("Bands", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    pages.AddText(
        std::string("Before and behind a node as a vehicle passes it. ") +
            (corridor.BandsMayOverlap ? "They may reach into each other: what is lost there counts at both nodes."
                                      : "Those that would overlap end in the middle of what they share."),
        BodyStyle);
    pages.Skip(SectionGap / 2);
    AddTable(pages, OnPaper(BandsTable(corridor, units)));
    pages.Skip(SectionGap / 2);
    AddSources(pages, data);
    AddProof(pages, data);
    AddGradeScales(pages, corridor.Options);
}

void AddCorridorRuns(ReportPages& pages, const CorridorReportData& data) {
    AddLines(pages, "Left out or set aside", data.All().All.LeftOut);
    std::vector<std::string> gaps;
    for (const MatchedRun& run : data.Of->Runs) {
        if (!data.Of->Filter.Takes(run) || !data.Of->Of.Runs[run.Index].SetAside.empty()) continue;
        for (std::size_t node = 0; node < run.Delays.size(); ++node)
            if (!run.Delays[node].HasFigure())
                gaps.push_back(run.Measured.Name + ", " + data.Of->Of.Nodes[node].Name + ": " +
                               run.Delays[node].Problem);
    }
    AddLines(pages, "Runs without a figure at a node", gaps);
    AddTable(pages, WithTexts(WithoutEmpty(OnPaper(RunsTable(*data.Of), "Track")),
                              {"Group", "Way", "Condition", "Period", "Start", "Movement"}));
    pages.AddText(
        "Movement: the hash of a run's calibration and of the pulses of its samples, as they were when this report was "
        "made.",
        CaptionStyle);
}

}  // namespace vantor
