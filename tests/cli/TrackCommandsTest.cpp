#include <gmock/gmock.h>

#include <cmath>

#include "cli/CommandRunner.h"
#include "core/RunFile.h"
#include "core/Text.h"
#include "gpsobd/TrackChoices.h"

namespace vantor {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// A track of one point a second to the north from 12:00:00 UTC on 1 March 2021, at 0.0002 degrees, 72.963 feet, each.
std::string Gpx(int from, int seconds, const std::string& inPoint = "") {
    std::string text = "<trkseg>";
    for (int i = from; i < from + seconds; ++i) {
        char point[128];
        std::snprintf(point, sizeof point, R"(<trkpt lat="%.4f" lon="-83"><time>2021-03-01T12:%02d:%02dZ</time>)",
                      42 + i * 0.0002, i / 60, i % 60);
        text += point + inPoint + "</trkpt>";
    }
    return text + "</trkseg>";
}

std::string GpxFile(const std::string& segments) { return "<gpx version=\"1.1\"><trk>" + segments + "</trk></gpx>"; }

struct TrackCommandsTest : CommandTest {
    TrackCommandsTest() {
        Files.CreateFolder("/runs");
        Files.CreateFolder("/t");
    }

    /// What a command says of one file.
    std::string Told(const std::string& name, const std::string& text, const std::string& options = "") {
        Files.PutText("/t/" + name, text);
        EXPECT_EQ(Status("track convert --to /runs " + options, {"/t/" + name}), 1) << Out;
        return Err;
    }
};

TEST_F(TrackCommandsTest, ShowsTheRunsThatAFileWouldGive) {
    Files.PutText("/t/a.gpx", GpxFile(Gpx(0, 100) + Gpx(200, 100)));
    auto shown = Json("track show /t/a.gpx --time-zone West");
    ExpectHas(shown, {{"kind", "gpx"}, {"remarks", {"a.gpx: its speeds are from its positions"}}});
    ASSERT_EQ(shown["tracks"].size(), 2U);
    ExpectHas(shown["tracks"][1],
              {{"number", 2}, {"start", "2021-03-01T07:03:20"}, {"seconds", 100}, {"direction", "NB"}});
    EXPECT_NEAR(shown["tracks"][1]["feet"], 100 * 72.963, 100 * 0.5);

    Files.PutText(
        "/t/gap.csv", "lat,lon,time,mph\n" + [] {
            std::string rows;
            for (const int second : {10, 11, 12, 13, 31, 32, 33, 34})
                rows += "42.5,-83,2021-03-01T12:00:" + std::to_string(second) + "Z,30\n";
            return rows;
        }());
    EXPECT_EQ(Json("track show /t/gap.csv")["tracks"].size(), 1U);
    EXPECT_EQ(Json("track show /t/gap.csv --cut 17")["tracks"].size(), 2U);
    EXPECT_EQ(Json("track convert /t/gap.csv --cut 17 --to /runs"), json({"gap-R001", "gap-R002"}));
    EXPECT_THAT(Json("run show /runs/gap-R002.rd2")["RunTime"], HasSubstr("12:00:31"));
}

TEST_F(TrackCommandsTest, TracksAreReadAsTheUserChoseLast) {
    CsvMapping mapping;
    mapping.Delimiter = '\t';
    mapping.Columns = {CsvColumn::Time, CsvColumn::Other, CsvColumn::Speed};
    UserChoices choices = KeptMapping("Zeit\t=ö;\tv", mapping);
    choices[TrackGapKey] = "90";
    choices[TrackZoneKey] = "West";
    const TrackSources sources = TrackSourcesOf(choices, OtherPrograms);
    EXPECT_EQ(sources.KeptMapping("Zeit\t=ö;\tv"), mapping);
    EXPECT_EQ(sources.KeptMapping("Zeit\tv"), std::nullopt);
    EXPECT_TRUE(sources.Cuts.GapSeconds == 90 && sources.Zone == "West");
    EXPECT_EQ(TrackGapOf({{TrackGapKey, "-1"}}), 300);
}

TEST_F(TrackCommandsTest, SaysWhyAFileGivesNoRun) {
    const auto points = Gpx(0, 3);
    EXPECT_THAT(Told("r.gpx", "<gpx><rte><rtept lat=\"1\" lon=\"2\"/></rte></gpx>"),
                AllOf(HasSubstr("\nThe file has a route and no track:"), HasSubstr("Export the track.\n/t/r.gpx")));
    std::string untimed = points;
    for (std::size_t at = 0; (at = untimed.find("2021", at)) != std::string::npos;) untimed.replace(at, 4, "1970");
    EXPECT_THAT(Told("t.gpx", GpxFile(untimed)), HasSubstr("no times between 1980 and 2099"));
    EXPECT_THAT(Told("n.csv", "lat,lon,time\nnan,inf,2021-03-01\n"),
                HasSubstr("No point of the file can be read, the first of 1 in line 2: The date or the time"));
    EXPECT_THAT(Told("e.nmea", ""), HasSubstr("The file is empty. Choose"));
    EXPECT_THAT(Told("p.gpx", GpxFile(Gpx(0, 1))), HasSubstr("single points only"));
    EXPECT_THAT(Told("z.gpx", GpxFile(points), "--time-zone Nowhere/Town"),
                HasSubstr("The time zone \"Nowhere/Town\" is not known. Choose one like"));
    EXPECT_EQ(Status("track show /t/none.gpx"), 1);
    EXPECT_THAT(Err, HasSubstr("/t/none.gpx"));
    EXPECT_THAT(Told("k.kml", "x"),
                AllOf(HasSubstr("gpsbabel, which is not installed.\nInstall the package gpsbabel, or save the track as "
                                "GPX, NMEA or CSV.\n/t/k.kml")));
    EXPECT_EQ(Status("track convert /t/z.gpx --to /runs --cut -5"), 2);
    EXPECT_THAT(Files.AllFiles(), testing::Not(testing::Contains(StartsWith("/runs/"))));
}

TEST_F(TrackCommandsTest, ReadsOtherFormsThroughTheConverterAndTellsWhatItSays) {
    OtherPrograms.Answers = {
        {"", {"file\trwrwrw\tone\ttrk\tForm one\tone\nfile\trwrwrw\ttwo\ttrk\tForm two\ttwo\n", {}}},
        {"one", {"", {.Status = 1, .Messages = "one: bad magic"}}},
        {"two", {GpxFile(Gpx(0, 100)), {.Messages = "two: odd record 7"}}}};
    Files.PutText("/t/a.trk", "x");
    const auto shown = Json("track show /t/a.trk");
    EXPECT_EQ(shown["kind"], "gpsbabel");
    EXPECT_EQ(shown["remarks"][1], "a.trk: gpsbabel: two: odd record 7");

    OtherPrograms.Answers["two"].first.resize(2000);
    OtherPrograms.Answers["two"].second = {.WasStopped = true};
    const auto part = Json("track show /t/a.trk");
    EXPECT_THAT(part["remarks"][1], StartsWith("a.trk: gpsbabel: it took too long or wrote too much"));
    EXPECT_LT(part["tracks"][0]["seconds"], 40);

    OtherPrograms.Answers["two"] = {"", {.Status = 2}};
    EXPECT_THAT(Told("a.trk", "x"), HasSubstr("No track could be read with the help of gpsbabel.\nForm one: one: bad "
                                              "magic\nForm two: it ended with the status 2\n/t/a.trk"));
}

/// A run of a receiver that stands at both ends and drives on where clocks are set back.
RunRecord DrivenRun() {
    std::vector<int> values;
    for (int i = 0; i < 2400; ++i) {
        const bool stands = i < 90 || i >= 2300 || (i > 1000 && i < 1040);
        values.push_back((stands ? 0 : 30 + i % 97) | (i % 400 == 150 || i == 5 ? 0x8000 : 0));
    }
    RunRecord run = RunOfValues(values);
    run.Header.RunDate = DateOf(2021, 10, 31);
    run.Header.RunTime = TimeOf(2, 30, 17);
    double feet = 0;
    for (int i = 1; i <= run.Header.SampleCount; ++i) {
        feet += PulsesOf(run.SampleValues[i]);
        run.RunSamples[i].Latitude = -33.9 - feet / 364000;
        run.RunSamples[i].Longitude = 151.2;
        run.RunSamples[i].Heading = 180;
    }
    return run;
}

TEST_F(TrackCommandsTest, WhatWasExportedReadsAsTheSameRun) {
    RunRecord run = DrivenRun();
    run.Header.SectionName[2] = "3\xC2\xB2, \"N\" & <S>";
    run.Header.SectionName[3] = run.Header.SectionName[5] = "Main St";
    Files.CreateFolder("/g");
    PutRunFile(Files, run, "/g/", "Drive");
    for (const std::string form : {"gpx", "csv"}) {
        ASSERT_EQ(Status("run export /g/Drive.rd2 --time-zone Summer --output /t/Drive." + form), 0) << Err;
        EXPECT_EQ(Err, "");
        const auto names = Json("track convert --to /runs --time-zone Summer --cut 60 /t/Drive." + form);
        ASSERT_EQ(names.size(), 1U) << form;
        EXPECT_EQ(Err, "");
        const RunReading again = ReadRun(Files, "/runs/", names[0], RunPart::Whole);
        EXPECT_EQ(IsoDateTime({again.Run.Header.RunDate.Days + again.Run.Header.RunTime.Days}), "2021-10-31T02:30:17");
        ASSERT_EQ(again.Run.Header.SampleCount, run.Header.SampleCount);
        for (int node = 0; node < 10; ++node)
            EXPECT_EQ(Trim(again.Run.Header.SectionName[node]), run.Header.SectionName[node]) << form << node;
        for (int i = 1; i <= run.Header.SampleCount; ++i) {
            EXPECT_EQ(HasNode(again.Run.SampleValues[i]), HasNode(run.SampleValues[i])) << form << i;
            EXPECT_NEAR(PulsesOf(again.Run.SampleValues[i]), PulsesOf(run.SampleValues[i]), 1) << form << i;
            EXPECT_NEAR(again.Run.RunSamples[i].Latitude, run.RunSamples[i].Latitude, 1e-8) << form << i;
        }
    }
}

TEST_F(TrackCommandsTest, ExportsOfStudiesAndOfRunsWithoutPositions) {
    PutRun("Counter", {10, 20, 30});
    EXPECT_EQ(Status("run export /g/Counter.rd2 --output /t/c.gpx"), 1);
    EXPECT_THAT(Err, HasSubstr("Run Counter has no positions: it is of a counter"));
    EXPECT_EQ(Status("run export /g/Counter.rd2 --output -"), 0);
    EXPECT_THAT(Out, HasSubstr("\r\nCounter,3,2008-03-11T07:05:02,2008-03-11T07:05:02Z,,,20.455,,60,,\r\n"));
    EXPECT_EQ(Status("run export /g/Counter.rd2 --output /t/c.kml"), 2);
    RunRecord run = DrivenRun();
    for (int i = 3; i <= 7; ++i) run.RunSamples[i] = {};
    PutRunFile(Files, run, "/g/", "Drive");
    PutRun("Gone", {1});
    ASSERT_EQ(Status("study new /g AM Drive Gone"), 0) << Err;
    Files.Delete("/g/Gone.rd2");
    EXPECT_EQ(Status("study export /g/AM.ld2 --output /t/am.gpx --time-zone Summer"), 1);
    EXPECT_THAT(Err, AllOf(HasSubstr("Gone"), HasSubstr("Drive: 5 of its 2400 seconds have no position and are left "
                                                        "out, among them 1 node; CSV has all of them\n")));
    EXPECT_EQ(Out, "runs: 1\nseconds: 2395\n");
    EXPECT_EQ(Status("study export /g/AM.ld2 --samples --output -"), 1);
    EXPECT_EQ(std::ranges::count(Out, '\n'), 2401);
}

}  // namespace
}  // namespace vantor
