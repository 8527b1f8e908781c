#include "map/MapDrawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "map/MapLegend.h"

namespace vantor {
namespace {

/// Beyond so many tracks their ends and arrows would be a heap.
constexpr int MostMarkedTracks = 12;
constexpr double MarkerSize = 9;
constexpr double Halo = 1.5;
/// How much broader a track is drawn that is chosen.
constexpr double ChosenBroader = 4;

/// What the parts of a drawing share.
struct Frame {
    Canvas& On;
    const MapScene& Scene;
    const MapWindow& Window;
    const MapLook& Look;
    int Level;
    WorldBox View;
    double Scale;
    CanvasPoint Origin;  ///< where the world's upper left corner lies

    Frame(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look)
        : On(canvas),
          Scene(scene),
          Window(window),
          Look(look),
          Level(scene.LevelFor(window, look.Detail)),
          View(window.View(ChosenBroader)),
          Scale(window.Scale()),
          Origin(window.PlaceOf({0, 0})) {}

    bool IsAtNode(CanvasPoint place) const {
        constexpr double Room = 16;
        return std::ranges::any_of(Scene.Nodes(), [&](const WorldPoint& node) {
            const CanvasPoint at = PlaceOf(node);
            return std::hypot(at.X - place.X, at.Y - place.Y) < Room;
        });
    }
    bool HasMarks() const { return Scene.Items() <= MostMarkedTracks; }
    CanvasPoint PlaceOf(const WorldPoint& place) const {
        return {Origin.X + place.X * Scale, Origin.Y + place.Y * Scale};
    }
};

/// Cells of a map that tracks are drawn in so far. Where all cells of a way have been drawn in, it would not be seen.
class Cells {
public:
    Cells(const CanvasBox& area, double detail)
        : area_(area),
          side_(2 / detail),
          across_(static_cast<std::size_t>(area.Width / side_) + 1),
          down_(static_cast<std::size_t>(area.Height / side_) + 1),
          isDrawn_(across_ * down_) {}

    /// Draws a way in; true where it comes into a new cell.
    bool Add(CanvasPoint from, CanvasPoint to) {
        if (!ClipTo(from, to)) return false;
        const double x = to.X - from.X;
        const double y = to.Y - from.Y;
        const double steps = std::ceil(std::max(std::abs(x), std::abs(y)) / side_);
        bool isNew = false;
        for (double step = 0; step <= steps; ++step) {
            const double part = steps == 0 ? 0 : step / steps;
            const auto column = static_cast<std::size_t>((from.X + part * x - area_.X) / side_);
            const auto row = static_cast<std::size_t>((from.Y + part * y - area_.Y) / side_);
            std::uint8_t& cell = isDrawn_[std::min(row, down_ - 1) * across_ + std::min(column, across_ - 1)];
            isNew = isNew || cell == 0;
            cell = 1;
        }
        return isNew;
    }

private:
    /// Cuts a way off at the edges; false where nothing is left.
    bool ClipTo(CanvasPoint& from, CanvasPoint& to) const {
        double first = 0;
        double last = 1;
        const auto cut = [&](double start, double way, double low, double high) {
            if (way == 0) return start >= low && start <= high;
            const double a = (low - start) / way;
            const double b = (high - start) / way;
            first = std::max(first, std::min(a, b));
            last = std::min(last, std::max(a, b));
            return first <= last;
        };
        const double x = to.X - from.X;
        const double y = to.Y - from.Y;
        if (!cut(from.X, x, area_.X, area_.X + area_.Width) || !cut(from.Y, y, area_.Y, area_.Y + area_.Height))
            return false;
        to = {from.X + last * x, from.Y + last * y};
        from = {from.X + first * x, from.Y + first * y};
        return true;
    }

