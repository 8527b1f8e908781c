#include "corridor/CorridorEdits.h"

#include <gmock/gmock.h>

#include "core/Text.h"
#include "corridor/CorridorRules.h"
#include "corridor/CorridorTaking.h"
#include "corridor/DetailedCorridor.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr;

constexpr const char* Root = "/groups/";

/// Nodes A, B and so on, 1000 ft from each other, without positions.
Corridor StreetOf(int nodes) {
    Corridor corridor;
    for (int i = 0; i < nodes; ++i) {
        CorridorNode& node = corridor.Nodes.emplace_back();
        node.Name = std::string(1, static_cast<char>('A' + i));
        node.DistanceFt = 1000.0 * i;
        node.Around = {300, 200};
    }
    for (const Way way : BothWays) corridor.Of(way).IdealSpeedMph = 30;
    return corridor;
}

/// "A0 B1000": the nodes, and what the first run holds of them: a band upstream, a second.
std::string InWords(const Corridor& corridor) {
    std::string text;
    for (std::size_t i = 0; i < corridor.Nodes.size(); ++i) {
        text += (i == 0 ? "" : " ") + corridor.Nodes[i].Name +
                std::to_string(static_cast<int>(corridor.Nodes[i].DistanceFt + 0.5));
        if (const auto own = OwnBandOf(corridor.Runs.front(), i)) text += "/" + std::to_string(own->UpstreamFt);
        for (const SetNode& set : corridor.Runs.front().SetNodes)
            if (set.Node == i) text += "@" + std::to_string(set.Sample);
    }
    return text;
}

TEST(CorridorEdits, WhatARunHoldsGoesWithItsNode) {
    Corridor corridor = StreetOf(4);
    CorridorRun& run = corridor.Runs.emplace_back();
    run.Group = run.Name = "R";
    SetOwnBand(run, 3, Band{50, 60});
    SetOwnBand(run, 1, Band{10, 20});
    SetPassage(run, 2, 77);
    EXPECT_EQ(InWords(corridor), "A0 B1000/10 C2000@77 D3000/50");
    InsertNode(corridor, 2, {});
    EXPECT_EQ(InWords(corridor), "A0 B1000/10 Node 51500 C2000@77 D3000/50");
    InsertNode(corridor, 0, {});
    EXPECT_EQ(InWords(corridor), "Node 60 A1000 B2000/10 Node 52500 C3000@77 D4000/50");
    RemoveNode(corridor, 0);
    RemoveNode(corridor, 2);
    SwapNodes(corridor, 1);
    EXPECT_EQ(InWords(corridor), "A0 C1000@77 B2000/10 D3000/50") << "distances stay where they are";
    RemoveNode(corridor, 2);
    EXPECT_EQ(InWords(corridor), "A0 C1000@77 D3000/50");
    FoundNodes others;
    others.Nodes = StreetOf(4).Nodes;
    ReplaceNodes(corridor, others);
    EXPECT_EQ(InWords(corridor), "A0 B1000 C2000@77 D3000/50") << "by name";
    SetOwnBand(corridor.Runs.front(), 3, std::nullopt);
    SetPassage(corridor.Runs.front(), 2, 0);
    EXPECT_EQ(InWords(corridor), "A0 B1000 C2000@0 D3000");
    EXPECT_EQ(ProblemOf(corridor), "");
}

