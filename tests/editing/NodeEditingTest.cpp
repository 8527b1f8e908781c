#include "editing/NodeEditing.h"

#include <gmock/gmock.h>

#include "Profiles.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int Node = 0x8000;

std::vector<std::int32_t> FeetOf(const NodeRows& rows) {
    std::vector<std::int32_t> feet;
    for (const NodeRow& row : rows) feet.push_back(row.Feet);
    return feet;
}

TEST(FindNodeSample, TheNearestSampleAndTheLaterOneOnATie) {
    const RunRecord run = RunOf({10, 10, 10, 0, 0, 20, 10});  // 10, 20, 30, 30, 30, 50, 60
    struct Case {
        double Feet;
        std::optional<std::int32_t> Sample;
    };
    for (const Case& c : {Case{0, 1},
                          {4.9, 1},
                          {10, 1},
                          {14.9, 1},
                          {15, 2},
                          {15.1, 2},
                          {20, 2},
                          {30, 5},
                          {39, 5},
                          {40, 6},
                          {59, 7},
                          {60, std::nullopt},
                          {1e9, std::nullopt}})
        EXPECT_EQ(FindNodeSample(run, c.Feet, NodeSearch::Nearest), c.Sample) << c.Feet;
    EXPECT_EQ(FindNodeSample(RunOf({}), 0, NodeSearch::Nearest), std::nullopt);
    EXPECT_EQ(FindNodeSample(RunOf({10, 10}, 0), 0, NodeSearch::Nearest), std::nullopt);
}

TEST(FindNodeSample, ProbesBothSidesUpTo39SamplesAway) {
    // The walk for 1000 ft ends at sample 101.
    const auto found = [](std::vector<int> nodes) {
        std::vector<int> values(200, 10);
        for (const int sample : nodes) values[static_cast<std::size_t>(sample - 1)] |= Node;
        return FindNodeSample(RunOf(values), 1000, NodeSearch::Flagged);
    };
    EXPECT_EQ(found({101, 102}), 101);
    EXPECT_EQ(found({100, 102}), 102);
    EXPECT_EQ(found({100, 103}), 100);
    EXPECT_EQ(found({99, 103}), 103);
    EXPECT_EQ(found({140}), 140);
    EXPECT_EQ(found({62}), 62);
    EXPECT_EQ(found({61, 141}), std::nullopt);
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
    for (int node = 0; node < 5; ++node) run.Header.SectionName[node] = std::string(1, static_cast<char>('A' + node));
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
    EXPECT_EQ(rows[0].Name, "last name");
    EXPECT_EQ(rows[301].Name, "");
    EXPECT_FALSE(PlaceNodes(run, rows, {}).has_value());
    EXPECT_EQ(run.Header.SectionName[0], "last name");
}

TEST(DeleteRow, ClearsTheFlagOfTheHighlightedNodeOnly) {
    RunRecord run = RunOf({10, Node | 10, Node | 0x0C00 | 10, 10, 10});
    NodeRows rows = RowsOf(run);
    for (const int refused : {-1, 0, 3}) EXPECT_EQ(DeleteRow(run, rows, refused)->Text, "");
    EXPECT_FALSE(DeleteRow(run, rows, 1).has_value());  // the next second is a node, too
    EXPECT_FALSE(HasNode(run.SampleValues[2]));
    EXPECT_TRUE(HasNode(run.SampleValues[3]));
    EXPECT_FALSE(DeleteRow(run, rows, 1).has_value());
    EXPECT_EQ(run.SampleValues[3], 0x0C00 | 10);
    EXPECT_EQ(rows.size(), 2u);
}

TEST(DeleteRow, SaysWhenThereIsNoSuchNode) {
    const std::string notFound = "Could not find section node. Call Technical Support for help.";
    std::vector<int> longStop(60, 0);
    longStop.insert(longStop.begin(), {10, Node | 10});
    longStop.push_back(10);
    for (const RunRecord& run : {RunOf({10, Node | 10, 10}, 0), RunOf({10, Node | 10}), RunOf(longStop)}) {
        RunRecord edited = run;
        NodeRows rows = RowsOf(edited);
        EXPECT_EQ(DeleteRow(edited, rows, 1)->Text, notFound);
        EXPECT_EQ(edited, run);
        EXPECT_EQ(rows, RowsOf(run));
    }
}

