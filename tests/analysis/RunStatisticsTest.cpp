#include "analysis/RunStatistics.h"

#include <gmock/gmock.h>

#include "core/RunDecoding.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::Pair;

constexpr int Node = NodeFlag;
constexpr int Signal = 16 << 8;
constexpr int Congestion = 15 << 8;
constexpr int LeftTurn = 8 << 8;

RunStatistics StatisticsOf(const std::vector<int>& values, std::int16_t stopSpeed = 0) {
    return ComputeRunStatistics(RunOfValues(values), MphSettings(stopSpeed));
}

/// Delay seconds of a section by key, without the keys that have none.
std::vector<std::pair<int, int>> Delays(const SectionStatistics& section) {
    std::vector<std::pair<int, int>> delays;
    for (int key = 0; key <= KeySlots; ++key)
        if (section.DelaySeconds[key] != 0) delays.emplace_back(key, section.DelaySeconds[key]);
    return delays;
}

/// Number, names, length, travel time, stopped time and mean running speed.
std::string TextOf(const SectionStatistics& section) {
    std::ostringstream text;
    text << section.Number << " " << section.FromName << " to " << section.ToName << ": " << section.Length << " ft, "
         << section.TravelTime << " s, " << section.StoppedTime << " s stopped, " << section.MeanRunningSpeed();
    return text.str();
}

TEST(RunStatistics, EachSecondBelongsToTheSectionThatItsNodeCloses) {
    RunRecord run = RunOfValues({44, 44, Node | 44, 0, 22, Node | 22});
    run.Header.SectionName[0] = "South end";
    run.Header.SectionName[1] = "Oak St ";
    const RunStatistics statistics = ComputeRunStatistics(run, MphSettings());
    std::vector<std::string> sections;
    for (const SectionStatistics& section : statistics.Sections) sections.push_back(TextOf(section));
    // 44 feet a second are 30 miles an hour. The second at rest does not count; nothing follows the last node.
    EXPECT_THAT(sections, ElementsAre("1 South end to Oak St: 132 ft, 3 s, 0 s stopped, 30",
                                      "2 Oak St to Node 2: 44 ft, 3 s, 1 s stopped, 15",
                                      "3 Node 2 to [End]: 0 ft, 0 s, 0 s stopped, 0"));
    EXPECT_EQ(TextOf(statistics.Total), "0 South end to [End]: 176 ft, 6 s, 1 s stopped, 24") << "176 feet in 5 s";
    EXPECT_EQ(statistics.Total.RunningTime(), 5);
    // 1.246 feet a pulse: 3 pulses are 3.738, so 4 feet; two seconds of them are 8 feet though 6 pulses are 7.476.
    EXPECT_EQ(ComputeRunStatistics(RunOfValues({3, 3}, 1246), MphSettings()).Total.Length, 8);
}

TEST(RunStatistics, AtTheThresholdIsStopped) {
    // 22 feet a second are 15 miles an hour: exactly so, and by the single-precision factor the same.
    for (const auto& [threshold, seconds, stops] : {std::tuple{14, 0, 0}, {15, 2, 2}, {16, 3, 1}}) {
        const auto total = StatisticsOf({30, 22, 23, 21, 30}, static_cast<std::int16_t>(threshold)).Total;
        EXPECT_EQ(std::pair(total.StoppedTime, total.Stops), std::pair(seconds, stops)) << threshold;
    }
}

TEST(RunStatistics, AStopOverANodeIsOneStopOfTheSectionWhereItBegins) {
    const RunStatistics statistics = StatisticsOf({0, 40, Signal, 0, Node, 0, 0, 40, 0});
    EXPECT_EQ(statistics.Sections[0].Stops, 2) << "the run begins at rest";
    EXPECT_EQ(statistics.Sections[1].Stops, 1) << "the run ends at rest";
    EXPECT_THAT(Delays(statistics.Sections[0]), ElementsAre(Pair(0, 1), Pair(16, 3)));
    EXPECT_THAT(Delays(statistics.Sections[1]), ElementsAre(Pair(0, 1), Pair(16, 2)));
    EXPECT_EQ(statistics.Total.Stops, 3);
}

