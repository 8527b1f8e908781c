#include <gmock/gmock.h>

#include <fstream>

#include "cli/CommandRunner.h"
#include "core/RunRecords.h"

namespace vantor {
namespace {

using testing::HasSubstr;

std::vector<std::byte> BytesOfHex(const std::string& digits) {
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(static_cast<std::byte>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

/// Seconds of 14 March 2008.
std::string MomentOf(int seconds) {
    char time[32];
    std::snprintf(time, sizeof time, "2008-03-%02dT%02d:%02d:%02d", 14 + seconds / 86400, seconds / 3600 % 24,
                  seconds / 60 % 60, seconds % 60);
    return time;
}

class LogCommandsTest : public CommandTest {
protected:
    void SetUp() override {
        std::ifstream(VANTOR_TEST_DATA "log_figures.json") >> Figures;
        Files.CreateFolder("/runs");
        for (const auto& [kind, figure] : Figures.items()) Files.Put("/logs/Night." + kind, BytesOfHex(figure["log"]));
    }

    json Figures;
};

TEST_F(LogCommandsTest, MakesTheRunsThatTheFiguresTell) {
    for (const auto& [kind, figure] : Figures.items()) {
        Files.CreateFolder("/runs/" + kind);
        const auto names = Json("log convert", {"/logs/Night." + kind, "--to", "/runs/" + kind});
        ASSERT_EQ(names.size(), figure["runs"].size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string path = "/runs/" + kind + "/" + names[i].get<std::string>() + ".rd2";
            SCOPED_TRACE(path);
            json facts = figure["runs"][i];
            const auto samples = BytesOfHex(facts["samples"]);
            facts.erase("samples");
            ExpectHas(Json("run show", {path}), facts);
            const auto bytes = Files.Bytes(path).value();
            EXPECT_TRUE(std::equal(bytes.begin() + RunHeaderSize, bytes.end(), samples.begin(), samples.end()));
        }
        EXPECT_EQ(Err, "");
    }
}

TEST_F(LogCommandsTest, ShowsLogsWithTheirRowsInOrder) {
    const std::pair<const char*, const char*> kinds[] = {
        {"gd2", "gps-laptop"}, {"od2", "obd-laptop"}, {"ddf", "gps-obd"}};
    for (const auto& [extension, name] : kinds) {
        const std::string path = "/logs/Night." + std::string(extension);
        EXPECT_FALSE(Json("log show", {path}).contains("rows"));
        const auto log = Json("log show", {path, "--rows"});
        const auto& times = Figures[extension]["times"];
        ExpectHas(log, {{"kind", name},
                        {"StudyName", "Main Street 2008"},
                        {"BaseName", "Main/NB"},
                        {"StudyDate", "2008-03-14"},
                        {"StartTime", MomentOf(Figures[extension]["start"])},
                        {"Runs", 7},
                        {"droppedBytes", 0},
                        {"rowCount", times.size()}});
        ASSERT_EQ(log["rows"].size(), times.size());
        for (std::size_t i = 0; i < times.size(); ++i) EXPECT_EQ(log["rows"][i]["DateTime"], MomentOf(times[i]));
    }
    EXPECT_EQ(Status("log show /logs/Night.gd2 --rows"), 0);
    EXPECT_THAT(Out, HasSubstr("kind: gps-laptop\n"));
}

TEST_F(LogCommandsTest, TellsGapsAndFillsThemBySpeedOnDemand) {
    const auto gap = Json("log show /logs/Night.od2")["gaps"][0];
    ExpectHas(gap, {{"RunNumber", 1}, {"feetByPosition", nullptr}, {"filled", "speed"}});
    ASSERT_EQ(Status("log convert /logs/Night.od2 --to /runs"), 0);
    EXPECT_EQ(Err,
              "run 1, gaps: 1 by speed 5 s, in /logs/Night.od2\nrun 7, gaps: 3 by speed 10 s, in /logs/Night.od2\n");
    Json("log convert /logs/Night.gd2 --to /runs --gaps Speed");
    EXPECT_EQ(Json("run show /runs/Main_NB-R001-1.rd2")["Notes"], "Direction WB");
}

TEST_F(LogCommandsTest, RowsHaveTheKeysOfTheirKind) {
    const auto keysOf = [&](const std::string& extension) {
        EXPECT_EQ(Status("log show", {"/logs/Night." + extension, "--rows", "--json"}), 0);
        return nlohmann::ordered_json::parse(Out)["rows"][0];
    };
    const auto list = [](const nlohmann::ordered_json& row) {
        std::string keys;
        for (const auto& [key, value] : row.items()) keys += key + " ";
        return keys;
    };
    const std::string gps =
        "RunNumber Direction Node DateTime Speed Heading DelayNumber Latitude Longitude HDOP FixQuality SatUsed ";
    const std::string obd =
        "Speed Rpm Load Throttle CoolantTemp IntakeTemp AirFlow FuelRate DelayNumber TroubleCodes MonitorStatus "
        "Comment ";
    EXPECT_EQ(list(keysOf("gd2")), gps);
    EXPECT_EQ(list(keysOf("od2")), "RunNumber Direction Node DateTime " + obd);
    EXPECT_EQ(list(keysOf("ddf")), gps + "OBD ");
    const auto combined = keysOf("ddf");
    EXPECT_EQ(list(combined["OBD"]), "Direction Node " + obd);
    ExpectHas(combined["OBD"], {{"TroubleCodes", "P0420"}, {"Rpm", 1800}});
}

TEST_F(LogCommandsTest, ReadsHandheldDatabasesThroughTheEngine) {
    Files.PutText("/logs/GPSData.mdb", "x");
    Databases.Path = "/logs/GPSData.mdb";
    Databases.Table = "GPSData";
    Databases.Records = {{"03/14/2008 07:00:00", "42.5", "-83.5", "30", "90", "1.5", "8", "0", "4"}};
    const auto log = Json("log show /logs/GPSData.mdb --rows");
    ExpectHas(log, {{"kind", "gps-handheld"}, {"StudyDate", nullptr}});
    ExpectHas(log["rows"][0], {{"DateTime", "2008-03-14T07:00:00"}, {"SatUsed", 8}});
    EXPECT_EQ(Json("log convert /logs/GPSData.mdb --to /runs"), json({"GPSData-R004"}));
}

TEST_F(LogCommandsTest, TellsWhatALogLacks) {
    auto bytes = Files.Bytes("/logs/Night.gd2").value();
    bytes.resize(bytes.size() - 5);
    Files.Put("/logs/Cut.gd2", bytes);
    EXPECT_EQ(Json("log show /logs/Cut.gd2")["droppedBytes"], 43);
    EXPECT_EQ(Status("log convert /logs/Cut.gd2 --to /runs"), 0);
    EXPECT_THAT(Err, HasSubstr("43 bytes"));

    bytes.resize(116);
    Files.Put("/logs/Empty.gd2", bytes);
    EXPECT_EQ(Json("log convert /logs/Empty.gd2 --to /runs"), json::array());
    const auto empty = Json("log show /logs/Empty.gd2 --rows");
    ExpectHas(empty, {{"rowCount", 0}, {"StartTime", nullptr}, {"rows", json::array()}});

    EXPECT_EQ(Status("log show /logs/None.gd2"), 1);
    EXPECT_THAT(Err, HasSubstr("Run-time error '53':"));
    EXPECT_EQ(Status("log convert /logs/Night.gd2 --to /nowhere"), 1);
    EXPECT_EQ(Status("log convert /logs/Night.gd2"), 2);
    EXPECT_EQ(Out, "");
}

}  // namespace
}  // namespace vantor
