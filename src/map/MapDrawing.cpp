#include "map/MapDrawing.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "map/MapLegend.h"

namespace vantor {
namespace {

/// Beyond so many tracks their ends and arrows would be a heap.
constexpr int MostMarkedTracks = 12;
constexpr double MarkerSize = 9;
constexpr double Halo = 1.5;
/// How much broader a track is drawn that is chosen.
constexpr double ChosenBroader = 4;
constexpr double ChosenOpacity = 0.45;

/// What the parts of a drawing share.
struct Frame {
    Canvas& On;
    const MapScene& Scene;
    const MapWindow& Window;
    const MapLook& Look;
    int Level;
    WorldBox View;

    Frame(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look)
        : On(canvas),
          Scene(scene),
          Window(window),
          Look(look),
          Level(scene.LevelFor(window, look.Detail)),
          View(window.View(ChosenBroader)) {}
};

/// Gives the lines of one class in view, a line going on as long as it keeps to the class.
template <class Take>
void ForLines(const Frame& frame, int item, int speedClass, Take take) {
    std::vector<CanvasPoint> line;
    const auto end = [&] {
        if (line.size() > 1) take(line);
        line.clear();
    };
    for (const ThinnedTrack::Run& run : frame.Scene.Thinned(item).Seen(frame.Level, frame.View)) {
        for (std::size_t i = 1; i < run.size(); ++i) {
            if (run[i].Begins || (speedClass >= 0 && run[i].Speed != speedClass)) {
                end();
                continue;
            }
            if (line.empty()) line.push_back(frame.Window.PlaceOf(run[i - 1].At));
            line.push_back(frame.Window.PlaceOf(run[i].At));
        }
        end();
    }
}

bool IsSpeck(const std::vector<CanvasPoint>& line, double size) {
    return std::ranges::all_of(line, [&](CanvasPoint point) {
        return std::hypot(point.X - line[0].X, point.Y - line[0].Y) < size;
    });
}

void DrawSetAside(const Frame& frame) {
    for (int item = 1; item <= frame.Scene.Items(); ++item) {
        if (!frame.Scene.Track(item).IsSetAside) continue;
        ForLines(frame, item, -1, [&](const std::vector<CanvasPoint>& line) {
            frame.On.DrawPolyline(line, {1.5, frame.Look.Inks.Node, LinePattern::Dashed, true});
        });
    }
}

/// The tracks by class, the slowest on top. Over a base map they have an edge.
void DrawTracks(const Frame& frame) {
    const MapLook& look = frame.Look;
    const SpeedScale& speeds = frame.Scene.Speeds();
    const auto forTracks = [&](int speedClass, auto take) {
        for (int item = 1; item <= frame.Scene.Items(); ++item)
            if (!frame.Scene.Track(item).IsSetAside) ForLines(frame, item, speedClass, take);
    };
    if (look.Under != nullptr)
        forTracks(-1, [&](const std::vector<CanvasPoint>& line) {
            frame.On.DrawPolyline(line, {speeds.WidthOf(0) + 2 * Halo, look.Inks.Base, LinePattern::Solid, true});
        });
    for (int speed = SpeedScale::NoClass; speed >= 0; --speed) {
        const double width = speeds.WidthOf(speed);
        forTracks(speed, [&](const std::vector<CanvasPoint>& line) {
            // A stop would be a line without length.
            if (speed == 0 && IsSpeck(line, width)) return frame.On.DrawDot(line[0], width, speeds.InkOf(speed, look.Inks));
            frame.On.DrawPolyline(line, {width, speeds.InkOf(speed, look.Inks), LinePattern::Solid, true});
        });
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
                frame.On.DrawDot(frame.Window.PlaceOf(run[i].At), 4, ink);
            }
        }
    }
}

void DrawArrow(const Frame& frame, CanvasPoint at, double x, double y) {
    constexpr double Long = 7;
    constexpr double Broad = 4.5;
    const auto head = [&](double size) {
        return std::array{CanvasPoint{at.X + x * Long * size, at.Y + y * Long * size},
                          CanvasPoint{at.X - (x * Long - y * Broad * 2) * size / 2, at.Y - (y * Long + x * Broad * 2) * size / 2},
                          CanvasPoint{at.X - (x * Long + y * Broad * 2) * size / 2, at.Y - (y * Long - x * Broad * 2) * size / 2}};
    };
    frame.On.FillShape(head(1.45), frame.Look.Inks.Base, 1);
    frame.On.FillShape(head(1), frame.Look.Inks.Text, 1);
}

