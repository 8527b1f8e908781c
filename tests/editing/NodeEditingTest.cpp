#include "editing/NodeEditing.h"

#include <gmock/gmock.h>

#include "plots/Profiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::int32_t> FeetOf(const NodeRows& rows) {
    std::vector<std::int32_t> feet;
    for (const NodeRow& row : rows) feet.push_back(row.Feet);
    return feet;
}

TEST(FindNodeSample, TheNearestSampleAndTheLaterOneOnATie) {
    const RunRecord run = RunOf({10, 10, 10, 0, 0, 20, 10});  // 10, 20, 30, 30, 30, 50, 60
    using Case = std::pair<double, std::optional<std::int32_t>>;
    for (const auto& [feet, sample] :
         {Case{0, 1}, Case{4.9, 1}, Case{10, 1}, Case{14.9, 1}, Case{15, 2}, Case{15.1, 2}, Case{20, 2}, Case{30, 5},
          Case{39, 5}, Case{40, 6}, Case{59, 7}, Case{60, std::nullopt}, Case{1e9, std::nullopt}})
        EXPECT_EQ(FindNodeSample(run, feet, NodeSearch::Nearest), sample) << feet;
    for (const RunRecord& nowhere : {RunOf({}), RunOf({10, 10}, 0)})
        EXPECT_EQ(FindNodeSample(nowhere, 0, NodeSearch::Nearest), std::nullopt);
}

TEST(FindNodeSample, ProbesBothSidesUpTo39SamplesAway) {
    using Case = std::pair<std::vector<int>, std::optional<std::int32_t>>;
    // The walk for 1000 ft ends at sample 101.
    for (const auto& [nodes, found] :
         {Case{{101, 102}, 101}, Case{{100, 102}, 102}, Case{{100, 103}, 100}, Case{{99, 103}, 103}, Case{{140}, 140},
          Case{{62}, 62}, Case{{61, 141}, std::nullopt}}) {
        std::vector<int> values(200, 10);
        for (const int sample : nodes) values[static_cast<std::size_t>(sample - 1)] |= Node;
        EXPECT_EQ(FindNodeSample(RunOf(values), 1000, NodeSearch::Flagged), found) << nodes.front();
    }
    EXPECT_EQ(FindNodeSample(RunOf({10, Node | 10}), 0, NodeSearch::Flagged), 2);
    EXPECT_EQ(FindNodeSample(RunOf({Node | 10, 10}), 10, NodeSearch::Flagged), 1);
}

TEST(NodeRows, AreStartFlaggedSamplesAndEnd) {
    RunRecord run = RunOf({10, Node | 10, 10, Node | 0x0C00 | 10, 10}, 1500);
    run.Header.SectionName[2] = "Birch";
    NodeRows rows = RowsOf(run);
    EXPECT_THAT(FeetOf(rows), ElementsAre(0, 30, 60, 75));
    EXPECT_EQ(rows[2].Name, "Birch");
    run.Header.CalConstant = 1000;
    MeasureRows(run, rows);
    EXPECT_THAT(FeetOf(rows), ElementsAre(0, 20, 40, 50));
    EXPECT_THAT(FeetOf(RowsOf(RunOf({}))), ElementsAre(0, 0));
    // Each sample's distance is rounded by itself: 1.5 gives 2, three times.
    EXPECT_THAT(FeetOf(RowsOf(RunOf({1, 1, 1}, 1500))), ElementsAre(0, 6));
}

TEST(ReverseNames, MovesOnlyTheNames) {
    RunRecord run = RunOf({10, Node | 10, 10, Node | 10, Node | 10, 10});
    Name(run.Header, {"A", "B", "C", "D", "E"});
    NodeRows rows = RowsOf(run);
    ReverseNames(rows);
    std::string names;
    for (const NodeRow& row : rows) names += row.Name;
    EXPECT_EQ(names, "EDCBA");
    EXPECT_THAT(FeetOf(rows), ElementsAre(0, 20, 40, 50, 60));
}

TEST(NodeRows, MoreNodesThanNames) {
    RunRecord run = RunOf(std::vector<int>(300, Node | 10));
    run.Header.SectionName[191] = "last name";
    NodeRows rows = RowsOf(run);
    ASSERT_EQ(rows.size(), 302u);
    EXPECT_TRUE(InsertRow(rows, 5).has_value());
    ReverseNames(rows);
    EXPECT_EQ(rows[0].Name + rows[301].Name, "last name");
    EXPECT_FALSE(PlaceNodes(run, rows, {}).has_value());
    EXPECT_EQ(run.Header.SectionName[0], "last name");
}