TEST(RunStatistics, AWholeStopGoesToOneKey) {
    const std::tuple<const char*, std::vector<int>, std::vector<std::pair<int, int>>> cases[] = {
        {"no key", {40, 0, 0, 40}, {{0, 2}}},
        {"late in the stop", {40, 0, 0, Signal, 40}, {{16, 3}}},
        {"the last one counts", {40, Signal, 0, Congestion, 40}, {{15, 3}}},
        {"braking", {Signal | 40, 20, 0, 0, 40}, {{16, 2}}},
        {"in the stop rather than before it", {Congestion | 40, 0, Signal, 40}, {{16, 2}}},
        {"moving up in a queue", {0, 40, Signal, 5, 0, 0, 40}, {{0, 1}, {16, 3}}},
        {"driving off is for the next stop", {40, Signal, Congestion | 10, 0, 0}, {{15, 2}, {16, 1}}},
        {"no stop behind the next node", {Signal | 40, Node | 40, 0, 0}, {{0, 2}}},
        {"nor one behind the node that it stopped over", {Signal, Node, 0, 40, 0, 0}, {{0, 2}, {16, 3}}},
        {"pressed behind the node within the stop", {40, 0, Node, Signal, 40, 0}, {{16, 4}}},
        {"a turn is no cause", {40, Signal, LeftTurn, 0, 40}, {{16, 3}}},
        {"nor are keys 2, 4 and 6", {40, 2 << 8, 40, 4 << 8, 40, 6 << 8, 40}, {{0, 3}}},
        {"keys 1, 5 and 9 are", {40, 1 << 8, 40, 5 << 8, 40, 9 << 8, 40}, {{1, 1}, {5, 1}, {9, 1}}},
        {"keys 32 and 33", {40, 32 << 8, Node | 40, 33 << 8, 40}, {{0, 1}, {32, 1}}},
        {"no stop at all", {40, Congestion | 40, 40}, {}},
    };
    for (const auto& [what, values, delays] : cases) EXPECT_EQ(Delays(StatisticsOf(values).Total), delays) << what;
}

TEST(RunStatistics, TellsTheKeysThatWerePressed) {
    RunRecord run = RunOfValues({Signal, Congestion | 40, 17 << 8, LeftTurn | 40, (12 << 8) | 40, 99 << 8});
    run.Header.ButtonLabel[12] = "Bus stop";
    run.Header.ButtonLabel[15] = "Signal";
    std::string keys;
    for (const DelayKey& key : ComputeRunStatistics(run, MphSettings()).Keys)
        keys += std::to_string(key.Key) + " " + key.Label + "; ";
    EXPECT_EQ(keys, "12 Bus stop; 15 Signal; 16 Signal, Key 16; 17 Key 17; ");
}

TEST(RunStatistics, ManyNodesAndNone) {
    EXPECT_TRUE(StatisticsOf({}).Sections.empty());
    EXPECT_EQ(StatisticsOf({}).Total.MeanRunningSpeed(), 0);
    const RunStatistics many = StatisticsOf(std::vector<int>(200, Node | 10));
    ASSERT_EQ(many.Sections.size(), 201u) << "more than a run's header has names for";
    EXPECT_EQ(many.Sections[199].ToName, "Node 200");
    EXPECT_EQ(many.Total.Length, 2000);
    const RunStatistics uncalibrated = ComputeRunStatistics(RunOfValues({40, 40}, 0), MphSettings());
    EXPECT_EQ(uncalibrated.Total.StoppedTime, 2);
    EXPECT_EQ(uncalibrated.Total.MeanRunningSpeed(), 0);
}

TEST(RunStatistics, SheetHasDisplayUnitsAndTheRunsGrade) {
    const RunStatistics statistics = StatisticsOf({44, Signal, Node | 44, 100});
    EXPECT_EQ(TabSeparatedText(StatisticsSheet(statistics, {}, nullptr)),
              "Section\tFrom\tTo\tLength (ft)\tTravel Time (s)\tRunning Time (s)\tStopped Time (s)\tStops\t"
              "Mean Running Speed (MPH)\tSignal (s)\tNo Key (s)\n"
              "1\t[Start]\tNode 1\t88\t3\t2\t1\t1\t30.0\t1\t0\n2\tNode 1\t[End]\t100\t1\t1\t0\t0\t68.2\t0\t0\n"
              "Total\t[Start]\t[End]\t188\t4\t3\t1\t1\t42.7\t1\t0\n");
    // 88 feet are 26.8 m, 100 feet 30.47 m and 188 feet 57.3 m; 30 mph are 48.27 km/h, 68.18 are 109.70, and 188 feet
    // in 3 seconds 68.748.
    const StudyRunEntry entry{.ControlDelay = -12, .LOSGrade = "A"};
    EXPECT_EQ(TabSeparatedText(StatisticsSheet(statistics, {.Metric = true}, &entry)),
              "Section\tFrom\tTo\tLength (m)\tTravel Time (s)\tRunning Time (s)\tStopped Time (s)\tStops\t"
              "Mean Running Speed (KPH)\tSignal (s)\tNo Key (s)\tControl Delay (s)\tLOS Grade\n"
              "1\t[Start]\tNode 1\t27\t3\t2\t1\t1\t48.3\t1\t0\t\t\n2\tNode 1\t[End]\t30\t1\t1\t0\t0\t109.7\t0\t0\t\t\n"
              "Total\t[Start]\t[End]\t57\t4\t3\t1\t1\t68.7\t1\t0\t-12\tA\n");
}

}  // namespace
}  // namespace vantor
