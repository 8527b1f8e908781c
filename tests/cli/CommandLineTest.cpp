#include "cli/CommandLine.h"

#include <gtest/gtest.h>

#include "cli/CommandRunner.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"

namespace vantor {
namespace {

/// Puts a run of those pulses, one foot each, into /g.
void PutRun(CommandRunner& runner, const std::string& name, std::vector<std::int16_t> pulses) {
    runner.Files.CreateFolder("/g");
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.SampleCount = static_cast<std::int32_t>(pulses.size());
    run.Header.RunDate = DateOf(2008, 3, 11);
    run.Header.RunTime = TimeOf(7, 5);
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    run.SampleValues = OneBased<std::int16_t>(std::move(pulses));
    WriteRunFile(runner.Files, run, "/g/", name);
}

TEST(CommandLine, ShowsFirstRunSettingsAndWritesNothing) {
    CommandRunner runner;
    runner.Files.CreateFolder("/start/Temp");
    const auto settings = runner.Json({"settings", "show"});
    EXPECT_EQ(settings["TempRunsPath"], "/start/Temp/");
    EXPECT_EQ(settings["BaudRate"], 9600);
    EXPECT_EQ(settings["SettingsWereMissing"], -1);
    EXPECT_EQ(settings["SpeedUnitLabel"], "MPH");
    EXPECT_EQ(settings["ReportHeading"][0], "Organization Title Goes Here");
    EXPECT_TRUE(runner.Files.AllFiles().empty());
}

TEST(CommandLine, ShowsRuns) {
    CommandRunner runner;
    PutRun(runner, "R1", {10, 0x0107, -32763});
    auto run = runner.Json({"run", "show", "/g/R1.RD2", "--samples"});
    EXPECT_EQ(run["RunName"], "R1");
    EXPECT_EQ(run["RunDate"], "2008-03-11T00:00:00");
    EXPECT_EQ(run["RunTime"], "1899-12-30T07:05:00");
    EXPECT_EQ(run["SampleValues"], nlohmann::json({10, 263, -32763}));
    EXPECT_EQ(run["ButtonLabel"].size(), 32U);
    EXPECT_EQ(run["SectionName"].size(), 192U);
    EXPECT_FALSE(runner.Json({"run", "show", "/g/R1.rd2"}).contains("SampleValues"));
    EXPECT_EQ(runner.Run({"run", "show", "/g/R1.rd2"}), 0);
    EXPECT_NE(runner.Out.find("RunName: R1\n"), std::string::npos);
}

TEST(CommandLine, ShowsAndConvertsVersion1Runs) {
    CommandRunner runner;
    for (const char* name : {"MAINNB01", "MAINNB03"})
        runner.Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/" + std::string(name) + ".rdf",
                               "/g/" + std::string(name) + ".rdf");
    for (const char* name : {"MAINNB01", "MAINNB03"}) {
        const std::string path = "/g/" + std::string(name);
        const auto before = runner.Json({"run", "show", path + ".rdf", "--samples"});
        const auto converted = runner.Json({"run", "convert", path + ".rdf"});
        EXPECT_EQ(converted, nlohmann::json({{"RunName", name}, {"path", path + ".rd2"}, {"renamed", path + ".rdx"}}));
        auto after = runner.Json({"run", "show", path + ".rd2", "--samples"});
        EXPECT_EQ(after["FileVersion"], 1);
        after["FileVersion"] = before["FileVersion"];
        EXPECT_EQ(after, before);
        EXPECT_GT(before["SampleValues"].size(), 100U);
    }
    EXPECT_EQ(runner.Run({"run", "convert", "/g/MAINNB01.rdf"}), 1);
    EXPECT_EQ(runner.Err, "Missing Run File: MAINNB01\n");
}

TEST(CommandLine, ComputesTheDelayOfARun) {
    CommandRunner runner;
    PutRun(runner, "R", {10, 20, 30, 40});
    const auto delay = runner.Json({"run", "delay", "/g/R.rd2", "--start-sample", "2", "--end-sample", "3"});
    EXPECT_EQ(delay["CDStartDist"], 30);
    EXPECT_EQ(delay["CDEndDist"], 80);
    EXPECT_EQ(delay["CDStartSample"], 2);
    EXPECT_EQ(delay["ControlDelay"], -1);
    EXPECT_EQ(delay["LOSGrade"], "A");
    const auto slow = runner.Json({"run", "delay", "/g/R.rd2", "--start-dist", "5", "--end-dist", "60", "--ideal-speed",
                                   "5", "--stop-speed", "14"});
    EXPECT_EQ(slow["StopDelay"], 2) << "20 feet a second are 13.6 mph";
    EXPECT_EQ(slow["IdealSpeedUser"], 5);
    EXPECT_EQ(slow["ControlDelay"], 2 - 8) << "55 feet at 7.33 feet a second are 7.5 seconds, to even";
}

TEST(CommandLine, ShowsTheStatisticsOfARun) {
    CommandRunner runner;
    PutRun(runner, "R", {44, 0x1000, -32724, 22});
    const auto statistics = runner.Json({"run", "stats", "/g/R.rd2"});
    EXPECT_EQ(statistics["Sections"][0],
              nlohmann::json::parse(R"({"Section": 1, "FromName": "[Start]", "ToName": "Node 1", "Length": 88,
                  "TravelTime": 3, "RunningTime": 2, "StoppedTime": 1, "Stops": 1, "MeanRunningSpeed": 30.0,
                  "DelaySeconds": [{"Key": 16, "Label": "Signal", "Seconds": 1}], "NoKeySeconds": 0})"));
    EXPECT_FALSE(statistics["Total"].contains("Section"));
    EXPECT_EQ(runner.Run({"run", "stats", "/g/R.rd2"}), 0);
    EXPECT_NE(runner.Out.find("\n      2  Node 1   [End]            22  "), std::string::npos) << runner.Out;
    EXPECT_NE(runner.Out.find("\n  Total  [Start]  [End]           110  "), std::string::npos) << runner.Out;
    PutRun(runner, "Empty", {});
    EXPECT_TRUE(runner.Json({"run", "stats", "/g/Empty.rd2"})["Sections"].empty());
    runner.Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB01.rdf", "/g/MAINNB01.rdf");
    const auto old = runner.Json({"run", "stats", "/g/MAINNB01.rdf"});
    EXPECT_EQ(old["Sections"].size(), 6U);
    EXPECT_EQ(old["Sections"][1]["FromName"], "Oak St");
    EXPECT_EQ(old["Sections"][5]["ToName"], "End of run");
}

TEST(CommandLine, TellsFaultsOnStandardErrorOnly) {
    CommandRunner runner;
    PutRun(runner, "Still", {0, 0, 0, 0});
    runner.Files.PutText("/g/note.txt", "x");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"run", "show", "/g/None.rd2"}, "Missing Run File: None\n"},
        {{"run", "show", "/g/None.rdf"}, "Missing Run File: None\n"},
        {{"study", "show", "/g/None.ld2"}, "Missing Study File: None\n"},
        {{"run", "show", "/g/note.txt"},
         "Run-time error '13':\nType mismatch\n\n/g/note.txt\nThis is no run file. Name "
         "a file that ends in .rd2.\n"},
    };
    for (const auto& [arguments, message] : cases) {
        EXPECT_EQ(runner.Run(arguments), 1);
        EXPECT_EQ(runner.Out, "");
        EXPECT_EQ(runner.Err, message);
    }
    EXPECT_EQ(runner.Run({"run", "delay", "/g/Still.rd2", "--start-sample", "1", "--end-sample", "2"}), 1);
    EXPECT_TRUE(runner.Err.starts_with("Run-time error '11':\nDivision by zero\n")) << runner.Err;
}