/// Arrow heads along the way, as far from each other as they tell the direction without hiding the colours.
void DrawArrows(const Frame& frame, int item) {
    constexpr double Distance = 130;
    constexpr double LeastWay = 3;
    double left = Distance / 2;
    ForLines(frame, item, -1, [&](const std::vector<CanvasPoint>& line) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            const double x = line[i].X - line[i - 1].X;
            const double y = line[i].Y - line[i - 1].Y;
            const double length = std::hypot(x, y);
            left -= length;
            if (left > 0 || length < LeastWay) continue;
            const double part = 0.5;
            DrawArrow(frame, {line[i - 1].X + x * part, line[i - 1].Y + y * part}, x / length, y / length);
            left = Distance;
        }
    });
}

void DrawEnds(const Frame& frame, int item) {
    const auto& points = frame.Scene.Track(item).Points();
    if (points.empty()) return;
    DrawEndMarker(frame.On, frame.Window.PlaceOf(points.back().At), MarkerSize, frame.Look.Inks, false);
    DrawEndMarker(frame.On, frame.Window.PlaceOf(points.front().At), MarkerSize, frame.Look.Inks, true);
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
    constexpr double Size = 8;
    constexpr double Space = 3;
    const TextStyle style{.Size = frame.Look.TextSize, .IsBold = true, .Ink = frame.Look.Inks.Text};
    const auto& nodes = frame.Scene.Contents().Nodes;
    std::vector<CanvasPoint> places;
    for (const WorldPoint& node : frame.Scene.Nodes()) places.push_back(frame.Window.PlaceOf(node));
    for (const CanvasPoint& at : places) taken.push_back({at.X - Size / 2, at.Y - Size / 2, Size, Size});
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const CanvasPoint at = places[i];
        DrawNodeMarker(frame.On, at, Size, frame.Look.Inks);
        const double width = frame.On.TextWidth(nodes[i].Name, style) + 2 * Space;
        const double height = frame.On.LineHeight(style);
        const double aside = Size / 2 + Space;
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

}  // namespace

void DrawMap(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look) {
    canvas.DrawInside(window.Area, [&] {
        MapLook used = look;
        if (look.Under == nullptr || !look.Under->Draw(canvas, window, look.Detail)) used.Under = nullptr;
        // Base maps are made for dark lines.
        if (used.Under != nullptr) used.Inks = LightColours;
        const Frame frame(canvas, scene, window, used);
        DrawSetAside(frame);
        DrawTracks(frame);
        DrawLonePoints(frame);
        if (scene.Items() <= MostMarkedTracks) {
            for (int item = 1; item <= scene.Items(); ++item) {
                DrawArrows(frame, item);
                DrawEnds(frame, item);
            }
        }
        const MapFurniture furniture(canvas, scene, window, used);
        DrawNodes(frame, furniture.Boxes());
        furniture.Draw(canvas);
    });
}

void DrawChosenTrack(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look, int item) {
    if (item < 1 || item > scene.Items()) return;
    canvas.DrawInside(window.Area, [&] {
        const Frame frame(canvas, scene, window, look);
        ForLines(frame, item, -1, [&](const std::vector<CanvasPoint>& line) {
            canvas.DrawPolyline(line, {scene.Speeds().WidthOf(0) + ChosenBroader, look.Inks.Highlight, LinePattern::Solid, true});
        });
        for (int speed = SpeedScale::NoClass; speed >= 0; --speed)
            ForLines(frame, item, speed, [&](const std::vector<CanvasPoint>& line) {
                canvas.DrawPolyline(line, {scene.Speeds().WidthOf(speed), scene.Speeds().InkOf(speed, look.Inks),
                                           LinePattern::Solid, true});
            });
        DrawArrows(frame, item);
        DrawEnds(frame, item);
    });
}

}  // namespace vantor