TEST(CorridorEdits, PositionsMeasureTheDistances) {
    // A ten-thousandth of a degree of latitude is 36.48 ft on a sphere of 6371008.8 m.
    Corridor corridor;
    EXPECT_EQ(InsertNodeAt(corridor, {42, -83}), 0U);
    EXPECT_EQ(InsertNodeAt(corridor, {42.01, -83}), 1U);
    EXPECT_NEAR(corridor.Nodes[1].DistanceFt, 3648.1, 0.5);
    EXPECT_EQ(InsertNodeAt(corridor, {42.004, -83}), 1U) << "where the line passes it";
    EXPECT_NEAR(corridor.Nodes[1].DistanceFt, 1459.3, 0.5);
    InsertNode(corridor, 0, {});
    InsertNode(corridor, 4, {});
    std::vector<int> feet;
    for (const CorridorNode& node : corridor.Nodes) feet.push_back(static_cast<int>(node.DistanceFt + 0.5));
    EXPECT_THAT(feet, ElementsAre(0, 1000, 2459, 4648, 5648));
    RemoveNode(corridor, 3);
    EXPECT_NEAR(corridor.Nodes[3].DistanceFt - corridor.Nodes[2].DistanceFt, 3188.8, 1) << "it stays where it is";
    EXPECT_FALSE(HasMeasuredDistance(corridor, 0));
    EXPECT_TRUE(HasMeasuredDistance(corridor, 1));
    EXPECT_EQ(ProblemOf(corridor), "");
}

/// Runs of a Study Group that pass the three nodes of a street, each with a stop of its own length.
struct DetailedCorridorTest : testing::Test {
    MemoryFileSystem Files;
    const AppSettings Settings = MphSettings();
    Corridor Street = StreetOf(3);

    DetailedCorridorTest() {
        Files.CreateFolder("/groups/G");
        for (int number = 1; number <= 6; ++number) {
            std::vector<int> feet(20, 40);  // 800 ft before the first node
            feet.back() |= NodeFlag;
            for (int section = 0; section < 2; ++section) {
                feet.insert(feet.end(), 24, 40);
                feet.insert(feet.end(), 2 + static_cast<std::size_t>(number) * 2, 0);
                feet.push_back(40);
                feet.back() |= NodeFlag;
            }
            feet.insert(feet.end(), 20, 40);
            RunRecord run = RunOfValues(feet);
            run.Header.RunTime = TimeOf(7, number);
            run.Header.Before = number <= 3 ? -1 : 0;
            PutRunFile(Files, run, "/groups/G/", "R" + std::to_string(number));
        }
        std::vector<std::string> paths;
        for (int number = 1; number <= 6; ++number) paths.push_back("/groups/G/R" + std::to_string(number) + ".rd2");
        Street.Runs = TakeRunFiles(Street, paths, Files, Root).Runs;
    }

    DetailedCorridor Detail(const DetailedCorridor& before, const Corridor& now, const CorridorFilter& filter = {}) {
        return DetailCorridor(before, now, filter, Files, Root, Settings);
    }
    static std::string TextOf(const DetailedCorridor& corridor) {
        std::string text = Joined(corridor.Sentences, "\n") + Joined(corridor.Periods, ",");
        for (const StatisticsTable* table : {&corridor.Delays, &corridor.Sections, &corridor.Compared})
            text += CsvText(SheetOf(*table));
        for (std::size_t i = 0; i < corridor.Runs.size(); ++i)
            text += StateOf(corridor.Of.Runs[i], corridor.Runs[i]) + " " + std::to_string(corridor.Runs[i].Index) +
                    CsvText(SheetOf(MatchTable(corridor.Of, corridor.Runs[i], Units())));
        return text;
    }
};

