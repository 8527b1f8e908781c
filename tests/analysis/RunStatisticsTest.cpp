#include "analysis/RunStatistics.h"

#include <gmock/gmock.h>

#include "core/RunDecoding.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::Pair;

constexpr int Node = NodeFlag;
constexpr int Signal = 16 << 8;
constexpr int Congestion = 15 << 8;
constexpr int LeftTurn = 8 << 8;

/// A run of these sample values, one foot a pulse.
RunRecord RunOf(const std::vector<int>& values, std::int16_t calConstant = 1000) {
    RunRecord run;
    run.Header.CalConstant = calConstant;
    run.Header.SampleCount = static_cast<std::int32_t>(values.size());
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    for (const int value : values) run.SampleValues.Append(static_cast<std::int16_t>(value));
    DecodeRunSamples(run);
    return run;
}

AppSettings SettingsWith(std::int16_t stopSpeed) {
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
    settings.StopSpeedThreshold = stopSpeed;
    return settings;
}

RunStatistics StatisticsOf(const std::vector<int>& values, std::int16_t stopSpeed = 0) {
    return ComputeRunStatistics(RunOf(values), SettingsWith(stopSpeed));
}

/// Delay seconds of a section by key, without the keys that have none.
std::vector<std::pair<int, int>> Delays(const SectionStatistics& section) {
    std::vector<std::pair<int, int>> delays;
    for (int key = 0; key <= KeySlots; ++key)
        if (section.DelaySeconds[key] != 0) delays.emplace_back(key, section.DelaySeconds[key]);
    return delays;
}

TEST(RunStatistics, EachSecondBelongsToTheSectionThatItsNodeCloses) {
    RunRecord run = RunOf({44, 44, Node | 44, 0, 22, Node | 22});
    run.Header.SectionName[0] = "South end";
    run.Header.SectionName[1] = "Oak St ";
    const RunStatistics statistics = ComputeRunStatistics(run, SettingsWith(0));
    ASSERT_EQ(statistics.Sections.size(), 3u);
    const auto& [first, second, third] =
        std::tie(statistics.Sections[0], statistics.Sections[1], statistics.Sections[2]);
    EXPECT_EQ(first.Number, 1);
    EXPECT_EQ(first.FromName + "|" + first.ToName, "South end|Oak St");
    EXPECT_EQ(first.Length, 132);
    EXPECT_EQ(first.TravelTime, 3);
    EXPECT_DOUBLE_EQ(first.MeanRunningSpeed(), 30) << "44 feet a second are 30 miles an hour";
    EXPECT_EQ(second.FromName + "|" + second.ToName, "Oak St|Node 2");
    EXPECT_EQ(second.Length, 44);
    EXPECT_EQ(second.StoppedTime, 1);
    EXPECT_EQ(second.RunningTime(), 2);
    EXPECT_DOUBLE_EQ(second.MeanRunningSpeed(), 15) << "the second at rest does not count";
    EXPECT_EQ(third.FromName + "|" + third.ToName, "Node 2|[End]");
    EXPECT_EQ(third.TravelTime, 0) << "nothing follows the last node";
    EXPECT_EQ(third.MeanRunningSpeed(), 0);
    EXPECT_EQ(statistics.Total.Number, 0);
    EXPECT_EQ(statistics.Total.Length, 176);
    EXPECT_EQ(statistics.Total.TravelTime, 6);
    EXPECT_EQ(statistics.Total.RunningTime(), 5);
    EXPECT_DOUBLE_EQ(statistics.Total.MeanRunningSpeed(), 24) << "176 feet in 5 seconds";
}

TEST(RunStatistics, LengthsAreSumsOfWholeFeet) {
    // 1.246 feet a pulse: 3 pulses are 3.738, so 4 feet; two seconds of them are 8 feet though 6 pulses are 7.476.
    EXPECT_EQ(ComputeRunStatistics(RunOf({3, 3}, 1246), SettingsWith(0)).Total.Length, 8);
}

