#include <fstream>

#include <gmock/gmock.h>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

/// The stopped seconds of a section by key number, 0 for those without a key.
json SecondsByKey(const json& section) {
    json seconds = json::object();
    for (const auto& key : section["DelaySeconds"])
        if (key["Seconds"] != 0) seconds[key["Key"].dump()] = key["Seconds"];
    if (section["NoKeySeconds"] != 0) seconds["0"] = section["NoKeySeconds"];
    return seconds;
}

void ExpectSections(const json& statistics, const json& expected) {
    ASSERT_EQ(statistics["Sections"].size(), expected.size());
    std::map<std::string, int> sums;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto& section = statistics["Sections"][i];
        for (const char* figure : {"Length", "TravelTime", "StoppedTime", "Stops"}) {
            EXPECT_EQ(section[figure], expected[i][figure]) << statistics["RunName"] << ' ' << i << ' ' << figure;
            sums[figure] += expected[i][figure].get<int>();
        }
        EXPECT_EQ(SecondsByKey(section), expected[i]["Seconds"]) << statistics["RunName"] << ' ' << i;
    }
    const auto& total = statistics["Total"];
    for (const auto& [figure, sum] : sums) EXPECT_EQ(total[figure], sum) << statistics["RunName"] << ' ' << figure;
    const int running = sums["TravelTime"] - sums["StoppedTime"];
    EXPECT_EQ(total["RunningTime"], running);
    EXPECT_NEAR(total["MeanRunningSpeed"], sums["Length"] * 3600.0 / 5280 / running, 0.005001);
}

using CorridorRoad = CommandTest;

/// From the counter's dump to the graded study, against figures that were computed apart from the program
/// (data/make_corridor_figures.py).
TEST_F(CorridorRoad, FiguresMatchTheIndependentOnes) {
    const auto expected = json::parse(std::ifstream(VANTOR_TEST_DATA "corridor_figures.json"));
    Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", "/field/Corridor.tdc");
    Files.CreateFolder("/group");

    const auto studies = Json("counter studies /field/corridor.tdc");
    ASSERT_EQ(studies.size(), 2U);
    EXPECT_EQ(studies[0], json({{"Study", "001"},
                                {"SiteCode", "MAINSTNB"},
                                {"Date", "03/11/08"},
                                {"Time", "06:53"},
                                {"Runs", expected["Runs"].size()}}));

    const auto names = Json("counter convert /field/Corridor.tdc --to /group");
    ASSERT_EQ(names.size(), 16U);
    Arguments create = {"AM Peak"};
    for (const auto& run : expected["Runs"]) {
        const std::string name = run["RunName"];
        EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
        const auto header = Json("run show", {"/group/" + name + ".rd2"});
        for (const char* field :
             {"RunName", "SampleCount", "RunLength", "NumberOfSections", "HeaderWord3", "HeaderLong"})
            EXPECT_EQ(header[field], run[field]) << name << ' ' << field;
        ExpectSections(Json("run stats", {"/group/" + name + ".rd2"}), run["Sections"]);
        create.push_back(name);
    }
    Json("study new /group", create);
    const auto study = Json("study bounds", {"/group/AM Peak.ld2", "--all", "--start-dist",
                                             expected["StartDist"].dump(), "--end-dist", expected["EndDist"].dump()});
    for (std::size_t i = 0; i < expected["Runs"].size(); ++i) {
        const auto& run = expected["Runs"][i];
        const auto& entry = study["entries"][i];
        for (const char* field : {"IdealSpeedCalc", "ControlDelay", "StopDelay"})
            EXPECT_EQ(entry[field], run[field]) << i << ' ' << field;
        const auto delay = Json("run delay", {"/group/" + std::string(run["RunName"]) + ".rd2", "--start-dist", "300",
                                              "--end-dist", "7600"});
        ExpectHas(delay, {{"CDStartSample", run["CDStartSample"]}, {"CDEndSample", run["CDEndSample"]}});
    }
    EXPECT_EQ(expected["RatioHundredths"], 300);
    ExpectHas(study, {{"AvgControlDelay", " " + expected["AvgControlDelay"].dump()},
                      {"StudyAvgControlDelay", expected["AvgControlDelay"]},
                      {"StudyLOSGrade", "E"},  // 55 to 79 seconds
                      {"AvgStopDelay", " " + expected["AvgStopDelay"].dump()},
                      {"Ratio", "3."}});

    // Eight runs are held up at the third node and at the fifth; boundaries around five nodes speak for none.
    const auto proposed = Json("study propose", {"/group/AM Peak.ld2"});
    ExpectHas(proposed, {{"node", 3}, {"stored", false}});
    ExpectHas(proposed["runs"][0], {{"start_dist", 3492}, {"end_dist", 4070}});
    int withoutNode = 0;
    for (const auto& run : proposed["runs"]) withoutNode += run["events_without_node"].get<int>();
    EXPECT_EQ(withoutNode, 38 - 32) << "38 events, 32 of them at nodes";
    EXPECT_EQ(Json("study show", {"/group/AM Peak.ld2"})["entries"], study["entries"]) << "nothing is stored unasked";
    const auto common = Json("study propose --common", {"/group/AM Peak.ld2"});
    EXPECT_EQ(common["runs"][0]["remarks"], "start and end in another slowing")
        << "from 2745 to 3354 and from 4231 to 5083 ft";
    EXPECT_EQ(Status("study propose --apply --node 6", {"/group/AM Peak.ld2"}), 1);

    auto again = Json("study compute", {"/group/AM Peak.ld2"});
    EXPECT_EQ(again, study) << "computing a second time changes nothing";
    for (const char* label : {"AvgControlDelay", "AvgStopDelay", "Ratio", "StopSpeedThreshold"}) again.erase(label);
    EXPECT_EQ(Json("study show", {"/group/AM Peak.ld2"}), again);

    // Nodes 1 and 2 are passed freely by runs that data/corridor_figures.json knows nothing of.
    const auto applied = Json("study propose --apply --node 2", {"/group/AM Peak.ld2"});
    EXPECT_EQ(applied["entries"][0]["CDStartDist"], applied["runs"][0]["start_dist"]);
    EXPECT_EQ(applied["runs"][4]["remarks"], "passed without delay: no boundaries");
    EXPECT_EQ(applied["entries"][4], again["entries"][4]);
}

