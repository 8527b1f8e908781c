#include <gmock/gmock.h>

#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "statistics/DetailedStatistics.h"
#include "statistics/OverlayPlot.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::IsEmpty, testing::Optional, testing::Pointwise;

constexpr int Node = NodeFlag;

/// Runs "R1" and so on in "/g/", every second of them before; 60 ft are 40.9 mph.
struct RunPlotsTest : testing::Test {
    MemoryFileSystem Files;
    Study TheStudy;
    TracedRuns Runs;

    void Put(const std::vector<std::vector<int>>& drives) {
        Files.CreateFolder("/g");
        for (const auto& feet : drives) {
            const int number = TheStudy.Record.RunCount + 1;
            RunRecord run = RunOfValues(feet);
            run.Header.RunDate = DateOf(2008, 3, 11);
            run.Header.RunTime = TimeOf(7, number);
            run.Header.Before = number % 2 == 0 ? -1 : 0;
            run.Header.After = number % 2 == 0 ? 0 : -1;
            PutRunFile(Files, run, "/g/", "R" + std::to_string(number));
            AppendRun(TheStudy, "R" + std::to_string(number));
        }
        Runs = ReadTracedRuns(TheStudy, Files, "/g/", MphSettings());
    }
    PlottedRuns Plotted() const {
        PlottedRuns runs;
        for (std::size_t i = 0; i < Runs.Traces.size(); ++i) runs.push_back({&Runs.Read.Runs[i], &Runs.Traces[i]});
        return runs;
    }
    DetailedStatistics Make(const RunFilter& filter = {}) const {
        return MakeDetailedStatistics(Runs, TheStudy, filter, {}, {});
    }
    static const PlotTrace& TraceOfItem(const Plot& plot, int item) {
        for (const auto& part : plot.Parts)
            if (const auto* trace = dynamic_cast<const PlotTrace*>(part.get()); trace != nullptr && trace->Item == item)
                return *trace;
        throw std::out_of_range("no such item");
    }
};

TEST_F(RunPlotsTest, RunsAreStretchedToTheMeanPlacesOfTheirNodes) {
    // Nodes at 100 and 120 ft, ends at 150 and 200: on the average 110 and 175.
    Put({{50, Node | 50, 0, 50}, {60, Node | 60, 40, 40}});
    const MeanPlaces places = MeanPlacesOf(Plotted());
    EXPECT_THAT(places.Feet, ElementsAre(0, 110, 175));
    EXPECT_THAT(places.Seconds, ElementsAre(0, 2, 4));
    const auto stretched = [&](std::size_t run) { return StretchedDistances(Plotted()[run], places); };
    EXPECT_THAT(stretched(0), Pointwise(testing::DoubleEq(), {0.0, 55.0, 110.0, 110.0, 175.0}));
    EXPECT_THAT(stretched(1), Pointwise(testing::DoubleEq(), {0.0, 55.0, 110.0, 142.5, 175.0}));

    const Plot plot = TimeSpacePlot(Plotted(), TimeSpaceClock::TimeOfDay, "", {});
    EXPECT_EQ(plot.Axes.Across.Whole, (PlotRange{7 * 3600 + 60, 7 * 3600 + 124}));
    EXPECT_NE(TraceOfItem(plot, 1).Pattern, TraceOfItem(plot, 2).Pattern) << "told apart without colour";
    EXPECT_EQ(TraceOfItem(plot, 2).Points[2].X, 7 * 3600 + 122);
    EXPECT_EQ(TraceOfItem(plot, 2).Points[2].Y, 110);
    EXPECT_EQ(plot.Items[1].Text, "R2\n03/11/08 07:02, before\n4 s, 0 s stopped, 0 stops");
}