    CanvasBox area_;
    double side_;
    std::size_t across_;
    std::size_t down_;
    std::vector<std::uint8_t> isDrawn_;
};

constexpr int AllClasses = -1;

/// Gives the lines of one class in view, a line going on as long as it keeps to the class; without the ways that
/// `cells`, where there are any, have no room for.
template <class Take>
void ForLines(const Frame& frame, int item, int speedClass, Cells* cells, Take take) {
    std::vector<CanvasPoint> line;
    const auto end = [&] {
        if (line.size() > 1) take(line);
        line.clear();
    };
    for (const ThinnedTrack::Run& run : frame.Scene.Thinned(item).Seen(frame.Level, frame.View)) {
        for (std::size_t i = 1; i < run.size(); ++i) {
            if (run[i].Begins || (speedClass != AllClasses && run[i].Speed != speedClass)) {
                end();
                continue;
            }
            const CanvasPoint from = line.empty() ? frame.PlaceOf(run[i - 1].At) : line.back();
            const CanvasPoint to = frame.PlaceOf(run[i].At);
            if (cells != nullptr && !cells->Add(from, to)) {
                end();
                continue;
            }
            if (line.empty()) line.push_back(from);
            line.push_back(to);
        }
        end();
    }
}

bool IsSpeck(const std::vector<CanvasPoint>& line, double size) {
    return std::ranges::all_of(
        line, [&](CanvasPoint point) { return std::hypot(point.X - line[0].X, point.Y - line[0].Y) < size; });
}

void DrawSetAside(const Frame& frame) {
    for (int item = 1; item <= frame.Scene.Items(); ++item) {
        if (!frame.Scene.Track(item).IsSetAside) continue;
        ForLines(frame, item, AllClasses, nullptr, [&](const std::vector<CanvasPoint>& line) {
            frame.On.DrawPolyline(line, {1.5, frame.Look.Inks.Node, LinePattern::Dashed, true});
        });
    }
}

using Lines = std::vector<std::vector<CanvasPoint>>;
using LinesByClass = std::array<Lines, SpeedScale::NoClass + 1>;

/// The lines that can be seen, by class; what lies under slower ones is left out.
LinesByClass SeenLines(const Frame& frame, std::size_t& ways) {
    LinesByClass lines;
    Cells cells(frame.Window.Area, frame.Look.Detail);
    ways = 0;
    for (int speed = 0; speed <= SpeedScale::NoClass; ++speed)
        for (int item = 1; item <= frame.Scene.Items(); ++item)
            if (!frame.Scene.Track(item).IsSetAside)
                ForLines(frame, item, speed, &cells, [&](std::vector<CanvasPoint>& line) {
                    ways += line.size() - 1;
                    lines[static_cast<std::size_t>(speed)].push_back(std::move(line));
                });
    return lines;
}

/// The tracks by class, the slowest on top. Over a base map they have an edge.
void DrawTracks(Frame frame) {
    constexpr std::size_t MostWays = 8'000;  // that a frame has time for
    std::size_t ways = 0;
    LinesByClass lines = SeenLines(frame, ways);
    while (ways > MostWays && frame.Level + 1 < ThinnedTrack::Levels) {
        ++frame.Level;
        lines = SeenLines(frame, ways);
    }
    const MapLook& look = frame.Look;
    const SpeedScale& speeds = frame.Scene.Speeds();
    if (look.Under != nullptr)
        for (const Lines& ofClass : lines)
            for (const auto& line : ofClass)
                frame.On.DrawPolyline(line, {speeds.WidthOf(0) + 2 * Halo, look.Inks.Base, LinePattern::Solid, true});
    for (int speed = SpeedScale::NoClass; speed >= 0; --speed) {
        const double width = speeds.WidthOf(speed);
        const Colour ink = speeds.InkOf(speed, look.Inks);
        for (const auto& line : lines[static_cast<std::size_t>(speed)]) {
            // A stop would be a line without length.
            if (speed == 0 && IsSpeck(line, width))
                frame.On.DrawDot(line[0], width, ink);
            else
                frame.On.DrawPolyline(line, {width, ink, LinePattern::Solid, true});
        }
    }
}

/// Points that no way leads to or from.
void DrawLonePoints(const Frame& frame) {
    for (int item = 1; item <= frame.Scene.Items(); ++item) {
        for (const ThinnedTrack::Run& run : frame.Scene.Thinned(item).Seen(frame.Level, frame.View)) {
            for (std::size_t i = 0; i < run.size(); ++i) {
                const bool isLast = i + 1 == run.size() || run[i + 1].Begins;
                if (!run[i].Begins || !isLast) continue;
                const Colour ink = frame.Scene.Speeds().InkOf(run[i].Speed, frame.Look.Inks);
                frame.On.DrawDot(frame.PlaceOf(run[i].At), 4, ink);
            }
        }
    }
}

void DrawArrow(const Frame& frame, CanvasPoint at, double x, double y) {
    constexpr double Long = 7;
    constexpr double Broad = 4.5;
    const auto head = [&](double size) {
        return std::array{
            CanvasPoint{at.X + x * Long * size, at.Y + y * Long * size},
            CanvasPoint{at.X - (x * Long - y * Broad * 2) * size / 2, at.Y - (y * Long + x * Broad * 2) * size / 2},
            CanvasPoint{at.X - (x * Long + y * Broad * 2) * size / 2, at.Y - (y * Long - x * Broad * 2) * size / 2}};
    };
    frame.On.FillShape(head(1.45), frame.Look.Inks.Base, 1);
    frame.On.FillShape(head(1), frame.Look.Inks.Text, 1);
}

/// Where arrow heads stand, so that they do not pile up: by whether they point to the right.
struct ArrowCells {
    static constexpr double Side = 60;
    explicit ArrowCells(const CanvasBox& area) : Left(area, 2 / Side), Right(area, 2 / Side) {}
    Cells Left;
    Cells Right;
};

/// Arrow heads along the way, as far from each other as they tell the direction without hiding the colours.
void DrawArrows(const Frame& frame, int item, ArrowCells& taken) {
    constexpr double Distance = 130;
    constexpr double LeastWay = 3;
    double left = Distance / 2;
    ForLines(frame, item, AllClasses, nullptr, [&](const std::vector<CanvasPoint>& line) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            const double x = line[i].X - line[i - 1].X;
            const double y = line[i].Y - line[i - 1].Y;
            const double length = std::hypot(x, y);
            left -= length;
            if (left > 0 || length < LeastWay) continue;
            const CanvasPoint middle{line[i - 1].X + x / 2, line[i - 1].Y + y / 2};
            if (frame.IsAtNode(middle)) continue;
            left = Distance;
            if ((x > 0 ? taken.Right : taken.Left).Add(middle, middle))
                DrawArrow(frame, middle, x / length, y / length);
        }
    });
}

