#include "cli/CommandLine.h"

#include <gmock/gmock.h>

#include "cli/CommandRunner.h"

namespace vantor {
namespace {

using testing::HasSubstr, testing::StartsWith;

using CommandLine = CommandTest;

TEST_F(CommandLine, ShowsFirstRunSettingsAndWritesNothing) {
    Files.CreateFolder("/start/Temp");
    const auto settings = Json("settings show");
    ExpectHas(
        settings,
        {{"TempRunsPath", "/start/Temp/"}, {"BaudRate", 9600}, {"SettingsWereMissing", -1}, {"SpeedUnitLabel", "MPH"}});
    EXPECT_EQ(settings["ReportHeading"][0], "Organization Title Goes Here");
    EXPECT_TRUE(Files.AllFiles().empty());
}

TEST_F(CommandLine, ShowsRuns) {
    PutRun("R1", {10, 0x0107, -32763});
    auto run = Json("run show /g/R1.RD2 --samples");
    ExpectHas(run, {{"RunName", "R1"},
                    {"RunDate", "2008-03-11T00:00:00"},
                    {"RunTime", "1899-12-30T07:05:00"},
                    {"SampleValues", {10, 263, -32763}}});
    EXPECT_EQ(run["ButtonLabel"].size(), 32U);
    EXPECT_EQ(run["SectionName"].size(), 192U);
    EXPECT_FALSE(Json("run show /g/R1.rd2").contains("SampleValues"));
    EXPECT_EQ(Status("run show /g/R1.rd2"), 0);
    EXPECT_THAT(Out, HasSubstr("RunName: R1\n"));
}

TEST_F(CommandLine, ShowsAndConvertsVersion1Runs) {
    for (const std::string name : {"MAINNB01", "MAINNB03"}) {
        const std::string path = "/g/" + name;
        Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/" + name + ".rdf", path + ".rdf");
        const auto before = Json("run show", {path + ".rdf", "--samples"});
        EXPECT_EQ(Json("run convert", {path + ".rdf"}),
                  json({{"RunName", name}, {"path", path + ".rd2"}, {"renamed", path + ".rdx"}}));
        auto after = Json("run show", {path + ".rd2", "--samples"});
        EXPECT_EQ(after["FileVersion"], 1);
        after["FileVersion"] = before["FileVersion"];
        EXPECT_EQ(after, before);
        EXPECT_GT(before["SampleValues"].size(), 100U);
    }
    EXPECT_EQ(Status("run convert /g/MAINNB01.rdf"), 1);
    EXPECT_EQ(Err, "Missing Run File: MAINNB01\n");
}

TEST_F(CommandLine, ComputesTheDelayOfARun) {
    PutRun("R", {10, 20, 30, 40});
    ExpectHas(Json("run delay /g/R.rd2 --start-sample 2 --end-sample 3"),
              {{"CDStartDist", 30}, {"CDEndDist", 80}, {"CDStartSample", 2}, {"ControlDelay", -1}, {"LOSGrade", "A"}});
    // 20 feet a second are 13.6 mph; 55 feet at 7.33 feet a second are 7.5 seconds, to even.
    ExpectHas(Json("run delay /g/R.rd2 --start-dist 5 --end-dist 60 --ideal-speed 5 --stop-speed 14"),
              {{"StopDelay", 2}, {"IdealSpeedUser", 5}, {"ControlDelay", 2 - 8}});
}

TEST_F(CommandLine, ShowsTheStatisticsOfARun) {
    PutRun("R", {44, 0x1000, -32724, 22});
    const auto statistics = Json("run stats /g/R.rd2");
    EXPECT_EQ(statistics["Sections"][0],
              json::parse(R"({"Section": 1, "FromName": "[Start]", "ToName": "Node 1", "Length": 88,
                  "TravelTime": 3, "RunningTime": 2, "StoppedTime": 1, "Stops": 1, "MeanRunningSpeed": 30.0,
                  "DelaySeconds": [{"Key": 16, "Label": "Signal", "Seconds": 1}], "NoKeySeconds": 0})"));
    EXPECT_FALSE(statistics["Total"].contains("Section"));
    EXPECT_EQ(Status("run stats /g/R.rd2"), 0);
    EXPECT_THAT(Out, HasSubstr("\n      2  Node 1   [End]            22  "));
    EXPECT_THAT(Out, HasSubstr("\n  Total  [Start]  [End]           110  "));
    PutRun("Empty", {});
    EXPECT_TRUE(Json("run stats /g/Empty.rd2")["Sections"].empty());
    Files.PutCopyOf(VANTOR_SAMPLES "Version 1 runs/MAINNB01.rdf", "/g/MAINNB01.rdf");
    const auto old = Json("run stats /g/MAINNB01.rdf");
    EXPECT_EQ(old["Sections"].size(), 6U);
    EXPECT_EQ(old["Sections"][1]["FromName"], "Oak St");
    EXPECT_EQ(old["Sections"][5]["ToName"], "End of run");
}

TEST_F(CommandLine, TellsFaultsOnStandardErrorOnly) {
    PutRun("Still", {0, 0, 0, 0});
    Files.PutText("/g/note.txt", "x");
    const std::pair<const char*, const char*> cases[] = {
        {"run show /g/None.rd2", "Missing Run File: None\n"},
        {"run show /g/None.rdf", "Missing Run File: None\n"},
        {"study show /g/None.ld2", "Missing Study File: None\n"},
        {"run show /g/note.txt",
         "Run-time error '13':\nType mismatch\n\n/g/note.txt\nThis is no run file. Name a file that ends in .rd2.\n"}};
    for (const auto& [command, message] : cases) {
        EXPECT_EQ(Status(command), 1);
        EXPECT_EQ(Out, "");
        EXPECT_EQ(Err, message);
    }
    EXPECT_EQ(Status("run delay /g/Still.rd2 --start-sample 1 --end-sample 2"), 1);
    EXPECT_THAT(Err, StartsWith("Run-time error '11':\nDivision by zero\n"));
    Files.PutText("/g/C.tdc", "Dear Sir,\r\n");
    EXPECT_EQ(Status("counter studies /g/C.tdc"), 3) << "a fatal fault of the format";
    EXPECT_EQ(Out, "");
    EXPECT_THAT(Err, StartsWith("/g/C.tdc: record 1: expected "));
}

TEST_F(CommandLine, WrongUsageIsStatusTwo) {
    PutRun("R", {10, 20});
    for (const char* wrong : {"fly", "run", "run show", "run delay /g/R.rd2", "run delay /g/R.rd2 --start-dist 5",
                              "run delay /g/R.rd2 --start-dist x --end-dist 9", "counter convert /g/C.tdc",
                              "run delay /g/R.rd2 --start-dist 1 --end-dist 9 --start-sample 1 --end-sample 2",
                              "study bounds /g/S.ld2 --start-dist 1 --end-dist 2"}) {
        EXPECT_EQ(Status(wrong), 2) << wrong;
        EXPECT_EQ(Out, "");
        EXPECT_NE(Err, "");
    }
    EXPECT_EQ(Status("--version"), 0);
    EXPECT_THAT(Out, StartsWith("Vantor 1."));
    EXPECT_EQ(Status("run --help"), 0);
    EXPECT_THAT(Out, HasSubstr("delay"));
}

TEST_F(CommandLine, NamesTheWordThatIsWrong) {
    for (const auto& [command, told] :
         {std::pair{"study shw /g/S.ld2", "\"shw\" is not known here. Choose one of: new, show, compute, "},
          {"study show --smples", "\"--smples\" is not known here. Its options are: --help, --json."},
          {"study export AM Peak.ld2 --output x.csv",
           "\"Peak.ld2\" is not known here. A name with blanks needs quotes."},
          {"study", "A command is missing. Choose one of: new, "},
          {"study report /g/S.ld2 --output x.pdf --paper A5", "--paper: A5 not in "},
          {"study compute /g/S.ld2 --stop-speed 0x5", "--stop-speed: \"0x5\" is no whole decimal number"}}) {
        EXPECT_EQ(Status(command), 2);
        EXPECT_THAT(Err, StartsWith(told));
    }
}

TEST_F(CommandLine, SeveralFilesAreEachDoneAsACommandOfTheirOwn) {
    Files.PutText("/g/C.tdc", "T,1,1,S,0653,031108,1000\r\n1\r\n::::::::::::::::::::\r\n");
    Files.PutText("/g/Letter.tdc", "Dear Sir,\r\n");
    PutRun("Fünf", {10, 20});
    PutRun("Zweiundzwanzig", {10, 20});
    const json alone = Json("counter studies /g/C.tdc");
    EXPECT_EQ(Status("counter studies /g/C.tdc /g/Letter.tdc /g/None.tdc /g/C.tdc --json"), 3) << "the worst";
    EXPECT_EQ(json::parse(Out), json({alone, nullptr, nullptr, alone}));
    EXPECT_THAT(Err, AllOf(HasSubstr("/g/Letter.tdc: record 1"), HasSubstr("/g/None.tdc")));
    Json("study new /g S Fünf Zweiundzwanzig");
    EXPECT_EQ(Json("study compute /g/S.ld2 /g/S.ld2").size(), 2U);
    EXPECT_EQ(Status("study show /g/S.ld2 /g/Gone.ld2"), 1);
    EXPECT_THAT(Out, AllOf(StartsWith("/g/S.ld2:\n"), HasSubstr("\nFünf                      0  "),
                           HasSubstr("\nZweiundzwanzig            0  ")));
    EXPECT_EQ(Status("run despike /g/Fünf.rd2 /g/Zweiundzwanzig.rd2 --output /g/X.rd2"), 2);
}

TEST_F(CommandLine, StandardInputAndOutputAreFiles) {
    Files.CreateFolder("/g");
    In = "T,1,1,S,0653,031108,1000\r\n1\r\n::::::::::::::::::::\r\n";
    EXPECT_EQ(Json("counter studies -")[0]["Runs"], 1);
    EXPECT_EQ(Json("counter convert - --to /g").size(), 1U);
    PutRun("A", {10, 20, 30, 40});
    const auto bytes = *Files.Bytes("/g/A.rd2");
    In = std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    EXPECT_EQ(Json("run show -")["SampleCount"], 4);
    Json("study new /g S A");
    const auto files = Files.AllFiles();
    EXPECT_EQ(Status("study export /g/S.ld2 --output -"), 0);
    EXPECT_THAT(Out, AllOf(StartsWith("\xEF\xBB\xBFRun Name,"), HasSubstr("\r\nA,03/11/08,")));
    for (const std::string command : {"report", "chart"}) {
        EXPECT_EQ(Status("study " + command + " /g/S.ld2 --output -"), 0);
        EXPECT_EQ(Out, command == "report" ? "%P" : "\x89P");
        EXPECT_EQ(Status("study " + command + " /g/S.ld2 --output - --json"), 2);
    }
    EXPECT_EQ(Documents.Format, PictureFormat::Svg);
    EXPECT_EQ(Files.AllFiles(), files);
}

TEST_F(CommandLine, MakesStudiesOnlyOfRunsThatAreThere) {
    for (const char* name : {"A", "B"}) PutRun(name, {10, 20, 30, 40});
    EXPECT_EQ(Status("study new /g S A Gone"), 1);
    EXPECT_FALSE(Files.Bytes("/g/S.ld2"));
    const auto study = Json("study new /g S A b.rd2 A");
    ExpectHas(study, {{"StudyName", "S"}, {"StudyDate", "2008-03-14T12:00:00"}, {"RunCount", 2}, {"CritLane", -1}});
    EXPECT_EQ(study["entries"][0]["EntryRunName"], "A");
    EXPECT_EQ(Files.Bytes("/g/S.ld2")->size(), 320U + 2 * 128U);
    EXPECT_EQ(Status("study new /g S A"), 1) << "a study is not replaced";
    EXPECT_EQ(Status("study new /g ../S A"), 1);
    // Labels that were never set.
    ExpectHas(Json("study compute /g/S.ld2"),
              {{"AvgControlDelay", nullptr}, {"AvgStopDelay", nullptr}, {"Ratio", nullptr}});
}

TEST_F(CommandLine, RunsThatFailKeepTheirEntriesAndTheOthersAreDone) {
    for (const char* name : {"A", "Still", "Gone"}) PutRun(name, {10, 20, 30, 40});
    Json("study new /g S A Still Gone");
    const auto study = Json("study bounds /g/S.ld2 --all --start-dist 5 --end-dist 60");
    // 55 feet at (10 + 30) / 2 feet a second take 2.75 seconds, from sample 1 to sample 3.
    EXPECT_EQ(study["AvgControlDelay"], "-1");
    PutRun("Still", {0, 0, 0, 0});
    Files.Delete("/g/Gone.rd2");
    const auto before = Json("study show /g/S.ld2");
    EXPECT_EQ(Status("study compute /g/S.ld2 --stop-speed 50 --json"), 1);
    const auto after = json::parse(Out);
    EXPECT_EQ(after["entries"][0]["StopDelay"], 3);
    auto failed = before["entries"][1];
    EXPECT_EQ(after["entries"][1]["warnings"][2], "not computed: the figure is an earlier one");
    failed["warnings"] = after["entries"][1]["warnings"];
    EXPECT_EQ(after["entries"][1], failed);
    EXPECT_EQ(after["entries"][2], before["entries"][2]);
    EXPECT_THAT(Err, AllOf(HasSubstr("Still: Run-time error '11'"), HasSubstr("Missing Run File: Gone")));
    EXPECT_EQ(Status("study bounds /g/S.ld2 Nobody --start-dist 5 --end-dist 60"), 1);
}

TEST_F(CommandLine, EndBoundaryAtTheRunsEndCountsItsLastSecond) {
    PutRun("A", {10, 20, 30, 40, 50});
    Json("study new /g S A");
    // The speed profile places that boundary on sample 5: 4 s; 140 ft at (10 + 0) / 2 ft/s are 28 s.
    for (const char* end : {"150", "9000"}) {
        const auto study = Json("study bounds /g/S.ld2 A --start-dist 10 --end-dist", {end, "--ideal-speed", "0"});
        EXPECT_EQ(study["entries"][0]["ControlDelay"], 4 - (std::string(end) == "150" ? 28 : 1798)) << end;
    }
    // A lone computation says the same as the study.
    EXPECT_EQ(Status("run delay /g/A.rd2 --start-dist 10 --end-dist 150 --json"), 0);
    ExpectHas(json::parse(Out), {{"CDEndSample", 5}, {"ControlDelay", 4 - 28}});
    EXPECT_THAT(Err, HasSubstr("end not reached"));
}

TEST_F(CommandLine, WorkThatIsStoppedWritesNothing) {
    for (const char* name : {"A", "B"}) PutRun(name, {10, 20, 30, 40});
    Json("study new /g S A B");
    Files.PutText("/g/C.tdc", "T,1,1,S,0653,031108,1000\r\n1\r\n::::::::::::::::::::\r\n");
    const auto before = Files.AllFiles();
    for (const std::string command : {"counter convert /g/C.tdc --to /g", "study report /g/S.ld2 --output /g/S.pdf",
                                      "study export /g/S.ld2 --output /g/S.xlsx"})
        for (const int asks : {0, 1}) {
            AsksBeforeStop = asks;
            EXPECT_EQ(Status(command), 128) << command << " after " << asks;
            EXPECT_EQ(Out, "");
            EXPECT_EQ(Files.AllFiles(), before);
        }
}

}  // namespace
}  // namespace vantor
