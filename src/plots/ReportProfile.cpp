#include "plots/ReportProfile.h"

#include <algorithm>

#include "plots/ProfilePlot.h"

namespace vantor {
namespace {

/// More columns than a printed profile can show apart.
constexpr int MostColumns = 800;

constexpr double PageTextSize = 7;

ProfileLinesPart LinesOf(const ProfileFrame& frame) {
    const StudyRunEntry& entry = frame.Entry;
    ProfileLinesPart lines;
    const auto boundary = [&](const char* name, std::int32_t feet) -> std::optional<ProfileLineAt> {
        if (feet == 0) return std::nullopt;
        return {{frame.Units.LengthOfFeet(feet), true, name + frame.Units.LengthText(feet)}};
    };
    lines.Lines[0] = boundary("Start ", entry.CDStartDist);
    lines.Lines[1] = boundary("End ", entry.CDEndDist);
    const std::int32_t mph = entry.IdealSpeedUser != 0 ? entry.IdealSpeedUser : entry.IdealSpeedCalc;
    if (HasBothBoundaries(entry) && mph > 0)
        lines.Lines[2] = {{double(mph), true, "Ideal " + frame.Units.SpeedText(mph)}};
    return lines;
}

/// The whole run over distance; on a page, which has neither title nor legend, with little room for the unit.
Plot PlotOf(const ReportProfile& profile, const ProfileFrame& frame, const std::string& title = "") {
    const Units& units = frame.Units;
    PlotAxes axes;
    axes.Title = title;
    axes.Across = {.Caption = std::string("Distance from start of run (") + units.LengthLabel() + ")",
                   .Whole = {0, units.LengthOfFeet(std::max(profile.Feet, 1.0))},
                   .IsWhole = true};
    axes.Up = SpeedsUp(frame.Speeds, units);
    if (title.empty()) axes.Up.Caption = units.SpeedLabel();
    axes.Legend = ProfileLegend(!profile.Nodes.empty(), false);
    SpeedTrace speeds;
    speeds.Opacity = 0;
    for (const TracePoint& point : profile.Points)
        speeds.Points.push_back({units.LengthOfFeet(point.X), static_cast<double>(point.Speed)});
    ProfileNodes nodes;
    for (const ReportNode& node : profile.Nodes) nodes.Nodes.push_back({units.LengthOfFeet(node.Feet), node.Name});
    Plot plot = EmptyProfilePlot({std::move(axes), ""});
    plot.Add(std::move(speeds));
    plot.Add(std::move(nodes));
    plot.Add(LinesOf(frame));
    return plot;
}

void AddNode(ReportProfile& profile, double feet, const std::string& name) {
    const std::string number = "Node " + std::to_string(profile.Nodes.size() + 1);
    profile.Nodes.push_back({feet, name.empty() ? number : name});
}

}  // namespace

ReportProfile MakeReportProfile(const RunRecord& run, const AppSettings& settings) {
    const ProfileTrace trace(run, settings.SpeedFactor);
    ReportProfile profile;
    profile.HasMovement = trace.HasMovement();
    if (!profile.HasMovement) return profile;
    const std::int32_t samples = trace.SampleCount();
    profile.Feet = std::max(trace.Extent().Feet, trace.Extent().TraceFeet);
    profile.TopSpeed = trace.TopSpeed();
    constexpr BoundaryAxis Axis = BoundaryAxis::Distance;
    profile.Points = samples > 2 * MostColumns
                         ? ReducedPointsOf(trace, Axis, 1, samples, 0, 1, MostColumns / profile.Feet)
                         : PointsOf(trace, Axis, 1, samples, 0, 1);
    for (const ProfileMark& mark : trace.Marks())
        if (mark.IsNode) AddNode(profile, trace.DistanceOf(mark.Sample), mark.Label);
    return profile;
}

void DrawReportProfile(Canvas& canvas, const CanvasBox& box, const ReportProfile& profile, const ProfileFrame& frame) {
    const Plot plot = PlotOf(profile, frame);
    DrawPlot(canvas, box, plot, {LightColours, PageTextSize, false, false}, plot.Whole());
}

std::vector<std::byte> ProfilePictureFile(const DocumentWriter& documents, const RunRecord& run,
                                          const StudyRunEntry& entry, const AppSettings& settings,
                                          const std::string& title, PictureFormat format) {
    const ReportProfile profile = MakeReportProfile(run, settings);
    const Units units = UnitsOf(settings);
    Plot plot = PlotOf(profile, {units, NiceSpeedAxis(units.SpeedOfMph(profile.TopSpeed)), entry}, title);
    if (!profile.HasMovement) plot.EmptyText = "The vehicle does not move in this run.";
    return PlotPicture(documents, plot, plot.Whole(), format, {720, 360});
}

}  // namespace vantor
