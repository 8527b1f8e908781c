#include "tracks/RunExport.h"

#include <nlohmann/json.hpp>

#include "Tracks.h"
#include "fakes/PutFiles.h"
#include "tracks/GpsBabel.h"

namespace vantor {
namespace {

/// Three seconds: at rest, a node at 10 ft/s, a key at 20 ft/s. The positions are those of a receiver.
RunRecord ThreeSeconds() {
    RunRecord run = RunOfValues({0, 10 | 0x8000, 20 + 256 * 2});
    run.Header.RunName = "A & B";
    run.Header.RunDate = DateOf(2021, 3, 28);
    run.Header.RunTime = TimeOf(1, 59, 59);
    run.Header.SectionName[1] = "1st <\"N\">\x01\xff";
    for (int i = 1; i <= 3; ++i) {
        run.RunSamples[i].Latitude = 42.5 + i / 1000.0;
        run.RunSamples[i].Longitude = -83.25;
        run.RunSamples[i].Heading = i == 2 ? 90.5F : -1;
    }
    return run;
}

struct RunExportTest : testing::Test {
    FixedClock Clock;
    AppSettings Settings = MphSettings();
    RunRecord Of = ThreeSeconds();

    std::string As(ExportForm form, const char* zone) const {
        const auto bytes = ExportBytes(form, std::vector{ExportOf(Of, Settings)}, TrackTimes(Clock, zone), Settings);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
};

TEST_F(RunExportTest, GpxHasNodesSpeedsAndTimesThatGoOnWhereClocksAreChanged) {
    EXPECT_EQ(As(ExportForm::Gpx, "Summer"),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<gpx version="1.1" creator="Vantor" xmlns="http://www.topografix.com/GPX/1/1"
     xmlns:tpx="http://www.garmin.com/xmlschemas/TrackPointExtension/v2" xmlns:v="urn:vantor:node">
  <wpt lat="42.50200000" lon="-83.25000000"><time>2021-03-28T01:00:00Z</time><name>1st &lt;&quot;N&quot;&gt; )"
              "\xEF\xBF\xBD"
              R"(</name><desc>A &amp; B</desc></wpt>
  <trk><name>A &amp; B</name>
    <trkseg>
      <trkpt lat="42.50100000" lon="-83.25000000"><time>2021-03-28T00:59:59Z</time><extensions><tpx:TrackPointExtension><tpx:speed>0.000</tpx:speed></tpx:TrackPointExtension></extensions></trkpt>
      <trkpt lat="42.50200000" lon="-83.25000000"><time>2021-03-28T01:00:00Z</time><extensions><tpx:TrackPointExtension><tpx:speed>3.048</tpx:speed><tpx:course>90.5</tpx:course></tpx:TrackPointExtension><v:node>1st &lt;&quot;N&quot;&gt; )"
              "\xEF\xBF\xBD"
              R"(</v:node></extensions></trkpt>
      <trkpt lat="42.50300000" lon="-83.25000000"><time>2021-03-28T01:00:01Z</time><extensions><tpx:TrackPointExtension><tpx:speed>6.096</tpx:speed></tpx:TrackPointExtension></extensions></trkpt>
    </trkseg>
  </trk>
</gpx>
)");
}

TEST_F(RunExportTest, GeoJsonHasALineAndItsNodes) {
    Of.Header.SectionName[1] = "";
    const auto all = nlohmann::json::parse(As(ExportForm::GeoJson, "West"))["features"];
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0]["geometry"].dump(),
              R"({"coordinates":[[-83.25,42.501],[-83.25,42.502],[-83.25,42.503]],"type":"LineString"})");
    EXPECT_EQ(all[0]["properties"].dump(),
              R"({"distanceFt":[0,10,30],"run":"A & B","speedMph":[0.0,6.818,13.636],)"
              R"("times":["2021-03-28T06:59:59Z","2021-03-28T07:00:00Z","2021-03-28T07:00:01Z"]})");
    EXPECT_EQ(all[1].dump(), R"({"geometry":{"coordinates":[-83.25,42.502],"type":"Point"},"properties":)"
                             R"({"node":"Node 1","run":"A & B","time":"2021-03-28T07:00:00Z"},"type":"Feature"})");
}