/// A dump that lost one byte, for each of its bytes, against data/make_counter_faults.py.
TEST(CounterCheck, FindsTheWholeRunsBeforeALostByte) {
    const auto expected = json::parse(std::ifstream(VANTOR_TEST_DATA "counter_faults.json"));
    const std::string dump = expected["dump"];
    const auto check = [](const std::string& text) {
        CommandRunner runner;
        runner.Files.PutText("/f/Day.tdc", text);
        const auto result = runner.Json("counter check /f/Day.tdc");
        const auto& fault = result["fault"];
        EXPECT_TRUE(fault.is_null() || !fault["reason"].get<std::string>().empty());
        return json{result["runs"], fault.is_null() ? json() : fault["record"]};
    };
    EXPECT_EQ(check(dump), json({3, nullptr}));
    ASSERT_EQ(expected["lost"].size(), dump.size());
    for (std::size_t i = 0; i < dump.size(); ++i)
        EXPECT_EQ(check(dump.substr(0, i) + dump.substr(i + 1)), expected["lost"][i]) << "without byte " << i;
}

TEST(CounterCheck, WhatAFileHoldsDoesNotSteerTheTerminal) {
    CommandRunner runner;
    runner.Files.PutText("/f/Day.tdc", "\x1b[2J\x9b,1");
    EXPECT_EQ(runner.Status("counter check /f/Day.tdc"), 0);
    EXPECT_THAT(runner.Out, testing::HasSubstr("fault.reason: It begins with \"\\x1b[2J\xE2\x80\xBA\""));
    EXPECT_EQ(runner.Status("counter check /f/\x1b[2J\xC2\x9B.tdc"), 1);
    EXPECT_THAT(runner.Err, testing::HasSubstr("/f/\\x1b[2J\\x9b.tdc"));
}

}  // namespace
}  // namespace vantor