void DrawEnds(const Frame& frame, int item) {
    const auto& points = frame.Scene.Track(item).Points();
    if (points.empty()) return;
    DrawEndMarker(frame.On, frame.PlaceOf(points.back().At), MarkerSize, frame.Look.Inks, false);
    DrawEndMarker(frame.On, frame.PlaceOf(points.front().At), MarkerSize, frame.Look.Inks, true);
}

bool Overlap(const CanvasBox& a, const CanvasBox& b) {
    return a.X < b.X + b.Width && b.X < a.X + a.Width && a.Y < b.Y + b.Height && b.Y < a.Y + a.Height;
}

bool IsInside(const CanvasBox& inner, const CanvasBox& outer) {
    return inner.X >= outer.X && inner.Y >= outer.Y && inner.X + inner.Width <= outer.X + outer.Width &&
           inner.Y + inner.Height <= outer.Y + outer.Height;
}

/// The nodes with those of their names that find room beside them.
void DrawNodes(const Frame& frame, std::vector<CanvasBox> taken) {
    constexpr double Size = 15;
    constexpr double Space = 3;
    const TextStyle style{.Size = frame.Look.TextSize, .IsBold = true, .Ink = frame.Look.Inks.Text};
    const auto& nodes = frame.Scene.Contents().Nodes;
    const auto take = [&](CanvasPoint at, double size) {
        taken.push_back({at.X - size / 2, at.Y - size / 2, size, size});
    };
    if (frame.HasMarks()) {
        for (int item = 1; item <= frame.Scene.Items(); ++item) {
            const auto& points = frame.Scene.Track(item).Points();
            if (points.empty()) continue;
            take(frame.PlaceOf(points.front().At), MarkerSize);
            take(frame.PlaceOf(points.back().At), MarkerSize);
        }
    }
    std::vector<CanvasPoint> places;
    for (const WorldPoint& node : frame.Scene.Nodes()) places.push_back(frame.PlaceOf(node));
    for (const CanvasPoint& at : places) take(at, Size);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const CanvasPoint at = places[i];
        DrawNodeMarker(frame.On, at, Size, frame.Look.Inks);
        const double width = frame.On.TextWidth(nodes[i].Name, style) + 2 * Space;
        const double height = frame.On.LineHeight(style);
        const double aside = Size / 2;
        for (const CanvasBox& box : {CanvasBox{at.X + aside, at.Y - height / 2, width, height},
                                     CanvasBox{at.X - aside - width, at.Y - height / 2, width, height},
                                     CanvasBox{at.X - width / 2, at.Y - aside - height, width, height},
                                     CanvasBox{at.X - width / 2, at.Y + aside, width, height}}) {
            if (nodes[i].Name.empty() || !IsInside(box, frame.Window.Area) ||
                std::ranges::any_of(taken, [&](const CanvasBox& other) { return Overlap(box, other); }))
                continue;
            FillPanel(frame.On, box, frame.Look.Inks);
            frame.On.DrawText({box.X + Space, box.Y, box.Width - 2 * Space, box.Height}, nodes[i].Name, style);
            taken.push_back(box);
            break;
        }
    }
}