TEST(RunStatistics, AtTheThresholdIsStopped) {
    // 22 feet a second are 15 miles an hour: exactly so, and by the single-precision factor the same.
    const std::vector<int> values = {30, 22, 23, 21, 30};
    EXPECT_EQ(StatisticsOf(values, 14).Total.StoppedTime, 0);
    EXPECT_EQ(StatisticsOf(values, 15).Total.StoppedTime, 2);
    EXPECT_EQ(StatisticsOf(values, 15).Total.Stops, 2) << "23 feet a second lie between them";
    EXPECT_EQ(StatisticsOf(values, 16).Total.Stops, 1);
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
    struct Case {
        const char* What;
        std::vector<int> Values;
        std::vector<std::pair<int, int>> Delays;
    };
    const Case cases[] = {
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
    for (const Case& given : cases) EXPECT_EQ(Delays(StatisticsOf(given.Values).Total), given.Delays) << given.What;
}

TEST(RunStatistics, TellsTheKeysThatWerePressed) {
    RunRecord run = RunOf({Signal, Congestion | 40, 17 << 8, LeftTurn | 40, (12 << 8) | 40, 99 << 8});
    run.Header.ButtonLabel[12] = "Bus stop";
    run.Header.ButtonLabel[15] = "Signal";
    std::vector<std::pair<int, std::string>> keys;
    for (const DelayKey& key : ComputeRunStatistics(run, SettingsWith(0)).Keys) keys.emplace_back(key.Key, key.Label);
    EXPECT_THAT(keys,
                ElementsAre(Pair(12, "Bus stop"), Pair(15, "Signal"), Pair(16, "Signal, Key 16"), Pair(17, "Key 17")));
}

TEST(RunStatistics, ManyNodesAndNone) {
    EXPECT_TRUE(StatisticsOf({}).Sections.empty());
    EXPECT_EQ(StatisticsOf({}).Total.MeanRunningSpeed(), 0);
    const RunStatistics many = StatisticsOf(std::vector<int>(200, Node | 10));
    ASSERT_EQ(many.Sections.size(), 201u) << "more than a run's header has names for";
    EXPECT_EQ(many.Sections[199].ToName, "Node 200");
    EXPECT_EQ(many.Total.Length, 2000);
    const RunStatistics uncalibrated = ComputeRunStatistics(RunOf({40, 40}, 0), SettingsWith(0));
    EXPECT_EQ(uncalibrated.Total.StoppedTime, 2);
    EXPECT_EQ(uncalibrated.Total.MeanRunningSpeed(), 0);
}

TEST(RunStatistics, SheetHasDisplayUnitsAndTheRunsGrade) {
    const RunStatistics statistics = StatisticsOf({44, Signal, Node | 44, 100});
    const auto texts = [](const SheetRow& row) {
        std::string line;
        for (const SheetField& field : row) line += field.Text + "|";
        return line;
    };
    const auto english = StatisticsSheet(statistics, {}, nullptr);
    ASSERT_EQ(english.size(), 4u);
    EXPECT_EQ(texts(english[0]),
              "Section|From|To|Length (ft)|Travel Time (s)|Running Time (s)|Stopped Time (s)|Stops|"
              "Mean Running Speed (MPH)|Signal (s)|No Key (s)|");
    EXPECT_EQ(texts(english[1]), "1|[Start]|Node 1|88|3|2|1|1|30.0|1|0|");
    EXPECT_EQ(texts(english[2]), "2|Node 1|[End]|100|1|1|0|0|68.2|0|0|");
    StudyRunEntry entry;
    entry.ControlDelay = -12;
    entry.LOSGrade = "A";
    const auto metric = StatisticsSheet(statistics, {.Metric = true}, &entry);
    // 88 feet are 26.8 m and 188 feet 57.3 m; 30 mph are 48.27 km/h, 188 feet in 3 seconds 68.748.
    EXPECT_EQ(texts(metric[1]), "1|[Start]|Node 1|27|3|2|1|1|48.3|1|0|||");
    EXPECT_EQ(texts(metric[3]), "Total|[Start]|[End]|57|4|3|1|1|68.7|1|0|-12|A|");
    EXPECT_TRUE(metric[3][11].IsNumber);
    EXPECT_EQ(texts(metric[0]).substr(texts(metric[0]).size() - 29), "|Control Delay (s)|LOS Grade|");
}

}  // namespace
}  // namespace vantor
