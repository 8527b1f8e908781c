#include "plots/Plot.h"

#include <gmock/gmock.h>

#include <cmath>

#include "fakes/RecordingCanvas.h"
#include "plots/NamesInRow.h"
#include "plots/PlotReduction.h"
#include "plots/TextsApart.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::IsEmpty, testing::SizeIs;

TEST(PlotMap, ZoomsAboutAPlaceAndStaysWithinTheWhole) {
    const PlotWindow whole{{0, 100}, {10, 20}};
    const PlotWindow half = ZoomedWindow(whole, whole, {25, 20}, 2, true);
    EXPECT_EQ(half, (PlotWindow{{12.5, 62.5}, {15, 20}})) << "25 stays a quarter of the way, 20 the upper edge";
    EXPECT_EQ(ZoomedWindow(whole, whole, {25, 20}, 2, false).Up, whole.Up);
    EXPECT_EQ(ZoomedWindow(half, whole, {60, 16}, 1e-3, true), whole);
    EXPECT_NEAR(ZoomedWindow(half, whole, {60, 16}, 1e9, true).Across.Span(), 0.2, 1e-9) << "a five-hundredth";
    EXPECT_EQ(MovedWindow(half, whole, -1000, 1000), (PlotWindow{{0, 50}, {15, 20}}));

    const PlotMap map({10, 20, 200, 50}, half);
    EXPECT_EQ(map.XOf(12.5), 10);
    EXPECT_EQ(map.YOf(20), 20);
    EXPECT_DOUBLE_EQ(map.YOf(15), 70);
    EXPECT_DOUBLE_EQ(map.ValueAt({110, 45}).X, 37.5);
    EXPECT_DOUBLE_EQ(map.ValueAt({110, 45}).Y, 17.5);
}

TEST(PlotAxes, StepsAreRoundAndTextsAsExactAsTheyAre) {
    const auto texts = [](AxisValues values, PlotRange range, double least, bool isWhole = false) {
        std::string all;
        for (const AxisTick& tick : AxisTicks({"", range, values, isWhole}, range, least)) all += tick.Text + " ";
        return all;
    };
    EXPECT_EQ(texts(AxisValues::Numbers, {-0.3, 0.5}, 0.15), "-0.2 0.0 0.2 0.4 ");
    EXPECT_EQ(texts(AxisValues::Numbers, {0, 0.02}, 0.0021), "0.000 0.005 0.010 0.015 0.020 ");
    EXPECT_EQ(texts(AxisValues::Numbers, {0, 9000}, 2000), "0 2000 4000 6000 8000 ");
    EXPECT_EQ(texts(AxisValues::Numbers, {0.6, 3.4}, 0.1, true), "1 2 3 ") << "there is no half run";
    EXPECT_EQ(texts(AxisValues::Minutes, {-40, 130}, 45), "0:00 1:00 2:00 ");
    EXPECT_EQ(texts(AxisValues::Clock, {24700, 30000}, 1000), "07:00 07:30 08:00 ");
    EXPECT_EQ(texts(AxisValues::Clock, {86395, 86405}, 4), "23:59:55 00:00:00 00:00:05 ");
}

