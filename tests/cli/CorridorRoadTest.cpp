#include <gtest/gtest.h>

#include <fstream>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

/// The stopped seconds of a section by key number, 0 for those without a key.
nlohmann::json SecondsByKey(const nlohmann::json& section) {
    nlohmann::json seconds = nlohmann::json::object();
    for (const auto& key : section["DelaySeconds"])
        if (key["Seconds"] != 0) seconds[key["Key"].dump()] = key["Seconds"];
    if (section["NoKeySeconds"] != 0) seconds["0"] = section["NoKeySeconds"];
    return seconds;
}

void ExpectSections(const nlohmann::json& statistics, const nlohmann::json& expected) {
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

/// From the counter's dump to the graded study, against figures that were computed apart from the program
/// (data/make_corridor_figures.py).
TEST(CorridorRoad, FiguresMatchTheIndependentOnes) {
    const auto expected = nlohmann::json::parse(std::ifstream(VANTOR_TEST_DATA "corridor_figures.json"));
    CommandRunner runner;
    runner.Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", "/field/Corridor.tdc");
    runner.Files.CreateFolder("/group");

    const auto studies = runner.Json({"counter", "studies", "/field/corridor.tdc"});
    ASSERT_EQ(studies.size(), 2U);
    EXPECT_EQ(studies[0], nlohmann::json({{"Study", "001"},
                                          {"SiteCode", "MAINSTNB"},
                                          {"Date", "03/11/08"},
                                          {"Time", "06:53"},
                                          {"Runs", expected["Runs"].size()}}));

    const auto names = runner.Json({"counter", "convert", "/field/Corridor.tdc", "--to", "/group"});
    ASSERT_EQ(names.size(), 16U);
    std::vector<std::string> create = {"study", "new", "/group", "AM Peak"};
    for (const auto& run : expected["Runs"]) {
        const std::string name = run["RunName"];
        EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
        const auto header = runner.Json({"run", "show", "/group/" + name + ".rd2"});
        for (const char* field :
             {"RunName", "SampleCount", "RunLength", "NumberOfSections", "HeaderWord3", "HeaderLong"})
            EXPECT_EQ(header[field], run[field]) << name << ' ' << field;
        ExpectSections(runner.Json({"run", "stats", "/group/" + name + ".rd2"}), run["Sections"]);
        create.push_back(name);
    }
    runner.Json(create);
    const auto study = runner.Json({"study", "bounds", "/group/AM Peak.ld2", "--all", "--start-dist",
                                    expected["StartDist"].dump(), "--end-dist", expected["EndDist"].dump()});
    for (std::size_t i = 0; i < expected["Runs"].size(); ++i) {
        const auto& run = expected["Runs"][i];
        const auto& entry = study["entries"][i];
        for (const char* field : {"IdealSpeedCalc", "ControlDelay", "StopDelay"})
            EXPECT_EQ(entry[field], run[field]) << i << ' ' << field;
        const auto delay = runner.Json({"run", "delay", "/group/" + std::string(run["RunName"]) + ".rd2",
                                        "--start-dist", "300", "--end-dist", "7600"});
        EXPECT_EQ(delay["CDStartSample"], run["CDStartSample"]);
        EXPECT_EQ(delay["CDEndSample"], run["CDEndSample"]);
    }
    EXPECT_EQ(study["AvgControlDelay"], " " + expected["AvgControlDelay"].dump());
    EXPECT_EQ(study["StudyAvgControlDelay"], expected["AvgControlDelay"]);
    EXPECT_EQ(study["StudyLOSGrade"], "E") << "55 to 79 seconds";
    EXPECT_EQ(study["AvgStopDelay"], " " + expected["AvgStopDelay"].dump());
    EXPECT_EQ(expected["RatioHundredths"], 300);
    EXPECT_EQ(study["Ratio"], "3.");

    auto again = runner.Json({"study", "compute", "/group/AM Peak.ld2"});
    EXPECT_EQ(again, study) << "computing a second time changes nothing";
    for (const char* label : {"AvgControlDelay", "AvgStopDelay", "Ratio", "StopSpeedThreshold"}) again.erase(label);
    EXPECT_EQ(runner.Json({"study", "show", "/group/AM Peak.ld2"}), again);
}

}  // namespace
}  // namespace vantor