/// Base maps are made for dark lines. One that has nothing here is none.
MapLook UsedLook(MapLook look, const MapWindow& window) {
    if (look.Under != nullptr && !look.Under->Covers(window, look.Detail)) look.Under = nullptr;
    if (look.Under != nullptr) look.Inks = LightColours;
    return look;
}

}  // namespace

void DrawMap(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look) {
    canvas.DrawInside(window.Area, [&] {
        const MapLook used = UsedLook(look, window);
        canvas.FillBox(window.Area, used.Inks.Base);
        if (used.Under != nullptr) used.Under->Draw(canvas, window, look.Detail);
        const Frame frame(canvas, scene, window, used);
        DrawSetAside(frame);
        DrawTracks(frame);
        DrawLonePoints(frame);
        if (frame.HasMarks()) {
            ArrowCells arrows(window.Area);
            for (int item = 1; item <= scene.Items(); ++item) {
                DrawArrows(frame, item, arrows);
                DrawEnds(frame, item);
            }
        }
    });
    DrawOverTracks(canvas, scene, window, look);
}

void DrawOverTracks(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look) {
    canvas.DrawInside(window.Area, [&] {
        const MapLook used = UsedLook(look, window);
        const MapFurniture furniture(canvas, scene, window, used);
        furniture.Draw(canvas);
        DrawNodes(Frame(canvas, scene, window, used), furniture.Boxes());
    });
}

void DrawChosenTrack(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look, int item) {
    if (item < 1 || item > scene.Items()) return;
    canvas.DrawInside(window.Area, [&] {
        const MapLook used = UsedLook(look, window);
        const Frame frame(canvas, scene, window, used);
        ForLines(frame, item, AllClasses, nullptr, [&](const std::vector<CanvasPoint>& line) {
            canvas.DrawPolyline(
                line, {scene.Speeds().WidthOf(0) + ChosenBroader, used.Inks.Highlight, LinePattern::Solid, true});
        });
        for (int speed = SpeedScale::NoClass; speed >= 0; --speed)
            ForLines(frame, item, speed, nullptr, [&](const std::vector<CanvasPoint>& line) {
                canvas.DrawPolyline(line, {scene.Speeds().WidthOf(speed), scene.Speeds().InkOf(speed, used.Inks),
                                           LinePattern::Solid, true});
            });
        ArrowCells arrows(window.Area);
        DrawArrows(frame, item, arrows);
        DrawEnds(frame, item);
    });
}

}  // namespace vantor