TEST(PlotReduction, LeavesOutOnlyWhatCannotBeSeen) {
    const PlotMap map({0, 0, 1000, 500}, {{0, 1000}, {0, 500}});
    std::vector<PlotPoint> straight;
    for (int i = 0; i <= 600; ++i) straight.push_back({double(i), i * 0.5});
    EXPECT_THAT(ReducedLine(straight, map, 0.3), SizeIs(2));
    EXPECT_THAT(ReducedLine({}, map, 0.3), IsEmpty());

    // A drive with stops: every point lies close to the line that is left.
    std::vector<PlotPoint> drive;
    double distance = 0;
    for (int i = 0; i < 900; ++i) {
        distance += i % 100 < 30 ? 0 : 0.7 + 0.3 * std::sin(i * 0.05);
        drive.push_back({double(i), distance});
    }
    const std::vector<CanvasPoint> line = ReducedLine(drive, map, 0.3);
    EXPECT_LT(line.size(), 300);
    for (const PlotPoint& point : drive) {
        const CanvasPoint place = map.Of(point);
        const auto after = std::ranges::find_if(line, [&](CanvasPoint end) { return end.X >= place.X; });
        ASSERT_NE(after, line.end());
        const CanvasPoint from = after == line.begin() ? *after : *(after - 1);
        const double share = after->X > from.X ? (place.X - from.X) / (after->X - from.X) : 0;
        EXPECT_NEAR(from.Y + share * (after->Y - from.Y), place.Y, 0.5) << point.X;
    }

    const PlotMap part({0, 0, 1000, 500}, {{100.5, 110.5}, {0, 500}});
    const std::vector<CanvasPoint> seen = ReducedLine(straight, part, 0.3);
    EXPECT_EQ(seen.front().X, part.XOf(100));
    EXPECT_EQ(seen.back().X, part.XOf(111));
}

Plot TwoRuns() {
    Plot plot;
    plot.Axes = {"Time and space", {"Time", {0, 100}, AxisValues::Minutes}, {"Distance (ft)", {0, 1000}}, {}};
    PlotTrace before;
    before.Points = {{0, 0}, {50, 500}, {100, 1000}};
    before.Item = 1;
    PlotTrace after;
    after.Points = {{0, 0}, {50, 900}, {100, 1000}};
    after.Pattern = LinePattern::Dashed;
    after.Item = 2;
    plot.Add(before);
    plot.Add(after);
    plot.Items = {{"NB-1\nBefore"}, {"NB-2\nAfter"}};
    return plot;
}

TEST(Plot, DrawsItsPartsAndFindsTheNearestItem) {
    const Plot plot = TwoRuns();
    const CanvasBox box{0, 0, 400, 300};
    RecordingCanvas canvas;
    DrawPlot(canvas, box, plot, {}, plot.Whole());
    ASSERT_THAT(canvas.Polylines, SizeIs(2));
    EXPECT_EQ(canvas.Polylines[1].Style.Pattern, LinePattern::Dashed);
    const PlotMap map = MapOf(canvas, box, plot, {}, plot.Whole());
    EXPECT_EQ(FindItem(plot, map, map.Of({25, 260}), 5).Item, 1);
    EXPECT_EQ(FindItem(plot, map, map.Of({75, 940}), 5).Item, 2) << "between its points";
    EXPECT_EQ(FindItem(plot, map, map.Of({50, 100}), 5).Item, 0);

    canvas = {};
    DrawChosen(canvas, box, plot, {}, plot.Whole(), 2);
    ASSERT_THAT(canvas.Polylines, SizeIs(1));
    EXPECT_EQ(canvas.Polylines[0].Points.back().Y, map.YOf(1000));
}

TEST(PlotParts, ABandEndsWhereItIsNotKnownAndGradesWhereTheAreaDoes) {
    const PlotMap map({0, 0, 100, 100}, {{0, 10}, {0, 100}});
    RecordingCanvas canvas;
    PlotBand band;
    band.HasEdges = false;
    band.Slices = {{1, {}}, {2, {{10, 30}}}, {3, {{15, 25}}}, {4, {}}, {5, {{1, 2}}}};
    band.Draw(canvas, map, {});
    ASSERT_THAT(canvas.Shapes, SizeIs(1)) << "one place alone has no surface";
    std::string corners;
    for (const CanvasPoint& corner : canvas.Shapes[0].Outline)
        corners += std::to_string(int(corner.X)) + "," + std::to_string(int(corner.Y)) + " ";
    EXPECT_EQ(corners, "20,70 30,75 30,85 20,90 ");

    canvas = {};
    PlotLayers grades;
    grades.Layers = {{10, "A"}, {20, "B"}, {35, "C"}, {55, "D"}, {80, "E"}, {0, "F"}};
    grades.Draw(canvas, PlotMap({0, 0, 100, 100}, {{0, 10}, {0, 40}}), {});
    std::vector<std::string> names;
    for (const auto& text : canvas.Texts) names.push_back(text.Shown);
    EXPECT_THAT(names, ElementsAre("A", "B", "C", "D")) << "the axis ends at 40 s";

    canvas = {};
    PlotLines nodes;
    nodes.Lines = {{50, "Oak"}, {51, "Elm"}, {80, "Main"}, {120, "far"}};
    nodes.Draw(canvas, map, {});
    EXPECT_THAT(canvas.Lines, SizeIs(3));
    names.clear();
    for (const auto& text : canvas.Texts) names.push_back(text.Shown);
    EXPECT_THAT(names, ElementsAre("Oak", "Main")) << "Elm would stand over Oak";
}

