#include <gmock/gmock.h>

#include <algorithm>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* File = "/roads/Main.corridor.geojson";

/// Three nodes 1000 ft apart, and runs of 50 ft a second which mark them; each stands for some seconds at the second.
struct CorridorReportTest : CommandTest {
    CorridorReportTest() {
        for (const char* folder : {"/roads", "/out"}) Files.CreateFolder(folder);
        Files.PutText("/t/nodes.csv", "name,distance\nOak St,0\nElm Ave,1000\nPine St,2000\n");
        Json("corridor new --nodes /t/nodes.csv --directions NB,SB --ideal-speed 34 --upstream 400 --downstream 300",
             {"/roads/Main"});
        const int stood[] = {10, 14, 18, 2, 4, 6};
        for (int i = 0; i < 6; ++i) {
            const std::string run = "00" + std::to_string(i + 1);
            Drive(run, stood[i]);
            Json("corridor match --direction NB" + std::string(i < 3 ? "" : " --after"),
                 {File, "/roads/Day/" + run + ".rd2"});
        }
    }

    void Drive(const std::string& name, int seconds) {
        std::vector<int> values(70, 50);
        for (const std::size_t second : {15, 35, 55}) values[second] |= NodeFlag;
        values.insert(values.begin() + 34, static_cast<std::size_t>(seconds), 0);
        RunRecord run = RunOfValues(values);
        run.Header.RunDate = DateOf(2026, 11, 16);
        run.Header.RunTime = TimeOf(7, 5);
        run.Header.Before = name < "004" ? -1 : 0;
        Files.CreateFolder("/roads/Day");
        PutRunFile(Files, run, "/roads/Day/", name);
    }
    std::string TextIn(const std::string& path) const {
        const auto bytes = *Files.Bytes(path);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
    const Sheet& SheetNamed(const std::string& name) const {
        return *std::ranges::find(Sheets.Sheets, name, &Sheet::Name);
    }
};

TEST_F(CorridorReportTest, WritesEachFormWithItsFigures) {
    Json("corridor report --output /out/Main.pdf", {File});
    std::string texts;
    for (const RecordingCanvas& page : Documents.Pages)
        for (const auto& text : page.Texts) texts += text.Shown + "|";
    // 34 mph are 49.87 ft/s: 700 ft of band take 14.04 s at it. The scan for the end counts the second at the start
    // twice, so that 13 s are driven; standing is all delay.
    EXPECT_THAT(texts, HasSubstr("NB before|3|-1 A ±0|13 B ±10|-1 A ±0|"));
    EXPECT_THAT(texts, HasSubstr("NB after|3|-1 A ±0|3 A ±5|-1 A ±0|"));
    EXPECT_THAT(texts, HasSubstr("NB: Travel time fell by 10.0 s"));
    EXPECT_THAT(texts, HasSubstr("Main.figures.json"));

    Json("corridor report --output /out/Main.xlsx", {File});
    const Sheet& delays = SheetNamed("Delays");
    EXPECT_EQ(delays.Rows[1][1], SheetCell("Elm Ave"));
    EXPECT_EQ(delays.Rows[1][3], SheetCell(13.0)) << "a number";
    EXPECT_EQ(SheetNamed("Runs").Rows.size(), 6U);
    EXPECT_EQ(SheetNamed("Nodes of runs").Rows.size(), 18U);

    Json("corridor report --condition after --output /out/After.geojson", {File});
    const json map = json::parse(TextIn("/out/After.geojson"));
    EXPECT_EQ(map["features"].size(), 3U + 2U) << "counters have no tracks";
    EXPECT_EQ(map["features"][1]["properties"]["NB_control_delay"], 3.0);
    EXPECT_EQ(map["features"][3]["properties"]["travel_time"], 20.0 + 4.0);
    EXPECT_EQ(json::parse(TextIn("/out/After.figures.json"))["filter"]["condition"], "after");

    EXPECT_EQ(Status("corridor report --output /roads/Main.corridor.geojson", {File}), 2);
    EXPECT_EQ(Status("corridor report --output -", {File}), 2);
    EXPECT_EQ(Status("corridor report --output /out/No.pdf --period Night", {File}), 1);
    EXPECT_FALSE(Files.Bytes("/out/No.pdf"));
}

TEST_F(CorridorReportTest, IsProvedFromItsRuns) {
    Json("corridor report --output /roads/Main.pdf", {File});
    EXPECT_EQ(Status("corridor verify /roads/Main.pdf"), 0);
    EXPECT_EQ(Out, "same\n");
    EXPECT_GT(Json("corridor verify /roads/Main.figures.json")["compared"], 100);
    // The corridor may change, the definition in the report does not; and the report may lie anywhere.
    Files.PutText("/else/Main.figures.json", TextIn("/roads/Main.figures.json"));
    Json("corridor new --nodes /t/nodes.csv --directions NB,SB --upstream 100 --downstream 100", {"/roads/Other"});
    EXPECT_EQ(Status("corridor verify /else/Main.figures.json --corridor", {"/roads/Other.corridor.geojson"}), 0);
    EXPECT_EQ(Status("corridor verify /else/Main.figures.json"), 1);
    EXPECT_THAT(Out, HasSubstr("001 (Day): it cannot be read: "));

    Drive("002", 15);
    EXPECT_EQ(Status("corridor verify /roads/Main.pdf"), 1);
    EXPECT_THAT(Out, StartsWith("figures, all periods, all, ways, NB, nodes, Elm Ave, control delay, mean: 8.0 in the "
                                "report, 8.1666"));
    EXPECT_THAT(Out, HasSubstr("002 (Day): its samples have changed: their hash was "));
    EXPECT_THAT(Out, Not(HasSubstr("001")));

    EXPECT_EQ(Status("corridor verify /roads/Main.corridor.geojson"), 1);
    Files.PutText("/roads/x.figures.json", "{}");
    EXPECT_EQ(Status("corridor verify /roads/x.figures.json"), 1);
    EXPECT_THAT(Err, HasSubstr("The file holds no figures of a corridor."));
}

}  // namespace
}  // namespace vantor
