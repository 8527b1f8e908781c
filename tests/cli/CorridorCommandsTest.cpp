#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

using testing::HasSubstr;

constexpr const char* File = "/groups/Harbor St.corridor.geojson";

struct CorridorCommandsTest : CommandTest {
    CorridorCommandsTest() {
        Files.CreateFolder("/groups");
        for (const char* name : {"corridor.csv", "before.gpx", "after.gpx"}) {
            std::ifstream sample(std::string(VANTOR_SAMPLES "Corridor/") + name);
            std::stringstream text;
            text << sample.rdbuf();
            Files.PutText(std::string("/t/") + name, text.str());
        }
        Json("corridor new --nodes /t/corridor.csv --directions NB,SB --ideal-speed 38 --upstream 600 --downstream 450",
             {"/groups/Harbor St"});
    }

    void TakeSampleDays() {
        Json("corridor match --time-zone UTC", {File, "/t/before.gpx"});
        Json("corridor match --time-zone UTC --after", {File, "/t/after.gpx"});
    }
};

/// What the studies of a corridor say stands in the corridor, too: delays at every node, both ways, and sections.
TEST_F(CorridorCommandsTest, AgreesWithTheStudiesThatAreMadeOfIt) {
    TakeSampleDays();
    const json studies = Json("corridor studies", {File});
    const json results = Json("corridor results", {File});
    ASSERT_EQ(studies.size(), 12U);
    std::size_t study = 0;
    for (const json& way : results["ways"]) {
        EXPECT_EQ(way["runs"].size(), 20U);
        for (const json& node : way["nodes"]) {
            SCOPED_TRACE(studies[study]["study"]);
            const Arguments path = {studies[study]["study"].get<std::string>()};
            EXPECT_EQ(studies[study]["node"], node["name"]);
            EXPECT_EQ(studies[study++]["direction"], way["direction"]);
            const json computed = Json("study compute", path);
            EXPECT_EQ(computed["AvgControlDelay"], node["study_control_delay"]);
            EXPECT_EQ(computed["AvgStopDelay"], node["study_stop_delay"]);
            EXPECT_EQ(computed["StudyLOSGrade"], node["study_grade"]);
            const json statistics = Json("study statistics", path);
            EXPECT_EQ(statistics["groups"]["all"]["control_delay"], node["control_delay"]);
            EXPECT_EQ(statistics["comparison"]["control_delay"]["welch"], node["comparison"]["welch"]);
            // Before the first node and behind the last one the study has a section more.
            for (std::size_t i = 0; i < way["sections"].size(); ++i)
                for (const char* measure : {"travel_time", "running_time", "stopped_time", "stops", "travel_speed"})
                    EXPECT_EQ(statistics["sections"][i + 1]["all"][measure], way["sections"][i][measure]) << measure;
        }
    }
}

/// The model of motion that the sample was driven by knows where each pass was; it knows nothing of the program.
TEST_F(CorridorCommandsTest, FindsEveryPassOfTheSampleAndTakesNoneTwice) {
    TakeSampleDays();
    const json passes = Json("corridor match", {File})["passes"];
    std::ifstream file(VANTOR_SAMPLES "Corridor/truth.json");
    std::multiset<std::string> driven;
    const json truth = json::parse(file);
    for (const json& pass : truth["passes"]) driven.insert(pass["direction"] == 0 ? "NB" : "SB");
    std::multiset<std::string> found;
    for (const json& pass : passes) {
        found.insert(pass["direction_name"]);
        for (const json& node : pass["nodes"]) EXPECT_EQ(node["source"], "position");
    }
    EXPECT_EQ(found, driven);
    Json("corridor match --time-zone UTC", {File, "/t/before.gpx"});
    EXPECT_THAT(Err, HasSubstr("before.gpx: 20 passes of it are in the corridor already."));
    EXPECT_EQ(Json("corridor show", {File})["runs"], passes.size());
}

TEST_F(CorridorCommandsTest, SaysWhyItCannot) {
    const auto told = [&](const std::string& words, const Arguments& more) {
        EXPECT_NE(Status(words, more), 0);
        return Err;
    };
    EXPECT_THAT(told("corridor match --direction EB", {File}), HasSubstr("it has NB and SB"));
    PutRun("001", {10, 10});
    EXPECT_THAT(told("corridor match", {File, "/g/001.rd2"}), HasSubstr("no Study Group beside the corridor"));
    EXPECT_THAT(told("corridor new --nodes /t/corridor.csv", {"/groups/Harbor St"}), HasSubstr("Harbor St"));
    EXPECT_THAT(told("corridor new --nodes /t/corridor.csv --period", {"morning", "/groups/B"}),
                HasSubstr("\"07:00-09:00 AM\""));
    EXPECT_THAT(told("corridor show /groups/None.corridor.geojson", {}), HasSubstr("None.corridor.geojson"));
    // A track elsewhere gives nothing, with the reason.
    Files.PutText("/t/far.csv", "lat,lon,time,mph\n50,10,2021-03-01T12:00:00Z,30\n50,10.001,2021-03-01T12:00:01Z,30\n");
    EXPECT_EQ(Status("corridor match", {File, "/t/far.csv"}), 0);
    EXPECT_THAT(Err, HasSubstr("far.csv: it does not drive along Harbor St"));
}

}  // namespace
}  // namespace vantor
