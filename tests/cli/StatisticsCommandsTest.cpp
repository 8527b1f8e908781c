#include <gmock/gmock.h>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr;

/// The sample study: its first eight runs between 300 and 7600 feet.
struct StatisticsCommands : CommandTest {
    Arguments Sample = {"/group/AM Peak.ld2"};

    void MakeSampleStudy() {
        Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", "/field/Corridor.tdc");
        Files.CreateFolder("/group");
        Arguments create = {"AM Peak"};
        for (const auto& name : Json("counter convert /field/Corridor.tdc --to /group"))
            if (create.size() <= 8) create.push_back(name);
        Json("study new /group", create);
        Json("study bounds --all --start-dist 300 --end-dist 7600", Sample);
    }
};

/// Figures that were computed apart from the program.
TEST_F(StatisticsCommands, TheSampleStudy) {
    MakeSampleStudy();
    const auto result = Json("study statistics --free-flow 45 --error 5%", Sample);
    const auto& all = result["groups"]["all"];
    EXPECT_EQ(all["rests_on"], "8 runs, 1 day, 06:53 to 08:38");
    const std::tuple<const char*, double, double> figures[] = {
        {"/travel_time/mean", 203.0, 0},          {"/travel_time/half_width", 16.33, 0.005},
        {"/control_delay/mean", 71.875, 0},       {"/control_delay/half_width", 15.47, 0.005},
        {"/runs_needed/needed", 17, 0},           {"/outliers/g", 1.946, 0.0005},
        {"/average_travel_speed", 26.68, 0.005},  {"/average_travel_speed_low", 24.69, 0.005},
        {"/average_running_speed", 32.14, 0.005}, {"/average_travel_speed_high", 29.01, 0.005},
        {"/percent_stopped", 17.0, 0.05},         {"/stops_per_mile", 1.66, 0.005},
        {"/travel_speed/mean", 26.88, 0.005},     {"/reliability/travel_time_index", 1.687, 0.0005}};
    for (const auto& [place, expected, error] : figures)
        EXPECT_NEAR(all.at(json::json_pointer(place)).get<double>(), expected, error) << place;
    const auto& first = result["runs"][0];
    EXPECT_THAT(first["node_times"], ElementsAre(15, 40, 100, 137, 175));
    EXPECT_THAT(first["node_distances"], ElementsAre(938, 2207, 3763, 5446, 6781));
    EXPECT_EQ(first["distance"], 7919);
    EXPECT_EQ(first["sections"][2]["travel_time"], 60);
    EXPECT_EQ(result["sections"].size(), 6U);
    EXPECT_TRUE(result["sections"][0]["comparison"]["travel_time"].contains("holm_p"));
    EXPECT_EQ(result["groups"]["after"]["reliability"], json::object()) << "no run is After";

    ASSERT_EQ(Status("study statistics", Sample), 0) << Err;
    for (const char* text :
         {"203.0 ± 16.3", "71.9 ± 15.5", "E (E to F)", "28, 20 more", "no outlier", "fewer than 20 runs"})
        EXPECT_THAT(Out, HasSubstr(text));
}

TEST_F(StatisticsCommands, StudiesAndGroupsAreComparedWithTheFirst) {
    MakeSampleStudy();
    const auto result = Json("study compare", {Sample[0], Sample[0], "/group"});
    const auto& conditions = result["conditions"];
    ASSERT_EQ(conditions.size(), 3U);
    EXPECT_EQ(conditions[1]["comparison"]["travel_time"]["mann_whitney"]["p"], 1.0);
    EXPECT_EQ(conditions[2]["figures"]["n"], 16) << "all runs of the group";
    const auto& times = conditions[2]["comparison"]["travel_time"];
    EXPECT_DOUBLE_EQ(times["holm_p"], 2 * times["welch"]["p"].get<double>()) << "two conditions are tested";
    ASSERT_EQ(Status("study compare", {Sample[0], "/group"}), 0) << Err;
    EXPECT_THAT(Out, HasSubstr("group against AM Peak:"));
    EXPECT_THAT(Out, HasSubstr("group: " + conditions[2]["remarks"][0].get<std::string>()));
    EXPECT_EQ(Status("study compare", {Sample[0], "/none.ld2"}), 1);
    EXPECT_THAT(Err, HasSubstr("Missing Study File: none"));
}

TEST_F(StatisticsCommands, BadInputGetsASentence) {
    Files.CreateFolder("/g");
    Json("study new /g Empty");
    EXPECT_EQ(Status("study statistics /g/Empty.ld2"), 0);
    EXPECT_THAT(Out, HasSubstr("There are no runs to make statistics of."));
    PutRun("One", {44, 44, 44});
    Json("study new /g Single One");
    const std::pair<const char*, const char*> wrong[] = {
        {"--error 10", "\"--error 10%\" or \"--error 5s\""},
        {"--error -5s", "above 0"},
        {"--confidence 100", "between 50 and 99.9"},
        {"--stop 8 --go 5", "not below it"},
        {"--free-flow 0", "between 1 and 200"},
    };
    for (const auto& [options, message] : wrong) {
        EXPECT_EQ(Status(std::string("study statistics /g/Single.ld2 ") + options), 2) << options;
        EXPECT_THAT(Err, HasSubstr(message));
    }
    Files.Delete("/g/One.rd2");
    EXPECT_EQ(Json("study statistics /g/Single.ld2")["left_out"][0]["name"], "One");
    EXPECT_THAT(Err, HasSubstr("Missing Run File: One"));
    Files.PutText("/g/One.rd2", "no run");
    EXPECT_EQ(Status("study statistics /g/Single.ld2"), 1);
    AsksBeforeStop = 0;
    EXPECT_EQ(Status("study statistics /g/Single.ld2"), 128);
}

}  // namespace
}  // namespace vantor
