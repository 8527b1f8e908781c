#include <algorithm>
#include <array>

#include "core/Numeric.h"
#include "reports/ReportContents.h"
#include "reports/ReportParts.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

constexpr TextSide Right = TextSide::Right;

/// Of the drawing, parts of its width: the boundaries, and where the vehicle stands.
constexpr double Begin = 0.27;
constexpr double Halt = 0.46;
constexpr double Leave = 0.54;
constexpr double End = 0.84;

/// The part of its speed that a vehicle has lost which comes to a signal, waits and drives on.
double SpeedLost(double x) {
    const auto eased = [](double part) { return part * part * (3 - 2 * part); };
    if (x <= Begin || x >= End) return 0;
    if (x < Halt) return eased((x - Begin) / (Halt - Begin));
    return x <= Leave ? 1 : eased((End - x) / (End - Leave));
}

/// The speed over the distance, the ideal speed and both boundaries.
void DrawMethod(Canvas& canvas, const CanvasBox& box) {
    const double line = canvas.LineHeight(CaptionStyle);
    const CanvasBox plot{box.X + 40, box.Y + line + 6, box.Width - 50, box.Height - 3 * line - 12};
    const auto x = [&](double part) { return plot.X + part * plot.Width; };
    const auto y = [&](double part) { return plot.Y + 14 + part * (plot.Height - 14); };
    canvas.DrawLine({plot.X, plot.Y}, {plot.X, y(1)}, ReportRule);
    canvas.DrawLine({plot.X, y(1)}, {plot.X + plot.Width, y(1)}, ReportRule);
    canvas.DrawLine({plot.X, y(0)}, {plot.X + plot.Width, y(0)}, {0.7, PaperColours.Trace, LinePattern::Dashed});
    canvas.DrawLine({x(Leave), plot.Y}, {x(Leave), y(1)}, {0.6, PaperColours.Node, LinePattern::Dashed});
    std::vector<CanvasPoint> trace;
    constexpr int Steps = 100;
    for (int step = 0; step <= Steps; ++step) {
        const double part = static_cast<double>(step) / Steps;
        trace.push_back({x(part), y(SpeedLost(part))});
    }
    canvas.DrawPolyline(trace, {1.5, PaperColours.Trace});
    const auto boundary = [&](double part, const char* name, Colour ink) {
        canvas.DrawLine({x(part), plot.Y}, {x(part), y(1)}, {1.2, ink});
        canvas.DrawText({x(part) - 60, y(1) + 2, 120, line}, name, OnSide(CaptionStyle, TextSide::Centre));
    };
    boundary(Begin, "start boundary", PaperColours.Start);
    boundary(End, "end boundary", PaperColours.End);
    canvas.DrawText({x(0.86), y(0) - line - 1, plot.Width * 0.14, line}, "ideal speed", OnSide(CaptionStyle, Right));
    canvas.DrawText({x(Leave) - 60, y(1) + 2, 120, line}, "signal", OnSide(CaptionStyle, TextSide::Centre));
    canvas.DrawText({box.X, plot.Y - line - 2, 60, line}, "speed", CaptionStyle);
    canvas.DrawText({plot.X, y(1) + line + 3, plot.Width, line}, "distance", OnSide(CaptionStyle, Right));
}

/// The seconds of a grade, from 0, by the bounds of a scale; those belong to the better grade or to the worse one.
std::string SecondsOf(std::size_t grade, const std::array<double, 5>& bounds, bool belongToBetter) {
    const auto bound = [&](std::size_t place) { return SignificantDigits(bounds[place], 6); };
    if (grade == 0) return (belongToBetter ? "up to " : "less than ") + bound(0);
    const std::string from = (belongToBetter ? "more than " : "") + bound(grade - 1);
    if (grade == bounds.size()) return belongToBetter ? from : from + " and more";
    return from + (belongToBetter ? " to " : " to less than ") + bound(grade);
}