TEST_F(DetailedCorridorTest, IsAfterAnEditWhatItIsReadAnew) {
    const DetailedCorridor first = Detail({}, Street);
    ASSERT_EQ(first.Delays.Rows.size(), 2U) << "before and after";
    const std::vector<std::function<void(Corridor&)>> edits = {
        [](Corridor& edited) { edited.Nodes[1].Around.UpstreamFt = 500; },
        [](Corridor& edited) { edited.Of(Way::Forward).IdealSpeedMph = 45; },
        [](Corridor& edited) { edited.Of(Way::Forward).Name = "EB"; },
        [](Corridor& edited) { edited.Nodes[1].Name = "Elm"; },
        [](Corridor& edited) { edited.Options.Confidence = 80; },
        [](Corridor& edited) {
            edited.Options.Stops = {28, 35};
        },
        [](Corridor& edited) {
            edited.Periods = {{"AM", 420, 424}};
        },
        [](Corridor& edited) { edited.Runs[1].SetAside = "Detour"; },
        [](Corridor& edited) { edited.Runs[4].IsBefore = true; },
        [](Corridor& edited) { SetPassage(edited.Runs[0], 1, 0); },
        [](Corridor& edited) {
            SetOwnBand(edited.Runs[0], 1, Band{600, 100});
        },
        [](Corridor& edited) { edited.Runs[2].Along = Way::Back; },
        [](Corridor& edited) {
            RemoveRuns(edited, {0, 3});
        },
        [](Corridor& edited) { RemoveNode(edited, 1); },
    };
    std::vector<Corridor> afterwards;
    std::vector<std::string> anew;
    for (const auto& edit : edits) {
        edit(afterwards.emplace_back(Street));
        anew.push_back(TextOf(Detail({}, afterwards.back())));
    }
    for (int number = 1; number <= 6; ++number) Files.Delete("/groups/G/R" + std::to_string(number) + ".rd2");
    for (std::size_t i = 0; i < edits.size(); ++i) {
        const DetailedCorridor edited = Detail(first, afterwards[i]);
        EXPECT_NE(TextOf(edited), TextOf(first)) << "edit " << i;
        EXPECT_EQ(TextOf(edited), anew[i]) << "edit " << i;
        EXPECT_EQ(TextOf(Detail(edited, Street)).find("not read") == std::string::npos, edited.Runs.size() == 6)
            << "nothing is read that was read; edit " << i;
    }
}

TEST_F(DetailedCorridorTest, TellsWhatEachRunIsAndWhichAreBehindACell) {
    Street.Runs[1].SetAside = "Detour";
    SetPassage(Street.Runs[2], 1, 0);
    Street.Runs.push_back(Street.Runs[0]);
    Street.Runs.back().Name = "Gone";
    const DetailedCorridor shown = Detail({}, Street, {std::nullopt, CorridorFilter::Condition::Before});
    std::string states;
    for (std::size_t i = 0; i < shown.Runs.size(); ++i) states += StateOf(Street.Runs[i], shown.Runs[i]) + ",";
    EXPECT_EQ(states, "ok,set aside,gap,ok,ok,ok,not read,");
    const NodeFigures* figures = shown.FiguresAt(0, FirstNodeColumn + 1);
    ASSERT_NE(figures, nullptr);
    EXPECT_THAT(figures->Runs, ElementsAre(0));
    EXPECT_THAT(figures->Without, ElementsAre(2));
    EXPECT_EQ(shown.FiguresAt(0, FirstNodeColumn + 3), nullptr);
    EXPECT_EQ(shown.FiguresAt(1, FirstNodeColumn), nullptr);
    for (const std::size_t nodes : {std::size_t{0}, std::size_t{1}}) {
        Corridor few = Street;
        few.Nodes.resize(nodes);
        few.Runs[2].SetNodes.clear();
        EXPECT_TRUE(Detail(shown, few).Delays.Rows.empty()) << nodes;
    }
}

TEST_F(DetailedCorridorTest, TakesRunsOfItsStudyGroupsAlone) {
    Files.PutText("/elsewhere/G/R1.rd2", "");
    Files.PutText("/groups/G/Bad.rd2", "short");
    const TakenRuns taken =
        TakeRunFiles(Street, {"/groups/G/R1.rd2", "/elsewhere/G/R1.rd2", "/groups/G/Bad.rd2"}, Files, Root);
    EXPECT_TRUE(taken.Runs.empty());
    EXPECT_THAT(taken.Refused, ElementsAre("R1 is in the corridor already.", HasSubstr("lies in no Study Group of"),
                                           testing::StartsWith("Bad: ")));
    ASSERT_EQ(Street.Runs.size(), 6U);
    EXPECT_EQ(Street.Runs[3].Group + "/" + Street.Runs[3].Name, "G/R4");
    EXPECT_TRUE(Street.Runs[2].IsBefore);
    EXPECT_FALSE(Street.Runs[3].IsBefore);
}

}  // namespace
}  // namespace vantor