TEST(CommandLine, WrongUsageIsStatusTwo) {
    CommandRunner runner;
    PutRun(runner, "R", {10, 20});
    const std::vector<std::string> wrong[] = {{"fly"},
                                              {"run"},
                                              {"run", "show"},
                                              {"run", "delay", "/g/R.rd2"},
                                              {"run", "delay", "/g/R.rd2", "--start-dist", "5"},
                                              {"run", "delay", "/g/R.rd2", "--start-dist", "x", "--end-dist", "9"},
                                              {"run", "delay", "/g/R.rd2", "--start-dist", "1", "--end-dist", "9",
                                               "--start-sample", "1", "--end-sample", "2"},
                                              {"study", "bounds", "/g/S.ld2", "--start-dist", "1", "--end-dist", "2"},
                                              {"counter", "convert", "/g/C.tdc"}};
    for (const auto& arguments : wrong) {
        EXPECT_EQ(runner.Run(arguments), 2) << arguments.back();
        EXPECT_EQ(runner.Out, "");
        EXPECT_NE(runner.Err, "");
    }
    EXPECT_EQ(runner.Run({"--version"}), 0);
    EXPECT_TRUE(runner.Out.starts_with("Vantor 1."));
    EXPECT_EQ(runner.Run({"run", "--help"}), 0);
    EXPECT_NE(runner.Out.find("delay"), std::string::npos);
}

TEST(CommandLine, FileThatIsNoCounterFileEndsWithStatusThree) {
    CommandRunner runner;
    runner.Files.PutText("/g/C.tdc", "Dear Sir,\r\n");
    EXPECT_EQ(runner.Run({"counter", "studies", "/g/C.tdc"}), 3);
    EXPECT_EQ(runner.Out, "");
    EXPECT_TRUE(runner.Err.starts_with("/g/C.tdc: record 1: expected ")) << runner.Err;
}

