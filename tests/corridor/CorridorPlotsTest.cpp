#include "corridor/CorridorPlots.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "Drives.h"
#include "corridor/BandDrag.h"
#include "fakes/RecordingCanvas.h"

namespace vantor {
namespace {

using testing::Contains, testing::DoubleNear, testing::ElementsAre, testing::Optional;

const PlotTrace& TraceOfItem(const Plot& plot, int item) {
    for (const auto& part : plot.Parts)
        if (const auto* trace = dynamic_cast<const PlotTrace*>(part.get()); trace != nullptr && trace->Item == item)
            return *trace;
    throw std::out_of_range("no such item");
}

TEST(CorridorPlotsTest, RunsLieOnTheDistancesOfTheCorridor) {
    Drives drives;
    auto longer = Drives::Drive(0);
    longer.insert(longer.begin() + 30, 5, Drives::Pace);  // 1200 ft from Oak to Elm
    drives.Add(longer);
    drives.Add(Drives::Drive(0), {.SetNodes = {{0, 0}}});
    const WayAxis axis(drives.Street, Way::Forward);
    const auto first = axis.Align(drives.Runs[0]).At;
    EXPECT_DOUBLE_EQ(first[0], -1000) << "before the first node as measured";
    EXPECT_DOUBLE_EQ(first[25], 0);
    EXPECT_NEAR(first[40], 500, 1e-9) << "600 of 1200 ft";
    EXPECT_DOUBLE_EQ(first[55], 1000);
    EXPECT_DOUBLE_EQ(first.back(), 3000) << "behind the last node as measured";
    const auto partial = axis.Align(drives.Runs[1]).At;
    EXPECT_DOUBLE_EQ(partial[0], -1000) << "measured backwards from Elm, the first node that it passes";
    EXPECT_DOUBLE_EQ(WayAxis(drives.Street, Way::Back).PlaceOf(0), 2000);

    const auto bands = axis.Bands({.OwnBands = {{1, {300, 100}}}});
    EXPECT_EQ(bands[0].To, 400);
    EXPECT_EQ(bands[1].From, 700);
    EXPECT_TRUE(bands[1].IsOwn);
    drives.Street.Nodes[0].Around.DownstreamFt = 500;
    EXPECT_EQ(axis.Bands()[0].To, 450) << "where two would overlap they end in the middle";
    EXPECT_TRUE(axis.Bands()[1].IsCut);
    EXPECT_EQ(axis.Bounds(), (PlotRange{-600, 2400}));
}

TEST(CorridorPlotsTest, ARunIsAnItemWithItsOwnBands) {
    Drives drives;
    drives.Add(Drives::Drive(30), {.OwnBands = {{1, {300, 100}}}});
    drives.Add(Drives::Drive(0), {.IsBefore = false});
    drives.Add(Drives::Drive(0), {.SetAside = "rain"});
    drives.Add(Drives::Drive(0), {.IsBefore = false});
    EXPECT_THAT(PlottedRunsOf(drives.Street, drives.Runs, {}, Way::Forward), ElementsAre(0, 1, 3));
    const Plot plot = CorridorProfilePlot(drives.Street, drives.Runs, {}, Way::Forward, {});
    ASSERT_EQ(plot.Items.size(), 3);
    EXPECT_EQ(plot.Items[0].Text,
              "R1\n03/11/08 07:00, before\n80 s from its first node to its last, 30 s stopped, 1 stop");
    EXPECT_EQ(plot.Axes.Across.Whole, (PlotRange{-1000, 3000})) << "lead and tail are there";
    const auto ownBorders = [&](int item, const CorridorLook& look) {
        RecordingCanvas canvas;
        const Plot shown = CorridorProfilePlot(drives.Street, drives.Runs, {}, Way::Forward, look);
        if (item > 0)
            DrawChosen(canvas, {0, 0, 800, 400}, shown, {}, shown.Whole(), item);
        else
            DrawPlot(canvas, {0, 0, 800, 400}, shown, {}, shown.Whole());
        return std::ranges::count_if(canvas.Lines, [](const auto& line) {
            return line.Style.Pattern == LinePattern::Dotted && line.Points[0].X == line.Points[1].X;
        });
    };
    EXPECT_EQ(ownBorders(1, {}), 2);
    EXPECT_EQ(ownBorders(2, {}), 0);
    EXPECT_EQ(ownBorders(0, {}), 0) << "only where the run is chosen";
    EXPECT_EQ(ownBorders(0, {.Chosen = 0}), 2) << "or the picture is of it";
    EXPECT_FALSE(CorridorProfilePlot(drives.Street, drives.Runs, {}, Way::Back, {}).EmptyText.empty());
    EXPECT_FALSE(CorridorProfilePlot({}, {}, {}, Way::Forward, {}).EmptyText.empty());
}

TEST(CorridorPlotsTest, TimesCountFromTheFirstBandOrByTheClockWithTheGreens) {
    Drives drives;
    drives.Street.Nodes[0].Timings = drives.Street.Nodes[1].Timings = {{{}, {}, "", 80, 10, 30}};
    drives.Add(Drives::Drive(30));
    const auto whole = Drives::Drive(0);
    drives.Add({whole.begin() + 20, whole.end()});
    const auto plot = [&](TimeSpaceClock clock) {
        return CorridorTimeSpacePlot(drives.Street, drives.Runs, {}, Way::Forward, clock, {});
    };
    const Plot fromStart = plot(TimeSpaceClock::FromStart);
    EXPECT_DOUBLE_EQ(TraceOfItem(fromStart, 1).Points[10].X, 0);
    EXPECT_DOUBLE_EQ(TraceOfItem(fromStart, 1).Points[10].Y, -600);
    EXPECT_DOUBLE_EQ(TraceOfItem(fromStart, 2).Points[0].X, 10) << "200 ft before Oak, when the other one is there";
    const Plot byClock = plot(TimeSpaceClock::TimeOfDay);
    EXPECT_DOUBLE_EQ(TraceOfItem(byClock, 1).Points[0].X, 7 * 3600);

    RecordingCanvas canvas;
    const CanvasBox box{0, 0, 900, 400};
    DrawPlot(canvas, box, byClock, {}, byClock.Whole());
    const PlotMap map = MapOf(canvas, box, byClock, {}, byClock.Whole());
    std::vector<double> begins;
    for (const auto& shape : canvas.Shapes)
        if (shape.Outline.front().Y < map.YOf(0) && shape.Outline.back().Y > map.YOf(0) && shape.Opacity > 0.5)
            begins.push_back(map.ValueAt(shape.Outline.front()).X - 7 * 3600);
    EXPECT_THAT(begins, ElementsAre(DoubleNear(10, 0.01), DoubleNear(90, 0.01))) << "at Oak, in 130 s";
    const auto isLink = [](const auto& shape) { return shape.Opacity < 0.2; };
    const auto link = std::ranges::find_if(canvas.Shapes, isLink);
    ASSERT_NE(link, canvas.Shapes.end());
    EXPECT_NEAR(map.ValueAt(link->Outline[0]).X - 7 * 3600, 10, 0.01);
    EXPECT_NEAR(map.ValueAt(link->Outline[1]).X - 7 * 3600, 40 - 1000 / 44.0, 0.01)
        << "1000 ft at 30 mph, 44 ft/s, end with the green at Elm";
    EXPECT_EQ(std::ranges::count_if(canvas.Shapes, isLink), 2) << "Pine has no timing";
}

TEST(CorridorPlotsTest, BordersMoveByWholeFeetUpToTheNodesBeside) {
    Drives drives;
    BandDrag drag(drives.Street, Way::Back, {});
    EXPECT_EQ(drag.Borders().front(), (BandBorder{2, false})) << "in the order of the way";
    EXPECT_EQ(drag.BorderAt(1395, 10), (BandBorder{1, true}));
    EXPECT_EQ(drag.BorderAt(1395, 3), std::nullopt);
    EXPECT_EQ(drag.NodeAt(1300, 0), 1);
    drag.MoveTo(500);
    EXPECT_EQ(drag.Release(), std::nullopt) << "nothing is grabbed";
    drag.Grab(BandBorder{1, false});
    drag.MoveTo(650.4);
    EXPECT_EQ(drag.InWords(drives.Street, {1, false}, {}), "Elm: the band begins 350 ft before the node");
    EXPECT_EQ(drag.Release(), (Band{350, 400}));
    drag.MoveTo(-3000);
    EXPECT_THAT(drag.Moved(), Optional(Band{1000, 400})) << "not past the node before";
    drag.MoveTo(3000);
    EXPECT_THAT(drag.Moved(), Optional(Band{0, 400})) << "not past its node";
    drag.MoveBy(-10);
    drag.MoveBy(1);
    EXPECT_THAT(drag.Moved(), Optional(Band{9, 400}));
    drag.Cancel();
    EXPECT_EQ(drag.Release(), std::nullopt);
    int borders = 0;
    for (drag.Grab({}); drag.GrabNext(true);) ++borders;
    EXPECT_EQ(borders, 6);
}

TEST(CorridorPlotsTest, BandsAreProposedWhereRunsSlowDown) {
    Drives drives;
    const auto slowing = [](int standing, int seconds) {
        auto feet = Drives::Drive(standing);
        for (int i = 0; i < seconds; ++i) {
            const int slower = Drives::Pace * i / seconds;
            feet[static_cast<std::size_t>(44 - i)] = slower;
            int& starting = feet[static_cast<std::size_t>(45 + standing + i)];
            starting = (starting & NodeFlag) | slower;
        }
        return feet;
    };
    // They drive less far between the marks than the street is long there.
    const auto nodes = [](int standing) {
        return std::vector<SetNode>{{0, 25}, {1, 50 + standing}, {2, 75 + standing}};
    };
    drives.Add(slowing(5, 16), {.SetNodes = nodes(5)});
    drives.Add(slowing(40, 8), {.SetNodes = nodes(40)});
    drives.Add(Drives::Drive(0));
    drives.Add(slowing(20, 20), {.SetAside = "rain", .SetNodes = nodes(20)});
    const auto proposals = ProposeBands(drives.Street, drives.Runs, Way::Forward, MphSettings().SpeedFactor);
    ASSERT_EQ(proposals.size(), 3);
    EXPECT_EQ(proposals[0].Common, std::nullopt) << "nobody is delayed there";
    ASSERT_EQ(proposals[1].Runs.size(), 3);
    EXPECT_EQ(proposals[1].Runs[2].Around, std::nullopt);
    ASSERT_TRUE(proposals[1].Runs[0].Around && proposals[1].Runs[1].Around && proposals[1].Common);
    EXPECT_EQ(proposals[1].Runs[1].Around, (Band{230, 170}))
        << "u is 39 ft/s at the last but one second of 40 ft/s before the 140 ft of braking and 50 ft of starting, and "
           "at the second one behind 90 ft";
    EXPECT_GT(proposals[1].Runs[0].Around->UpstreamFt, 300) << "it brakes for 16 s";
    EXPECT_EQ(proposals[1].Common, proposals[1].Runs[0].Around);
}

}  // namespace
}  // namespace vantor