TEST(DeleteRow, AnInsertedRowTakesNoNodeWithIt) {
    RunRecord run = RunOf({10, Node | 10, 10});
    NodeRows rows = RowsOf(run);
    EXPECT_FALSE(InsertRow(rows, 1).has_value());
    EXPECT_FALSE(DeleteRow(run, rows, 1).has_value());
    EXPECT_TRUE(HasNode(run.SampleValues[2]));
    EXPECT_EQ(rows, RowsOf(run));
}

TEST(PlaceNodes, FlagsTheNearestSampleAndKeepsItsPulses) {
    RunRecord run = RunOf({10, 10, Node | 10, 10, 0x0C00 | 10, 10});
    NodeRows rows = RowsOf(run);
    EXPECT_EQ(InsertRow(rows, 0)->Text, "");  // before the start: a beep
    InsertRow(rows, 2);
    InsertRow(rows, 1);
    rows[1].Name = "New";
    rows[1].TypedDistance = " 12.4 ";
    rows[3].TypedDistance = "50";
    ASSERT_FALSE(PlaceNodes(run, rows, {}).has_value());
    EXPECT_EQ(run.SampleValues[1], static_cast<std::int16_t>(Node | 10));
    EXPECT_EQ(PulsesOf(run.SampleValues[5]), 10);
    EXPECT_THAT(FeetOf(RowsOf(run)), ElementsAre(0, 10, 30, 50, 60));
    EXPECT_EQ(run.Header.SectionName[1], "New");
}

TEST(PlaceNodes, TakesMetres) {
    RunRecord run = RunOf(std::vector<int>(10, 100));
    NodeRows rows = RowsOf(run);
    InsertRow(rows, 1);
    rows[1].TypedDistance = "121.9";  // 400 ft
    ASSERT_FALSE(PlaceNodes(run, rows, {true}).has_value());
    EXPECT_THAT(FeetOf(RowsOf(run)), ElementsAre(0, 400, 1000));
}

TEST(PlaceNodes, NamesTheRowThatHasNoPlace) {
    struct Case {
        const char* First;
        const char* Second;
        int Row;
        const char* Says;
    };
    // Two rows between the nodes at 20 and 60 ft.
    for (const Case& c : {Case{"", "50", 2, "Row 3: "},
                          {"forty", "50", 2, "a number between 20 ft and 60 ft"},
                          {"4e1", "50", 2, "Row 3: "},
                          {"20", "50", 2, "Row 3: "},
                          {"-30", "50", 2, "Row 3: "},
                          {"40", "60", 3, "a number between 40 ft and 60 ft"},
                          {"50", "40", 3, "Row 4: "},
                          {"40", "40", 3, "Row 4: "},
                          {"21", "50", 2, "no data point of its own"},
                          {"40", "41", 3, "no data point of its own"},
                          {"40", "58", 3, "no data point of its own"}}) {
        RunRecord run = RunOf({10, Node | 10, 10, 10, 10, Node | 10, 10});
        NodeRows rows = RowsOf(run);
        InsertRow(rows, 2);
        InsertRow(rows, 2);
        rows[2].TypedDistance = c.First;
        rows[3].TypedDistance = c.Second;
        const auto refusal = PlaceNodes(run, rows, {});
        ASSERT_TRUE(refusal.has_value()) << c.First << " " << c.Second;
        EXPECT_THAT(refusal->Text, HasSubstr(c.Says));
        EXPECT_EQ(refusal->Row, c.Row) << c.First << " " << c.Second;
        EXPECT_EQ(refusal->Field, DetailsField::Distance);
    }
    // The last data point is the end of the run, which is a node without a flag.
    RunRecord run = RunOf({10, 10, 10});
    NodeRows rows = RowsOf(run);
    InsertRow(rows, 1);
    rows[1].TypedDistance = "28";
    EXPECT_THAT(PlaceNodes(run, rows, {})->Text, HasSubstr("no data point of its own"));
}

}  // namespace
}  // namespace vantor
