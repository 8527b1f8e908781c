#include "gpsobd/ReviewedRun.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "gpsobd/ReviewColumns.h"

namespace vantor {
namespace {

constexpr std::int64_t SecondsPerDay = 86400;
/// Marks that stand closer together cannot be told apart.
constexpr double MarkRoom = 3;
constexpr double GapOpacity = 0.2;
/// An axis of standing vehicles is as high, in MPH.
constexpr double LeastTop = 10;
constexpr double RoomAbove = 1.05;

/// The rows of the run, by what they are pointed at and chosen.
struct RowPart : PlotPart {
    std::vector<PlotPoint> Points;  ///< of each place

    void Draw(Canvas&, const PlotMap&, const PlotLook&) const override {}
    void DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const override {
        const CanvasPoint at = map.Of(Points[static_cast<std::size_t>(item) - 1]);
        const CanvasBox& area = map.Area();
        constexpr double Width = 2;
        constexpr double Dot = 8;
        canvas.DrawLine({at.X, area.Y}, {at.X, area.Y + area.Height}, {Width, look.Inks.Highlight});
        canvas.DrawDot(at, Dot, look.Inks.Highlight);
    }
    /// The row nearest in time, at any height.
    void Search(PlotSearch& search) const override {
        if (Points.empty()) return;
        const double x = search.Place().X;
        auto next = std::ranges::lower_bound(Points, x, {}, &PlotPoint::X);
        if (next == Points.end() || (next != Points.begin() && x - std::prev(next)->X < next->X - x)) --next;
        search.Take(static_cast<int>(next - Points.begin()) + 1);
    }
    std::optional<PlotPoint> PlaceOf(int item) const override { return Points[static_cast<std::size_t>(item) - 1]; }
};

/// Marks whose x never falls. Of those that cannot be told apart the highest and the lowest are drawn.
struct MarkPart : PlotPart {
    std::vector<PlotPoint> Points;

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override {
        for (std::size_t first = 0, next = 0; first < Points.size(); first = next) {
            CanvasPoint high = map.Of(Points[first]);
            CanvasPoint low = high;
            const double left = high.X;
            for (next = first; next < Points.size(); ++next) {
                const CanvasPoint at = map.Of(Points[next]);
                if (at.X - left >= MarkRoom) break;
                if (at.Y < high.Y) high = at;
                if (at.Y > low.Y) low = at;
            }
            DrawMarker(canvas, high, PlotMarker::Diamond, Size, look.Inks.*Ink, look.Inks);
            if (low.Y - high.Y >= MarkRoom)
                DrawMarker(canvas, low, PlotMarker::Diamond, Size, look.Inks.*Ink, look.Inks);
        }
    }
    static constexpr double Size = 8;
    static constexpr PlotInk Ink = &Colours::Delay;
};

/// Stretches over the whole height, drawn together where they are closer than a pixel.
struct GapPart : PlotPart {
    std::vector<PlotRange> Gaps;

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override {
        for (std::size_t i = 0; i < Gaps.size(); ++i) {
            const double left = map.XOf(Gaps[i].Low);
            while (i + 1 < Gaps.size() && map.XOf(Gaps[i + 1].Low) - map.XOf(Gaps[i].High) < 1 &&
                   map.XOf(Gaps[i].High) - left < 1)
                ++i;
            const double right = std::max(map.XOf(Gaps[i].High), left + 1);
            const CanvasBox& area = map.Area();
            if (right < area.X || left > area.X + area.Width) continue;
            const double bottom = area.Y + area.Height;
            const CanvasPoint corners[] = {{left, area.Y}, {right, area.Y}, {right, bottom}, {left, bottom}};
            canvas.FillShape(corners, look.Inks.*Ink, GapOpacity);
        }
    }
    static constexpr PlotInk Ink = &Colours::IdealSpeed;
};

/// Seconds since the midnight before the first row; the number of the row where the log has no times.
std::vector<double> PlacesAcross(std::span<const RunPoint> rows, const std::vector<int>& ofRun, bool hasTimes) {
    std::vector<double> across;
    across.reserve(ofRun.size());
    for (const int row : ofRun) {
        const std::int64_t first = rows[static_cast<std::size_t>(ofRun.front()) - 1].Second;
        const std::int64_t second = rows[static_cast<std::size_t>(row) - 1].Second;
        across.push_back(hasTimes ? static_cast<double>(second - first + first % SecondsPerDay)
                                  : static_cast<double>(row));
    }
    return across;
}

std::string TextOfRow(int row, const RunPoint& point, std::span<const LogProblem> problems, const Units& units) {
    std::string text = "Row " + std::to_string(row) + ", " + ClockText(DateOfSeconds(point.Second));
    if (HasSpeed(point)) text += ", " + units.SpeedText(static_cast<double>(point.Speed));
    if (!problems.empty()) text += "\n" + ProblemText(problems, units);
    return text;
}

/// Axes around places, whose x never falls.
PlotAxes AxesAround(const std::vector<PlotPoint>& points, bool hasTimes, const Units& units) {
    double top = units.SpeedOfMph(LeastTop);
    double low = 0;
    for (const PlotPoint& point : points) {
        top = std::max(top, point.Y * RoomAbove);
        low = std::min(low, point.Y);
    }
    const double from = points.front().X;
    PlotAxes axes;
    axes.Across.Caption = hasTimes ? "Time" : "Row";
    axes.Across.Whole = {from, std::max(points.back().X, from + 1)};
    axes.Across.Values = hasTimes ? AxisValues::Clock : AxisValues::Numbers;
    axes.Across.IsWhole = !hasTimes;
    axes.Up.Caption = std::string("Speed (") + units.SpeedLabel() + ")";
    axes.Up.Whole = {low, top};
    return axes;
}

Plot TraceOf(const ReviewedRun& run, std::span<const RunPoint> rows, std::span<const LogProblem> problems,
             const Units& units) {
    Plot plot;
    RowPart places;
    PlotTrace trace;
    MarkPart marks;
    GapPart gaps;
    const auto pointOf = [&](int row) -> const RunPoint& { return rows[static_cast<std::size_t>(row) - 1]; };
    const bool hasTimes = pointOf(run.Rows.front()).Second != pointOf(run.Rows.back()).Second || run.Rows.size() == 1;
    const std::vector<double> across = PlacesAcross(rows, run.Rows, hasTimes);
    plot.Items.reserve(run.Rows.size());
    for (std::size_t i = 0; i < run.Rows.size(); ++i) {
        const int row = run.Rows[i];
        const RunPoint& point = pointOf(row);
        const double speed = HasSpeed(point) ? units.SpeedOfMph(static_cast<double>(point.Speed)) : 0;
        places.Points.push_back({across[i], speed});
        if (HasSpeed(point)) trace.Points.push_back(places.Points.back());
        const auto ofRow = ProblemsOfRow(problems, static_cast<std::size_t>(row) - 1);
        plot.Items.push_back({TextOfRow(row, point, ofRow, units)});
        for (const LogProblem& problem : ofRow) {
            if (problem.What == LogProblem::Kind::Gap)
                gaps.Gaps.push_back({across[i], across[i] + problem.Size});
            else
                marks.Points.push_back(places.Points.back());
        }
    }
    plot.Axes = AxesAround(places.Points, hasTimes, units);
    plot.Axes.Title = "Run " + std::to_string(run.RunNumber);
    plot.Axes.Legend.push_back({"Speed"});
    if (!marks.Points.empty())
        plot.Axes.Legend.push_back(
            {"Problem", MarkPart::Ink, 0, LinePattern::Solid, PlotMarker::Diamond, nullptr, 0, MarkPart::Size});
    if (!gaps.Gaps.empty())
        plot.Axes.Legend.push_back({"Gap", GapPart::Ink, 0, LinePattern::Solid, PlotMarker::None, nullptr, GapOpacity});
    plot.Add(std::move(gaps));
    plot.Add(std::move(trace));
    plot.Add(std::move(marks));
    plot.Add(std::move(places));
    return plot;
}

void AddMap(ReviewedRun& run, std::span<const RunPoint> rows, const Units& units) {
    MapTrack track;
    track.Name = "Run " + std::to_string(run.RunNumber);
    for (std::size_t i = 0; i < run.Rows.size(); ++i) {
        const RunPoint& point = rows[static_cast<std::size_t>(run.Rows[i]) - 1];
        RecordedPoint recorded;
        recorded.At = {point.Latitude, point.Longitude};
        if (HasSpeed(point)) recorded.Mph = static_cast<double>(point.Speed);
        recorded.Time = DateOfSeconds(point.Second);
        track.Add(recorded);
        if (track.Points().size() > run.MapPlaces.size()) run.MapPlaces.push_back(static_cast<int>(i) + 1);
    }
    if (track.Points().empty()) return;
    MapContents contents;
    contents.Title = track.Name;
    contents.Tracks.push_back(std::move(track));
    contents.Shown = units;
    run.Map = std::make_shared<const MapScene>(std::move(contents));
}

}  // namespace

int ReviewedRun::PlaceOf(int gridRow) const {
    const auto row = std::ranges::lower_bound(Rows, gridRow);
    return row == Rows.end() || *row != gridRow ? 0 : static_cast<int>(row - Rows.begin()) + 1;
}

ReviewedRun ReviewedRunOf(std::span<const RunPoint> rows, std::span<const LogProblem> problems, std::int16_t runNumber,
                          const Units& units) {
    ReviewedRun run;
    run.RunNumber = runNumber;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (rows[i].RunNumber == runNumber) run.Rows.push_back(static_cast<int>(i) + 1);
    if (run.Rows.empty()) return run;
    run.Trace = TraceOf(run, rows, problems, units);
    AddMap(run, rows, units);
    return run;
}

}  // namespace vantor
