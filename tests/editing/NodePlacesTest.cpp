#include "editing/NodePlaces.h"

#include <gmock/gmock.h>

#include "RunScene.h"
#include "editing/forms/frmNodePlaces.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

using testing::ElementsAre;

/// 60 seconds of 50 ft northwards, 100 ft further along the road where `isLate`; a degree of latitude is 364,813 ft.
RunRecord Northwards(bool isLate, bool hasPositions = true) {
    RunRecord run = RunOf(std::vector<int>(60, 50));
    for (int i = 1; hasPositions && i <= 60; ++i) {
        run.RunSamples[i].Latitude = 40 + (50.0 * i + (isLate ? 100 : 0)) / 364813;
        run.RunSamples[i].Longitude = -75;
    }
    return run;
}

std::vector<int> NodesOf(const RunRecord& run) {
    std::vector<int> nodes;
    for (int i = 1; i <= run.SampleValues.LastIndex(); ++i)
        if (HasNode(run.SampleValues[i])) nodes.push_back(i);
    return nodes;
}

/// The study's run "A" is one of a counter with nodes of its own, "B" has positions and none, "C" is short.
class NodePlacesTest : public RunScene<FormScene<frmNodePlaces>> {
protected:
    NodePlacesTest() : RunScene(RunWithNodes()) {
        RunRecord late = Northwards(true);
        RunRecord brief = RunOf({50, 50, 50});
        for (auto& [name, run] : {std::pair("B", &late), {"C", &brief}}) {
            PutRunFile(Files, *run, Group, name);
            AppendRun(State.CurrentStudy, name);
        }
        From = Northwards(false);
        for (const int node : {20, 40}) From.SampleValues[node] = static_cast<std::int16_t>(Node | 50);
        Name(From.Header, {"", "Ash", "Birch"});
    }

    RunRecord From;
};

TEST_F(NodePlacesTest, ANodeIsWhereTheRunPassesThePlaceElseAtItsDistance) {
    const auto places = PlacesOf(From);
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[1].Feet, 2000);
    // The late run has come as far 2 seconds earlier.
    const PlacedNodes byPosition = PlaceNodesAt(Northwards(true), places, {});
    EXPECT_THAT(NodesOf(byPosition.Run), ElementsAre(18, 38));
    EXPECT_EQ(byPosition.Run.Header.SectionDist[1], 18 * 50);
    EXPECT_THAT(NodesOf(PlaceNodesAt(Northwards(true, false), places, {}).Run), ElementsAre(20, 40));
    const auto away = PlaceNodesAt(Northwards(false), {{10, "Elm", Position{40.1, -75}}}, {});
    EXPECT_THAT(away.OutOfReach, ElementsAre("Elm: passed 33531 ft away"));

    // Nodes so far go, a key in the second of one counts again, and the names of start and end stay.
    const PlacedNodes again = PlaceNodesAt(RunWithNodes(), {{71, "New", {}}, {72, "Same", {}}, {900, "Far", {}}}, {});
    EXPECT_THAT(NodesOf(again.Run), ElementsAre(7));
    EXPECT_EQ(NamesOf(again.Run.Header, 4), "Start St|New|End St|");
    EXPECT_THAT(again.OutOfReach, ElementsAre("Same: no second of its own", "Far: beyond the run"));
}

TEST_F(NodePlacesTest, TickedRunsGetTheirNodesAllOrNoneAndKeepTheirFiles) {
    const auto other = Files.Bytes(Group + "B.rd2");
    Open(State.CurrentStudy, From);
    EXPECT_THAT(Rows(*Window, "vaRuns"),
                ElementsAre("A|3|0||Ash: beyond the run; Birch: beyond the run; its nodes so far are replaced",
                            "B|0|2|by position|", "C|0|0||Ash: beyond the run; Birch: beyond the run"));
    EXPECT_EQ(Text("lblCount"), "1 of 3 runs") << "nothing is taken away unasked";
    auto& places = Get<QTableWidget>("vaPlaces");
    Messages.Expect(
        "The distance of a place is a number above 0, counted from the start of the run.\nType another one, or remove "
        "the place.");
    places.item(0, 0)->setText("x");
    places.item(0, 0)->setText("130");
    EXPECT_EQ(Row(*Window, "vaPlaces", 0).back(), "none") << "a typed distance has no position";
    Press("btnTickAll");
    EXPECT_EQ(Text("lblCount"), "2 of 3 runs") << "one stays without a node";
    Files.FailChangeAfter(3, ErrorNumber::DiskFull);
    PressTold("btnOk", "Run-time error '61':\nDisk full\n\n" + Group + "B.rd2");
    EXPECT_FALSE(IsAccepted());
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore) << "all or none";

    Press("btnOk");
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(Window->Written(), 2);
    EXPECT_EQ(Backup(), FileBefore);
    EXPECT_EQ(Files.Bytes(Group + "B.rd2.bak"), other);
    EXPECT_THAT(NodesOf(OnDisk("B")), ElementsAre(3, 38));
    EXPECT_FALSE(Files.Bytes(Group + "C.rd2.bak"));
}

}  // namespace
}  // namespace vantor