TEST(DeleteRow, ClearsTheFlagOfTheHighlightedNodeOnly) {
    RunRecord run = RunOf({10, Node | 10, Node | 0x0C00 | 10, 10, 10});
    const RunRecord before = run;
    NodeRows rows = RowsOf(run);
    EXPECT_FALSE(InsertRow(rows, 1).has_value());
    EXPECT_FALSE(DeleteRow(run, rows, 1).has_value());
    EXPECT_EQ(std::pair(run, rows), std::pair(before, RowsOf(before))) << "an inserted row takes no node with it";
    for (const int refused : {-1, 0, 3}) EXPECT_EQ(DeleteRow(run, rows, refused)->Text, "");
    EXPECT_FALSE(DeleteRow(run, rows, 1).has_value());  // the next second is a node, too
    EXPECT_EQ(run.SampleValues, RunOf({10, 10, Node | 0x0C00 | 10, 10, 10}).SampleValues);
    EXPECT_FALSE(DeleteRow(run, rows, 1).has_value());
    EXPECT_EQ(run.SampleValues[3], 0x0C00 | 10);
    EXPECT_EQ(rows.size(), 2u);
}

TEST(DeleteRow, SaysWhenThereIsNoSuchNode) {
    std::vector<int> longStop(60, 0);
    longStop.insert(longStop.begin(), {10, Node | 10});
    longStop.push_back(10);
    for (const RunRecord& run : {RunOf({10, Node | 10, 10}, 0), RunOf({10, Node | 10}), RunOf(longStop)}) {
        RunRecord edited = run;
        NodeRows rows = RowsOf(edited);
        EXPECT_EQ(DeleteRow(edited, rows, 1)->Text, "Could not find section node. Call Technical Support for help.");
        EXPECT_EQ(std::pair(edited, rows), std::pair(run, RowsOf(run)));
    }
}

/// Rows of a run with one inserted before row `row` for each typed distance.
NodeRows RowsWith(const RunRecord& run, int row, std::initializer_list<const char*> typed) {
    NodeRows rows = RowsOf(run);
    for (const char* distance : typed) {
        EXPECT_FALSE(InsertRow(rows, row).has_value());
        rows[static_cast<std::size_t>(row++)].TypedDistance = distance;
    }
    return rows;
}

TEST(PlaceNodes, FlagsTheNearestSampleAndKeepsItsPulses) {
    RunRecord run = RunOf({10, 10, Node | 10, 10, 0x0C00 | 10, 10});
    NodeRows rows = RowsWith(run, 2, {"50"});
    EXPECT_EQ(InsertRow(rows, 0)->Text, "");  // before the start: a beep
    InsertRow(rows, 1);
    rows[1].Name = "New";
    rows[1].TypedDistance = " 12.4 ";
    ASSERT_FALSE(PlaceNodes(run, rows, {}).has_value());
    EXPECT_EQ(run.SampleValues[1], static_cast<std::int16_t>(Node | 10));
    EXPECT_EQ(PulsesOf(run.SampleValues[5]), 10);
    EXPECT_THAT(FeetOf(RowsOf(run)), ElementsAre(0, 10, 30, 50, 60));
    EXPECT_EQ(run.Header.SectionName[1], "New");

    RunRecord metric = RunOf(std::vector<int>(10, 100));
    ASSERT_FALSE(PlaceNodes(metric, RowsWith(metric, 1, {"121.9"}), {true}).has_value());
    EXPECT_THAT(FeetOf(RowsOf(metric)), ElementsAre(0, 400, 1000));
}

TEST(PlaceNodes, NamesTheRowThatHasNoPlace) {
    using Case = std::tuple<const char*, const char*, int, const char*>;
    // Two rows between the nodes at 20 and 60 ft.
    for (const auto& [first, second, row, says] :
         {Case{"", "50", 2, "Row 3: "}, Case{"forty", "50", 2, "a number between 20 ft and 60 ft"},
          Case{"4e1", "50", 2, "Row 3: "}, Case{"20", "50", 2, "Row 3: "}, Case{"-30", "50", 2, "Row 3: "},
          Case{"40", "60", 3, "a number between 40 ft and 60 ft"}, Case{"50", "40", 3, "Row 4: "},
          Case{"40", "40", 3, "Row 4: "}, Case{"21", "50", 2, "no data point of its own"},
          Case{"40", "41", 3, "no data point of its own"}, Case{"40", "58", 3, "no data point of its own"}}) {
        RunRecord run = RunOf({10, Node | 10, 10, 10, 10, Node | 10, 10});
        const auto refusal = PlaceNodes(run, RowsWith(run, 2, {first, second}), {});
        ASSERT_TRUE(refusal.has_value()) << first << " " << second;
        EXPECT_THAT(refusal->Text, HasSubstr(says));
        EXPECT_EQ(refusal->Row, row) << first << " " << second;
        EXPECT_EQ(refusal->Field, NodeGrid);
    }
    // The last data point is the end of the run, which is a node without a flag.
    RunRecord run = RunOf({10, 10, 10});
    EXPECT_THAT(PlaceNodes(run, RowsWith(run, 1, {"28"}), {})->Text, HasSubstr("no data point of its own"));
}

}  // namespace
}  // namespace vantor