TEST(CommandLine, MakesStudiesOnlyOfRunsThatAreThere) {
    CommandRunner runner;
    PutRun(runner, "A", {10, 20, 30, 40});
    PutRun(runner, "B", {10, 20, 30, 40});
    EXPECT_EQ(runner.Run({"study", "new", "/g", "S", "A", "Gone"}), 1);
    EXPECT_FALSE(runner.Files.Bytes("/g/S.ld2"));
    const auto study = runner.Json({"study", "new", "/g", "S", "A", "b.rd2", "A"});
    EXPECT_EQ(study["StudyName"], "S");
    EXPECT_EQ(study["StudyDate"], "2008-03-14T12:00:00");
    EXPECT_EQ(study["RunCount"], 2);
    EXPECT_EQ(study["CritLane"], -1);
    EXPECT_EQ(study["entries"][0]["EntryRunName"], "A");
    EXPECT_EQ(runner.Files.Bytes("/g/S.ld2")->size(), 320U + 2 * 128U);
    EXPECT_EQ(runner.Run({"study", "new", "/g", "S", "A"}), 1) << "a study is not replaced";
    EXPECT_EQ(runner.Run({"study", "new", "/g", "../S", "A"}), 1);
}

TEST(CommandLine, RunsThatFailKeepTheirEntriesAndTheOthersAreDone) {
    CommandRunner runner;
    for (const char* name : {"A", "Still", "Gone"}) PutRun(runner, name, {10, 20, 30, 40});
    runner.Json({"study", "new", "/g", "S", "A", "Still", "Gone"});
    const auto study = runner.Json({"study", "bounds", "/g/S.ld2", "--all", "--start-dist", "5", "--end-dist", "60"});
    // 55 feet at (10 + 30) / 2 feet a second take 2.75 seconds, from sample 1 to sample 3.
    EXPECT_EQ(study["AvgControlDelay"], "-1");
    PutRun(runner, "Still", {0, 0, 0, 0});
    runner.Files.Delete("/g/Gone.rd2");
    const auto before = runner.Json({"study", "show", "/g/S.ld2"});
    EXPECT_EQ(runner.Run({"study", "compute", "/g/S.ld2", "--stop-speed", "50", "--json"}), 1);
    const auto after = nlohmann::json::parse(runner.Out);
    EXPECT_EQ(after["entries"][0]["StopDelay"], 3);
    EXPECT_EQ(after["entries"][1], before["entries"][1]);
    EXPECT_EQ(after["entries"][2], before["entries"][2]);
    EXPECT_NE(runner.Err.find("Still: Run-time error '11'"), std::string::npos) << runner.Err;
    EXPECT_NE(runner.Err.find("Missing Run File: Gone"), std::string::npos);
    EXPECT_EQ(runner.Run({"study", "bounds", "/g/S.ld2", "Nobody", "--start-dist", "5", "--end-dist", "60"}), 1);
}

TEST(CommandLine, EndBoundaryAtTheRunsEndCountsItsLastSecond) {
    CommandRunner runner;
    PutRun(runner, "A", {10, 20, 30, 40, 50});
    runner.Json({"study", "new", "/g", "S", "A"});
    // The speed profile places that boundary on sample 5: 4 s; 140 ft at (10 + 0) / 2 ft/s are 28 s.
    for (const char* end : {"150", "9000"}) {
        const auto study = runner.Json(
            {"study", "bounds", "/g/S.ld2", "A", "--start-dist", "10", "--end-dist", end, "--ideal-speed", "0"});
        EXPECT_EQ(study["entries"][0]["ControlDelay"], 4 - (std::string(end) == "150" ? 28 : 1798)) << end;
    }
    // Nothing was placed before a lone computation, so the sample of a boundary that is not found stays 0.
    EXPECT_EQ(runner.Run({"run", "delay", "/g/A.rd2", "--start-dist", "10", "--end-dist", "150", "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(runner.Out)["CDEndSample"], 0);
    EXPECT_NE(runner.Err.find("CDEndSample stays 0"), std::string::npos);
}

TEST(CommandLine, WorkThatIsStoppedWritesNothing) {
    CommandRunner runner;
    PutRun(runner, "A", {10, 20, 30, 40});
    PutRun(runner, "B", {10, 20, 30, 40});
    runner.Json({"study", "new", "/g", "S", "A", "B"});
    runner.Files.PutText("/g/C.tdc", "T,1,1,S,0653,031108,1000\r\n1\r\n::::::::::::::::::::\r\n");
    const auto before = runner.Files.AllFiles();
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"counter", "convert", "/g/C.tdc", "--to", "/g"},
          {"study", "report", "/g/S.ld2", "--output", "/g/S.pdf"},
          {"study", "export", "/g/S.ld2", "--output", "/g/S.xlsx"}})
        for (const int asks : {0, 1}) {
            runner.AsksBeforeStop = asks;
            EXPECT_EQ(runner.Run(command), 128) << command[1] << " after " << asks;
            EXPECT_EQ(runner.Out, "");
            EXPECT_EQ(runner.Files.AllFiles(), before);
        }
}

TEST(CommandLine, LabelsThatWereNeverSetAreNull) {
    CommandRunner runner;
    PutRun(runner, "A", {10, 20, 30, 40});
    runner.Json({"study", "new", "/g", "S", "A"});
    const auto study = runner.Json({"study", "compute", "/g/S.ld2"});
    EXPECT_TRUE(study["AvgControlDelay"].is_null());
    EXPECT_TRUE(study["AvgStopDelay"].is_null());
    EXPECT_TRUE(study["Ratio"].is_null());
}

}  // namespace
}  // namespace vantor