TEST_F(RunPlotsTest, AStopLowersThePieceInWhichItHappens) {
    std::vector<int> steady(100, 50);
    std::vector<int> stops = steady;
    stops.insert(stops.begin() + 50, 9, 0);
    Put({steady, steady, stops, stops, stops});
    const auto band = SpeedBand(Plotted(), MeanPlacesOf(Plotted()));
    ASSERT_EQ(band.size(), 250U);
    const double mph = 50 / FeetPerSecondOfMph;
    EXPECT_THAT(band[124].P50, Optional(testing::DoubleNear(mph, 1e-6)));
    // 20 ft in 0.4 s and the 9 s of the stop.
    EXPECT_THAT(band[125].P15, Optional(testing::DoubleNear(20 / 9.4 / FeetPerSecondOfMph, 1e-6)));
    EXPECT_THAT(band[125].P85, Optional(testing::DoubleNear(mph, 1e-6)));
    const Plot overlay = OverlayPlot(Plotted(), false, "", {});
    EXPECT_NE(TraceOfItem(overlay, 1).Pattern, TraceOfItem(overlay, 2).Pattern)
        << "without a band, as their groups are";
    PlottedRuns four = Plotted();
    four.pop_back();
    EXPECT_EQ(SpeedBand(four, MeanPlacesOf(four))[0].P50, std::nullopt) << "percentiles take five runs";
}

TEST_F(RunPlotsTest, TheFilterHoldsForAll) {
    Put({{60, Node | 60, 60}, {60, Node | 60, 60, 60}, {60, 60}, {60, Node | 60, 60, 60, 60}, {60, Node | 60, 60}});
    TheStudy.Entries[1].Period = "AM";
    TheStudy.Entries[5].SetAside = "Detour";
    TheStudy.Entries[4].EntryRunName = "Gone";
    Runs = ReadTracedRuns(TheStudy, Files, "/g/", MphSettings());
    EXPECT_THAT(DifferentOf(Runs.Read.Runs, &MeasuredRun::Period), ElementsAre("AM", ""));

    const DetailedStatistics all = Make();
    EXPECT_THAT(all.Runs, ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(all.Plotted, ElementsAre(0, 1, 3)) << "one has another number of nodes";
    EXPECT_EQ(all.ItemOf(3), 3);
    EXPECT_EQ(all.ItemOf(2), 0);
    EXPECT_EQ(all.Apart, "Apart, with another number of nodes: R3 (no nodes, 2 s).");
    EXPECT_THAT(all.RestsOn, HasSubstr("4 runs, 1 day, 07:01 to 07:05; 1 of them set aside"));
    EXPECT_THAT(all.Warnings.back(), HasSubstr("1 run left out: Missing Run File: Gone"));
    EXPECT_THAT(all.Sections.Rows.back()[3].Text, "3.3") << "the total is of the runs that have these sections";
    EXPECT_THAT(all.ComparedSections.Rows, IsEmpty());

    EXPECT_THAT(Make({.WithoutSetAside = true}).Runs, ElementsAre(0, 1, 2));
    EXPECT_THAT(Make({.Period = "AM"}).Runs, ElementsAre(0));
    EXPECT_THAT(Make({.Period = ""}).Runs, ElementsAre(1, 2, 3));
    EXPECT_THAT(Make({.Of = RunFilter::Group::Before}).Runs, ElementsAre(1));
    const DetailedStatistics none = Make({.Period = "PM"});
    EXPECT_THAT(none.Summary.Rows, IsEmpty());
    EXPECT_THAT(none.TimeSpace.EmptyText, HasSubstr("Choose another period"));
}

TEST_F(RunPlotsTest, WhatIsNotDefinedIsNoNumber) {
    Put({{60, 0, 60}});
    const auto sheet = SheetOf(Make().Summary);
    const auto field = [&](const std::string& name) {
        for (const SheetRow& row : sheet)
            if (row[0].Text.starts_with(name)) return row[1];
        return SheetField{"no such row"};
    };
    EXPECT_EQ(field("Travel time (s)").Text, "3.0");
    EXPECT_TRUE(field("Travel time (s)").IsNumber);
    for (const char* name : {"Control delay (s)", "Travel time index", "Grade of the study's scale", "Farthest"})
        EXPECT_EQ(field(name).Text, "") << name;
}

}  // namespace
}  // namespace vantor