TEST_F(RunExportTest, GeoJsonDividesALineAtTheDateLine) {
    const auto line = [&](double first, double second, double third) {
        const double longitudes[] = {first, second, third};
        for (int i = 1; i <= 3; ++i) Of.RunSamples[i].Longitude = longitudes[i - 1];
        for (int i = 1; i <= 3; ++i) Of.RunSamples[i].Latitude = i;
        const auto geometry = nlohmann::json::parse(As(ExportForm::GeoJson, "West"))["features"][0]["geometry"];
        return geometry["type"].get<std::string>() + geometry["coordinates"].dump();
    };
    EXPECT_EQ(line(179, 179.75, -179.75),
              "MultiLineString[[[179.0,1.0],[179.75,2.0],[180.0,2.5]],[[-180.0,2.5],[-179.75,3.0]]]");
    EXPECT_EQ(line(-179.25, 179.75, -179.5),
              "MultiLineString[[[-179.25,1.0],[-180.0,1.75]],[[180.0,1.75],[179.75,2.0],"
              "[180.0,2.3333333333333335]],[[-180.0,2.3333333333333335],[-179.5,3.0]]]");
    EXPECT_EQ(line(179, 180, -179), "MultiLineString[[[179.0,1.0],[180.0,2.0]],[[-180.0,2.0],[-179.0,3.0]]]");
    EXPECT_EQ(line(-2, 0.5, 90), "LineString[[-2.0,1.0],[0.5,2.0],[90.0,3.0]]");
}

TEST_F(RunExportTest, CsvHasEverySecondInTheUnitsOfTheSettings) {
    Of.RunSamples[1] = {};
    Of.Header.SectionName[1] = "1st, \"N\"";
    const std::string key = EventCodeLabel(2);
    EXPECT_EQ(As(ExportForm::Csv, "UTC"),
              "\xEF\xBB\xBFRun,Second,Local Time,UTC,Latitude,Longitude,Speed (mph),Course,Distance (ft),Node,Key\r\n"
              "A & B,1,2021-03-28T01:59:59,2021-03-28T01:59:59Z,,,0.000,,0,,\r\n"
              "A & B,2,2021-03-28T02:00:00,2021-03-28T02:00:00Z,42.50200000,-83.25000000,6.818,90.5,10,\"1st, "
              "\"\"N\"\"\",\r\n"
              "A & B,3,2021-03-28T02:00:01,2021-03-28T02:00:01Z,42.50300000,-83.25000000,13.636,,30,," +
                  key + "\r\n");
    Settings.MetricUnits = -1;
    EXPECT_THAT(As(ExportForm::Csv, "UTC"), testing::HasSubstr("02:00:01Z,42.50300000,-83.25000000,21.941,,9,,"));
}

TEST_F(RunExportTest, SecondsWithoutAPositionAreToldAndARunWithoutAnyIsRefused) {
    EXPECT_EQ(LeftOutText(ExportOf(Of, Settings)), "");
    Of.RunSamples[2] = {};
    EXPECT_EQ(LeftOutText(ExportOf(Of, Settings)),
              "A & B: 1 of its 3 seconds have no position and are left out, among them 1 node; CSV has all of them");
    EXPECT_THAT(As(ExportForm::Gpx, "UTC"), testing::Not(testing::HasSubstr("node>")));
    const auto refusal = [&] {
        try {
            return As(ExportForm::GeoJson, "UTC");
        } catch (const RunTimeError& error) {
            return error.Place();
        }
    };
    Of.RunSamples[3] = {};
    EXPECT_THAT(refusal(),
                testing::StartsWith("Run A & B has a position in one of its seconds only.\nGPX and GeoJSON"));
    Of.RunSamples[1] = {};
    EXPECT_EQ(refusal(),
              "Run A & B has no positions: it is of a counter or of an OBD log.\n"
              "GPX and GeoJSON need positions; write its samples as CSV.");
    EXPECT_EQ(std::ranges::count(As(ExportForm::Csv, "UTC"), '\n'), 4);
}

TEST(GpsBabelTest, FormsAreThoseThatReadTracksFromFiles) {
    const auto forms = BabelFormsOf(
        "serial\trwrwrw\tgarmin\t\tGarmin serial/USB protocol\tgarmin\n"
        "file\t--rw--\tgtrnctr\tTCX/crs\tTraining (.tcx/.crs) \tgtrnctr\n"
        "file\trw----\tcup\tcup\tWaypoints\tcup\nfile\trwrwrw\tgpx\tgpx\tGPX XML\tgpx\n"
        "file\tr-r---\tv900\t\tV900\tv900\nfile\nfile\t\t\t\t\n\n");
    EXPECT_EQ(forms, (std::vector<BabelForm>{{"gtrnctr", {".tcx", ".crs"}, "Training (.tcx/.crs)"},
                                             {"v900", {".v900"}, "V900"}}));
    EXPECT_EQ(FormsOf(forms, "/a.b/Drive.CRS"), std::vector{forms[0]});
    EXPECT_EQ(FormsOf(forms, "/x.crs/drive").size(), 0U);
    EXPECT_EQ(SaidBy({.Messages = "a\x1b"}) + "|" + SaidBy({.Status = 3}) + "|" + SaidBy({}),
              "a\\x1b|it ended with the status 3|");
    EXPECT_THAT(SaidBy({.WasStopped = true, .Messages = "a\nb"}), testing::EndsWith("stopped\na\nb"));
}

}  // namespace
}  // namespace vantor
