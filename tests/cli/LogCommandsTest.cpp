#include <gtest/gtest.h>

#include <fstream>

#include "cli/CommandRunner.h"
#include "core/RunRecords.h"

namespace vantor {
namespace {

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

class LogCommandsTest : public testing::Test {
protected:
    void SetUp() override {
        std::ifstream(VANTOR_TEST_DATA "log_figures.json") >> Figures;
        Runner.Files.CreateFolder("/runs");
        for (const auto& [kind, figure] : Figures.items())
            Runner.Files.Put("/logs/Night." + kind, BytesOfHex(figure["log"]));
    }

    nlohmann::json Figures;
    CommandRunner Runner;
};

TEST_F(LogCommandsTest, MakesTheRunsThatTheFiguresTell) {
    for (const auto& [kind, figure] : Figures.items()) {
        Runner.Files.CreateFolder("/runs/" + kind);
        const auto names = Runner.Json({"log", "convert", "/logs/Night." + kind, "--to", "/runs/" + kind});
        ASSERT_EQ(names.size(), figure["runs"].size());
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string path = "/runs/" + kind + "/" + names[i].get<std::string>() + ".rd2";
            const auto header = Runner.Json({"run", "show", path});
            for (const auto& [key, value] : figure["runs"][i].items()) {
                if (key == "samples") continue;
                EXPECT_EQ(header[key], value) << path << " " << key;
            }
            const auto bytes = Runner.Files.Bytes(path).value();
            const auto samples = BytesOfHex(figure["runs"][i]["samples"]);
            EXPECT_TRUE(std::equal(bytes.begin() + RunHeaderSize, bytes.end(), samples.begin(), samples.end())) << path;
        }
        EXPECT_EQ(Runner.Err, "");
    }
}

TEST_F(LogCommandsTest, ShowsLogsWithTheirRowsInOrder) {
    const std::pair<const char*, const char*> kinds[] = {
        {"gd2", "gps-laptop"}, {"od2", "obd-laptop"}, {"ddf", "gps-obd"}};
    for (const auto& [extension, name] : kinds) {
        const std::string path = "/logs/Night." + std::string(extension);
        EXPECT_FALSE(Runner.Json({"log", "show", path}).contains("rows"));
        const auto log = Runner.Json({"log", "show", path, "--rows"});
        EXPECT_EQ(log["kind"], name);
        EXPECT_EQ(log["StudyName"], "Main Street 2008");
        EXPECT_EQ(log["BaseName"], "Main/NB");
        EXPECT_EQ(log["StudyDate"], "2008-03-14");
        EXPECT_EQ(log["StartTime"], MomentOf(Figures[extension]["start"]));
        EXPECT_EQ(log["Runs"], 7);
        EXPECT_EQ(log["droppedBytes"], 0);
        const auto& times = Figures[extension]["times"];
        ASSERT_EQ(log["rows"].size(), times.size());
        EXPECT_EQ(log["rowCount"], times.size());
        for (std::size_t i = 0; i < times.size(); ++i) EXPECT_EQ(log["rows"][i]["DateTime"], MomentOf(times[i]));
    }
    EXPECT_EQ(Runner.Run({"log", "show", "/logs/Night.gd2", "--rows"}), 0);
    EXPECT_NE(Runner.Out.find("kind: gps-laptop\n"), std::string::npos) << Runner.Out;
}

TEST_F(LogCommandsTest, TellsGapsAndFillsThemBySpeedOnDemand) {
    const auto gap = Runner.Json({"log", "show", "/logs/Night.od2"})["gaps"][0];
    EXPECT_EQ(gap["RunNumber"], 1);
    EXPECT_TRUE(gap["feetByPosition"].is_null());
    EXPECT_EQ(gap["filled"], "speed");
    ASSERT_EQ(Runner.Run({"log", "convert", "/logs/Night.od2", "--to", "/runs"}), 0);
    EXPECT_EQ(Runner.Err,
              "run 1, gaps: 1 by speed 5 s, in /logs/Night.od2\nrun 7, gaps: 3 by speed 10 s, in /logs/Night.od2\n");
    Runner.Json({"log", "convert", "/logs/Night.gd2", "--to", "/runs", "--gaps", "Speed"});
    EXPECT_EQ(Runner.Json({"run", "show", "/runs/Main_NB-R001-1.rd2"})["Notes"], "Direction WB");
}

TEST_F(LogCommandsTest, RowsHaveTheKeysOfTheirKind) {
    const auto keysOf = [&](const std::string& extension) {
        EXPECT_EQ(Runner.Run({"log", "show", "/logs/Night." + extension, "--rows", "--json"}), 0);
        return nlohmann::ordered_json::parse(Runner.Out)["rows"][0];
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
    EXPECT_EQ(combined["OBD"]["TroubleCodes"], "P0420");
    EXPECT_EQ(combined["OBD"]["Rpm"], 1800);
}

TEST_F(LogCommandsTest, ReadsHandheldDatabasesThroughTheEngine) {
    Runner.Files.PutText("/logs/GPSData.mdb", "x");
    Runner.Databases.Path = "/logs/GPSData.mdb";
    Runner.Databases.Table = "GPSData";
    Runner.Databases.Records = {{"03/14/2008 07:00:00", "42.5", "-83.5", "30", "90", "1.5", "8", "0", "4"}};
    const auto log = Runner.Json({"log", "show", "/logs/GPSData.mdb", "--rows"});
    EXPECT_EQ(log["kind"], "gps-handheld");
    EXPECT_TRUE(log["StudyDate"].is_null());
    EXPECT_EQ(log["rows"][0]["DateTime"], "2008-03-14T07:00:00");
    EXPECT_EQ(log["rows"][0]["SatUsed"], 8);
    EXPECT_EQ(Runner.Json({"log", "convert", "/logs/GPSData.mdb", "--to", "/runs"}), nlohmann::json({"GPSData-R004"}));
}

TEST_F(LogCommandsTest, TellsWhatALogLacks) {
    auto bytes = Runner.Files.Bytes("/logs/Night.gd2").value();
    bytes.resize(bytes.size() - 5);
    Runner.Files.Put("/logs/Cut.gd2", bytes);
    EXPECT_EQ(Runner.Json({"log", "show", "/logs/Cut.gd2"})["droppedBytes"], 43);
    EXPECT_EQ(Runner.Run({"log", "convert", "/logs/Cut.gd2", "--to", "/runs"}), 0);
    EXPECT_NE(Runner.Err.find("43 bytes"), std::string::npos) << Runner.Err;

    bytes.resize(116);
    Runner.Files.Put("/logs/Empty.gd2", bytes);
    EXPECT_EQ(Runner.Json({"log", "convert", "/logs/Empty.gd2", "--to", "/runs"}), nlohmann::json::array());
    const auto empty = Runner.Json({"log", "show", "/logs/Empty.gd2", "--rows"});
    EXPECT_EQ(empty["rowCount"], 0);
    EXPECT_TRUE(empty["StartTime"].is_null());
    EXPECT_EQ(empty["rows"], nlohmann::json::array());

    EXPECT_EQ(Runner.Run({"log", "show", "/logs/None.gd2"}), 1);
    EXPECT_NE(Runner.Err.find("Run-time error '53':"), std::string::npos) << Runner.Err;
    EXPECT_EQ(Runner.Run({"log", "convert", "/logs/Night.gd2", "--to", "/nowhere"}), 1);
    EXPECT_EQ(Runner.Run({"log", "convert", "/logs/Night.gd2"}), 2);
    EXPECT_EQ(Runner.Out, "");
}

}  // namespace
}  // namespace vantor