TEST(PlotAxes, TextsStandApartHoweverLittleRoomThereIs) {
    PlotAxes axes{"A study", {"Distance (ft)", {0, 9876}}, {"Speed (MPH)", {0, 60}}, {}};
    axes.Legend = {{.Caption = "Before"}, {.Caption = "After", .Surface = 0.2}, {.Caption = "Permitted error"}};
    PlotAxes named = axes;
    named.Across.Names = {{1000, "Before"}, {5000, "After"}};
    for (const PlotAxes& all : {axes, named})
        for (const double width : {120.0, 230.0, 700.0})
            for (const double span : {0.01, 3.0, 9876.0}) {
                RecordingCanvas canvas;
                const PlotWindow window{{all.Across.Whole.High - span, all.Across.Whole.High}, all.Up.Whole};
                const CanvasBox box{0, 0, width, 300};
                DrawAxes(canvas, box, all, {}, MapOf(canvas, box, all, {}, window));
                SCOPED_TRACE(std::to_string(width) + " " + std::to_string(span));
                ExpectTextsApart(canvas, width, 300);
            }
}

TEST(PlotParts, SpansArePointedAtOverTheirWholeLength) {
    PlotSpans means;
    means.Spans = {{{1, 203}, {{187, 219}}, 1}, {{2, 185}, {}, 2}};
    Plot plot;
    plot.Add(means);
    const PlotMap map({0, 0, 300, 100}, {{0, 3}, {150, 250}});
    EXPECT_EQ(FindItem(plot, map, {104, map.YOf(190)}, 6).Item, 1);
    EXPECT_EQ(FindItem(plot, map, {200, map.YOf(190)}, 6).Item, 2);
    EXPECT_EQ(FindItem(plot, map, {200, map.YOf(210)}, 6).Item, 0) << "its interval is not known";
}

TEST(NamesInRow, PartWhereTheyWouldMeetAndStayInTheirRow) {
    const auto rooms = [](const std::vector<RowName>& names, Crowded crowded) {
        std::vector<std::pair<double, double>> ends;
        for (const PlotRange& room : PlaceInRow(names, {0, 100}, 2, crowded)) ends.emplace_back(room.Low, room.High);
        return ends;
    };
    using testing::Pair;
    EXPECT_THAT(rooms({{5, 20, 20}, {50, 20, 20}, {95, 20, 20}}, Crowded::LeavesOut),
                ElementsAre(Pair(0, 20), Pair(40, 60), Pair(80, 100)));
    EXPECT_THAT(rooms({{40, 60, 10}, {60, 60, 10}}, Crowded::LeavesOut), ElementsAre(Pair(0, 49), Pair(51, 100)));
    EXPECT_THAT(rooms({{40, 20, 20}, {41, 20, 20}, {80, 20, 20}, {81, 20, 20}}, Crowded::LeavesOut),
                ElementsAre(Pair(19.5, 39.5), Pair(41.5, 61.5), Pair(70, 90), Pair(71, 71)))
        << "the third cannot give way as far as the first, so the fourth is left out";
    EXPECT_THAT(rooms({{10, 30, 30}, {20, 30, 30}}, Crowded::MovesApart), ElementsAre(Pair(0, 30), Pair(32, 62)));
}

}  // namespace
}  // namespace vantor