/// The bounds of the grades, beside the scale of the study those of the manual and the user's own.
ReportTable GradeTable(const StatisticsOptions& options) {
    ReportTable table;
    table.Columns = {{"Grade", TextSide::Centre},
                     {"This study (s)"},
                     {"Signalized intersections (s)"},
                     {"Stop control, roundabouts (s)"}};
    if (options.GradeLimits) table.Columns.push_back({"Own limits (s)"});
    for (std::size_t grade = 0; grade <= SignalBounds.size(); ++grade) {
        std::vector<std::string> row = {std::string(1, static_cast<char>('A' + grade)),
                                        SecondsOf(grade, SignalBounds, false), SecondsOf(grade, SignalBounds, true),
                                        SecondsOf(grade, StopBounds, true)};
        if (options.GradeLimits) row.push_back(SecondsOf(grade, *options.GradeLimits, true));
        table.Rows.push_back(std::move(row));
    }
    return table;
}

std::string StopsText(const ReportData& data) {
    const Units units = UnitsOf(data.Settings);
    const StopSpeeds& stops = data.Statistics.Options.Stops;
    const auto speed = [&](double mph) {
        return ShownNumber(mph, FigureUnit::MilesPerHour, 1, units) + " " + units.SpeedLabel();
    };
    return "Statistics over runs: travel time is the whole run, one sample a second. A stop begins in the first second "
           "below " +
           speed(stops.Stop) + " and ends in the first at " + speed(stops.Go) +
           " or more; stopped time counts the seconds below " + speed(stops.Stop) +
           ". Average speeds are the sum of the distances over the sum of the times. Intervals are those of Student's "
           "t; "
           "before and after are compared by Welch's test, with the ranks (Mann-Whitney) as a check.";
}

}  // namespace

void AddGradeScales(ReportPages& pages, const StatisticsOptions& options) {
    pages.AddHeading("Grades", 8 * pages.Measure().LineHeight(CellStyle));
    AddTable(pages, GradeTable(options));
    pages.AddText(
        "Signalized intersections: Highway Capacity Manual, 6th and 7th edition, Exhibit 19-8; stop control and "
        "roundabouts: Exhibits 20-2, 21-8 and 22-8. The manual counts a delay on a bound to the better grade, the "
        "grade "
        "of this study to the worse one: 10 s is A there and B here. The manual's grade is that of all vehicles of a "
        "period; a number of runs estimates it. Roundabouts: the delay of a run holds the time that the curve itself "
        "takes.",
        CaptionStyle);
}

std::string CorridorWarning(const ReportData& data) {
    std::size_t most = 0;
    for (const MeasuredRun& run : data.Measured.Read.Runs) {
        if (!run.IsCounted) continue;
        const StudyRunEntry& entry = data.Contents.Entries[run.Entry];
        const auto within = std::ranges::count_if(run.Measures.NodeDistances, [&](std::int32_t feet) {
            return feet > entry.CDStartDist && feet < entry.CDEndDist;
        });
        most = std::max(most, static_cast<std::size_t>(within));
    }
    if (most < 2) return {};
    return "The delay is that of a whole street: up to " + std::to_string(most) +
           " nodes lie between the boundaries. The scale of the grade is that of one intersection.";
}

void AddMethod(ReportPages& pages, const ReportData& data) {
    pages.AddText(
        "An instrumented vehicle is driven along the street and its distance is recorded once a second. On the speed "
        "profile of each run two boundaries are set: where the vehicle begins to slow down for the intersection, and "
        "where it has its speed again. The control delay is the time between them less the time that the same distance "
        "takes at the ideal speed, rounded to whole seconds: the delay by slowing down, waiting and gaining speed. The "
        "ideal speed is the mean of the speeds at both boundaries, where the user has set none.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    constexpr double PictureHeight = 150;
    const CanvasBox box{pages.Left(), pages.Take(PictureHeight), pages.Width(), PictureHeight};
    pages.Draw([box](Canvas& canvas) { DrawMethod(canvas, box); });
    pages.Skip(SectionGap);
    pages.AddText(
        "The stop delay is the time between the boundaries at or below the stop speed threshold. Averages are those of "
        "the runs with both boundaries, rounded to whole seconds; the grade is that of the average control delay.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    pages.AddText(StopsText(data), BodyStyle);
    pages.Skip(SectionGap);
    AddGradeScales(pages, data.Statistics.Options);
    if (const std::string warning = CorridorWarning(data); !warning.empty()) {
        pages.Skip(SectionGap / 2);
        pages.AddText(warning, BodyStyle);
    }
}

}  // namespace vantor
