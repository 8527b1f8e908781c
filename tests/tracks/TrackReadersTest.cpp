#include "Tracks.h"

namespace vantor {
namespace {

using testing::ElementsAre;

using GpxReaderTest = TrackScene;
using NmeaReaderTest = TrackScene;
using CsvReaderTest = TrackScene;

const std::string GpxStart =
    "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n";

std::string PlainPoint(int second, const std::string& latitude = "42.5") {
    const std::string two = (second < 10 ? "0" : "") + std::to_string(second);
    return "<trkpt lat=\"" + latitude + "\" lon=\"-83.25\">\n <time>2021-03-14T15:00:" + two +
           "Z</time><extensions><a:x><a:speed>10</a:speed></a:x></extensions>\n</trkpt>\n";
}

TEST_F(GpxReaderTest, TracksSegmentsAndWhatPointsTell) {
    const TrackSummary read =
        Read("Trip.gpx",
             GpxStart +
                 "<wpt lat='1' lon='2'><name>Start</name></wpt><rte><name>No</name><rtept lat='3' lon='4'/></rte>"
                 "<trk><name>A &amp; B</name><trkseg><trkpt lat=\"-42.5\" lon=\"179.75\"><time>2021-03-14T15:00:00Z"
                 "</time><speed>10</speed><course>360</course><fix>dgps</fix><sat>7</sat><hdop>1.5</hdop></trkpt>"
                 "<trkpt lon='-83.25' lat='42.5'><time> 2021-03-14T16:30:01.5+01:30 </time><extensions>"
                 "<gpxtpx:speed>5</gpxtpx:speed><x y='1'><gpxtpx:course>90</gpxtpx:course></x></extensions></trkpt>"
                 "</trkseg><trkseg><trkpt lat='0' lon='0'/></trkseg></trk><trk/></gpx>");
    EXPECT_THAT(Points,
                ElementsAre("0:1615734000 -42.500000 179.750000 v=22.3694 c=0 q=2 s=7 h=1.5 A & B",
                            "0:1615734002 42.500000 -83.250000 v=11.1847 c=90 A & B", "1: 0.000000 0.000000 A & B"));
    EXPECT_EQ(read.WithoutTime, 1U);
    EXPECT_EQ(read.RoutePoints, 1U);
    EXPECT_THAT(read.Names, ElementsAre("A & B", ""));
    ASSERT_EQ(read.Waypoints.size(), 1U);
    EXPECT_EQ(read.Waypoints[0].Name + (read.Waypoints[0].Position == TrackPosition{1, 2} ? "" : "?"), "Start");
    EXPECT_TRUE(LooksLikeGpx(GpxStart, "x") && !LooksLikeGpx("<kml><gpxdata/></kml>", "x.gpx"));
}

TEST_F(GpxReaderTest, PlainPointsAreReadAsTheParserReadsThem) {
    const auto points = [&](const std::string& between, std::uint64_t brokenLine) {
        std::string text = GpxStart + "<trk><trkseg>\n";
        for (int i = 0; i < 60; ++i) text += between + PlainPoint(i, i == 7 ? "91" : "42.5");
        const TrackSummary read = Read("Trip.gpx", text + "</trkseg></trk></gpx>");
        EXPECT_EQ(read.FirstBrokenLine, brokenLine);
        return Points;
    };
    const auto plain = points("", 4 + 7 * 3 + 2);
    EXPECT_EQ(plain.size(), 59U);
    EXPECT_EQ(plain.back(), "0:1615734059 42.500000 -83.250000 v=22.3694");
    EXPECT_EQ(points("<!-- " + PlainPoint(59) + PlainPoint(59) + "-->", 4 + 7 * 9 + 8), plain);
}

TEST_F(GpxReaderTest, PointsAnywhereInThePieces) {
    std::string text = GpxStart + "<trk><trkseg>";
    for (int i = 0; i < 6000; ++i) text += PlainPoint(i % 60) + "</trkseg><trkseg>" + std::string(i % 7, ' ');
    EXPECT_EQ(Outcome("Trip.gpx", text + "</trkseg></trk></gpx>"), "6000 points");
}

TEST_F(GpxReaderTest, BrokenFiles) {
    const std::string begin = GpxStart + "<trk><trkseg>";
    const std::string end = "</trkseg></trk></gpx>";
    const std::string place = "\n/f/Trip.gpx, line ";
    std::string bomb =
        "<!DOCTYPE gpx [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;\">]>\n<gpx>&b;</gpx>";
    std::string deep = GpxStart;
    for (int i = 0; i < 100; ++i) deep += "<a>";
    const std::string entities =
        "The file declares entities of its own, which tracks have no need of and which can make a small file endless. "
        "Export it again without them, or choose another file.";
    const std::string damaged = ". What stands before was read; export the track again to have the rest.";
    for (const auto& [text, outcome] : std::vector<std::pair<std::string, std::string>>{
             {begin + PlainPoint(1) + PlainPoint(1) + PlainPoint(0) + PlainPoint(2) + end, "2 points, 1 late, 1 twice"},
             {begin + "<trkpt lat='NaN' lon='1'/><trkpt lat='1' lon='inf'/><trkpt lon='1'/>" + end,
              "0 points, 3 broken from line 3: The position of the point is missing or impossible."},
             {begin +
                  "<trkpt lat='1' lon='1'><time>9999-01-01T00:00:00Z</time></trkpt><trkpt lat='1' lon='1'><time>"
                  "1970-01-01T00:00:00Z</time></trkpt><trkpt lat='1' lon='1'><fix>none</fix></trkpt>" +
                  end,
              "2 points, 2 untimed, 1 void"},
             {begin + PlainPoint(1) + PlainPoint(2).substr(0, 40),
              "1 points, The file is damaged: it ends within an element" + damaged + place + "7"},
             {begin + PlainPoint(1) + "</trk>" + end,
              "1 points, The file is damaged: mismatched tag" + damaged + place + "6"},
             {begin + PlainPoint(1) + "<trkpt lat=\"1\" lat=\"2\">\n</trkpt>",
              "1 points, The file is damaged: duplicate attribute" + damaged + place + "6"},
             {"Dear Sir",
              "The file is no GPX file: syntax error. Choose another file, or export the track as GPX." + place + "1"},
             {"", "The file is no GPX file: no element found. Choose another file, or export the track as GPX." +
                      place + "1"},
             {"<kml/>",
              "The file is no GPX file: its first element is \"kml\". Choose another file, or export the track as "
              "GPX." +
                  place + "1"},
             {bomb, entities + place + "1"},
             {deep,
              "The file nests its elements more than 64 deep, as no track does. Export it again, or choose another "
              "file." +
                  place + "3"},
             {GpxStart + "<a b=\"" + std::string(3000000, 'x'),
              "A piece of the file's markup is longer than 1 MB, as in no track. Export it again, or choose another "
              "file." +
                  place + "3"}})
        EXPECT_EQ(Outcome("Trip.gpx", text), outcome) << text.substr(0, 200);
}

TEST_F(NmeaReaderTest, SentencesOfATimeMakeAPoint) {
    Read("Trip.nmea",
         "log 17: $GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n"
         "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n"
         "$GNRMC,123520.50,A,4807.038,S,01131.000,W,,,230394,,\r\n$GNVTG,90.0,T,,M,10,N,18.5,K\r\n$GPGSV,1,1,00*79\n");
    EXPECT_THAT(Points, ElementsAre("0:764426119 48.117300 11.516667 v=25.7775 c=84.4 q=1 s=8 h=0.9",
                                    "0:764426120.5 -48.117300 -11.516667 v=11.5078 c=90"));
    EXPECT_TRUE(LooksLikeNmea("@made\r\n$GPGGA,1", "") && !LooksLikeNmea("$s,1\n$G,05/14/03,12:00:00", ""));
}

std::string Gga(const std::string& clock) { return "$GPGGA," + clock + ",0030,N,00030,E,1\r"; }
std::string Rmc(const std::string& clock, const std::string& day) {
    return "$GPRMC," + clock + ",A,0030,N,00030,E,,," + day + "\r";
}

TEST_F(NmeaReaderTest, DaysGoOnAtMidnightAndTwoDigitsAreYears) {
    Read("Trip.nmea", Gga("235957") + Gga("235958") + Rmc("235958", "311225") + Gga("235959") + Gga("000000") +
                          Gga("000001") + Rmc("000001", "010126"));
    EXPECT_THAT(Points, ElementsAre("0: 0.500000 0.500000 q=1", "0:1767225598 0.500000 0.500000 q=1",
                                    "0:1767225599 0.500000 0.500000 q=1", "0:1767225600 0.500000 0.500000 q=1",
                                    "0:1767225601 0.500000 0.500000 q=1"));
    Read("Trip.nmea", Rmc("000000", "311299") + Rmc("000000", "311279"));
    EXPECT_THAT(Points, ElementsAre("0:946598400 0.500000 0.500000", "0:3471206400 0.500000 0.500000"));
}

TEST_F(NmeaReaderTest, BrokenLines) {
    const std::string good = "$GPGGA,120000,0030,N,00030,E,1";
    std::string back;
    for (int i = 10; i < 40; ++i) back += Rmc("1200" + std::to_string(i < 25 ? i + 30 : i - 15), "010126");
    const std::string none =
        "The file is no NMEA log: none of its lines holds a whole sentence RMC, GGA, VTG or ZDA. "
        "Choose another file, or log these sentences.\n/f/Trip.nmea, lines 1 to ";
    for (const auto& [text, outcome] : std::vector<std::pair<std::string, std::string>>{
             {good + "*00\n" + good, "1 points, 1 untimed, 1 broken from line 1: The checksum is wrong."},
             {good + "\n" + good + "*4", "1 points, 1 untimed, 1 broken from line 2: The sentence is cut off."},
             {good.substr(0, 9) + good + "\nx\n\n",
              "1 points, 1 untimed, 1 broken from line 2: The line holds no sentence."},
             {"$GPGGA,120000,9000.1,N,00030,E,1\n$GPGGA,250000,0030,N,00030,E,1\n$GPRMC,120000,A,0030,X,00030,E,,,"
              "010126",
              "0 points, 3 broken from line 1: A time, a position or a date of the sentence is impossible."},
             {"$GPGGA,120000,,,,,0\n$GPRMC,120000,V,,,,,,,010126\n$GPRMC,,V,,,,,,,,,N", "0 points, 2 void"},
             {Rmc("120001", "010126") + Rmc("120000", "010126") + Rmc("120002", "010126"), "2 points, 1 late"},
             {back, "30 points"},  // the clock was set back for good
             {std::string(1000000, 'x') + good + "\n" + good,
              "1 points, 1 untimed, 1 broken from line 1: The line holds no sentence."},
             {"", none + "0"},
             {"$PMTK001,1\nDear Sir", none + "2"}})
        EXPECT_EQ(Outcome("Trip.nmea", text), outcome) << text.substr(0, 200);
}

TEST_F(CsvReaderTest, HeadsAndFormsOfLoggers) {
    const std::string at = "0:1772625600 42.500000 -83.250000";
    for (const auto& [text, told] : std::vector<std::pair<std::string, std::string>>{
             {"time,lat,lon,elevation,bearing,speed,satellites,hdop\n2026-03-04T12:00:00Z,42.5,-83.25,9,90,10,7,1.5",
              at + " v=22.3694 c=90 s=7 h=1.5"},
             {"\xEF\xBB\xBFNo,Latitude,Longitude,Name,Speed,Date,Time\n1,42.5,-83.25,\"a, "
              "\"\"b\",10,2026/03/04,12:00:00\n",
              at + " v=22.3694"},
             {"Zeit\xFC;GPS Latitude;GPS Longitude;UTC Time;GPSSpeed (km/h);Node\r\nx;42,5;-83,25;04.03.2026 "
              "12:00:00;36;3\r\n",
              at + " v=22.3694 n=3"},
             {"# made by an app\nGPS Time\tDevice Time\tLongitude\tLatitude\tGPS Speed (Meters/second)\tSpeed "
              "(OBD)(mph)\t"
              "Mark\nWed Mar 04 13:00:00 GMT+01:00 2026\tx\t-83.25\t42.5\t10\t25\tleft",
              at + " v=25.0000 n=1"},
             {"INDEX|DATE|TIME|LATITUDE N/S|LONGITUDE E/W|SPEED_KNOTS\n1|260304|120000|42.5N|83.25W|10",
              at + " v=11.5078"},
             {"DATE,TIME,LATITUDE,N/S,LONGITUDE,E/W,SPEED(km/h)\n2026/03/04,12:00:00.000,42.5,N,83.25,W,36 \n",
              at + " v=22.3694"},
             {"timestampMs lat lng speed_mps\n1772625600000  42.5 -83.25 10", at + " v=22.3694"},
             {"Date;Time;lat;long;kmh\n4-Mar-26;12:00:00 PM;42.5;-83.25;50", at + " v=31.0686"},
             {"time;Position;speed\n2026-03-04 12:00:00;N42 30.000 W83 15,000;36,0 km/h\n", at + " v=22.3694"},
             {"time,lat,lon,speed\n2026-03-04 12:00:00,42\xC2\xB0"
              "29'60.0\"N,83:15 W,10 m/s\n",
              at + " v=22.3694"},
             {"time;lat;lon;speed\n2026-03-04 12:00:00;42\xB0"
              "30';-83 15;25 mph\n",
              at + " v=25.0000"},
             {"epoch,lat,lon,speed,coordinates\n1772625600,42.5,-83.25,10 kn,x\n", at + " v=11.5078"},
             {"epoch,vehicle speed (mph),engine speed,throttle position\n1772625600,25,2000,12",
              "0:1772625600 v=25.0000"}}) {
        EXPECT_EQ(Outcome("Trip.csv", text), "1 points") << text;
        EXPECT_THAT(Points, ElementsAre(told)) << text;
        EXPECT_TRUE(LooksLikeCsv(text, "")) << text;
    }
    EXPECT_FALSE(LooksLikeCsv("Name,Phone\nAnn,1\n", "Trip.csv"));
}

TEST_F(CsvReaderTest, Utf16) {
    const std::u16string text = u"time,lat,lon,mph,node\n2026-03-04 12:00:00,42.5,-83.25,25,\xC9\xD83D\xDE97\xD83D\n";
    for (const bool isBig : {false, true})
        for (const bool hasMark : {false, true}) {
            std::string bytes;
            for (const char16_t unit : (hasMark ? u"\xFEFF" : u"") + text)
                for (const int shift : {isBig ? 8 : 0, isBig ? 0 : 8}) bytes += static_cast<char>(unit >> shift & 0xFF);
            const TrackSummary read = Read("Trip.csv", bytes);
            EXPECT_THAT(Points, ElementsAre("0:1772625600 42.500000 -83.250000 v=25.0000 n=1"));
            EXPECT_EQ(read.Nodes, (NodeNames{{1, "\u00C9\U0001F697\uFFFD"}}));
            EXPECT_TRUE(LooksLikeCsv(bytes, ""));
        }
}

TEST_F(CsvReaderTest, NodesOfANameHaveOneNumberAndNumbersTheirOwnWhereItIsFree) {
    std::string text = "epoch,mph,node\n";
    int second = 1772625600;
    for (const char* node : {"3", "Main", "1", "Main", "Elm", "2", "3", ""})
        text += std::to_string(second++) + ",9," + node + "\n";
    const TrackSummary read = Read("Trip.csv", text);
    std::string nodes;
    for (const std::string& point : Points) nodes += point.substr(point.find("9.0000") + 6);
    EXPECT_EQ(nodes, " n=3 n=1 n=2 n=1 n=4 n=5 n=3");
    EXPECT_EQ(read.Nodes, (NodeNames{{1, "Main"}, {2, "1"}, {4, "Elm"}, {5, "2"}}));
}

TEST_F(CsvReaderTest, WhatTheDataLeavesOpenIsAsked) {
    const auto preview = [&](const std::string& text) {
        Files.PutText("/f/Trip.csv", text);
        return PreviewCsv(Files, "/f/Trip.csv");
    };
    const std::string head = "date time;lat;lon;speed\n";
    using enum CsvQuestion;
    EXPECT_THAT(preview(head + "03/04/26 12:00:00;1;2;3\n").Questions,
                ElementsAre(CsvQuestion::DayOrder, Zone, SpeedUnit));
    EXPECT_EQ(preview(head + "03/04/26 12:00;1;2;3\n13/04/26 12:00;1;2;3\n").Mapping.DayOrder, DayOrder::DayFirst);
    EXPECT_EQ(preview(head + "03/13/26 12:00;1;2;3\n").Mapping.DayOrder, DayOrder::MonthFirst);
    EXPECT_THAT(preview("Elapsed (s),mph\n0.5,20\n").Questions, ElementsAre(Start));
    EXPECT_THAT(preview("Name,Phone\nAnn,1\n").Questions, ElementsAre(Columns));

    CsvPreview asked = preview(head + "03/04/26 12:00:00;1,5;2;3\n\n");
    EXPECT_EQ(asked.Head + asked.Rows.at(0).at(1), "date time;lat;lon;speed1,5");
    asked.Mapping.DayOrder = DayOrder::DayFirst;
    asked.Mapping.Zone = "West";
    asked.Mapping.SpeedUnit = CsvSpeedUnit::MilesPerHour;
    EXPECT_EQ(CsvMappingOf(CsvMappingText(asked.Mapping)), asked.Mapping);
    EXPECT_EQ(CsvMappingOf("{\"delimiter\":7}"), std::nullopt);
    ReadCsv(Files, Zones, "/f/Trip.csv", asked.Mapping, Sink);
    EXPECT_THAT(Points, ElementsAre("0:1775235600 1.500000 2.000000 v=3.0000"));
}

TEST_F(CsvReaderTest, TimesWithoutADayCountFromTheStart) {
    const auto read = [&](const std::string& text) {
        Files.PutText("/f/Trip.csv", text);
        CsvMapping mapping = PreviewCsv(Files, "/f/Trip.csv").Mapping;
        mapping.Start = 1772582400;  // 4 March 2026
        Points.clear();
        ReadCsv(Files, Zones, "/f/Trip.csv", mapping, Sink);
        return Points;
    };
    EXPECT_THAT(read("Elapsed (ms),mph\n1000,20\n"), ElementsAre("0:1772582401 v=20.0000"));
    EXPECT_THAT(read("Elapsed (s),mph\n7,20\n"), ElementsAre("0:1772582407 v=20.0000"));
    EXPECT_THAT(read("time,mph\n23:59:59,20\n00:00:01,21\n"),
                ElementsAre("0:1772668799 v=20.0000", "0:1772668801 v=21.0000"));
}

TEST_F(CsvReaderTest, BrokenRows) {
    const std::string head = "time,lat,lon,track\n";
    const std::string place = "\n/f/Trip.csv, line ";
    for (const auto& [text, outcome] : std::vector<std::pair<std::string, std::string>>{
             {head + "2026-03-04T12:00:00Z,91,0\n2026-03-04T12:00:01Z,nan,0\n2026-03-04T12:00:02Z,1\n2026-03-04T12:00:"
                     "03Z,1,1",
              "1 points, 3 broken from line 2: The position of the row is impossible or cannot be read."},
             {head + "2026-02-30T12:00:00Z,1,1\nyesterday,1,1\n2026-03-04 12:00:00,1,1\n12:01,1,1\n",
              "1 points, 3 broken from line 2: The date or the time of the row cannot be read."},
             {head + ",,\n;\n", "0 points, 2 broken from line 2: The row has no position, and no time with a speed."},
             {"time,speed\n2026-03-04T12:00:00Z,5 furlongs\n2026-03-04T12:00:01Z,5 mph",
              "1 points, 1 broken from line 2: The speed of the row cannot be read, and it has no position."},
             {"time,position\n2026-03-04T12:00:00Z,42 61 N 83 W\n2026-03-04T12:00:00Z,42.5\n2026-03-04T12:00:00Z,"
              "42.5 30 N 83 W\n2026-03-04T12:00:00Z,\"42.5, -83.25\"\n",
              "1 points, 3 broken from line 2: The position of the row is impossible or cannot be read."},
             {head + "2026-03-04T12:00:00Z,0,0,a\n9999-03-04T12:00:00Z,1,1,a\n", "1 points, 1 untimed, 1 void"},
             {head + "2026-03-04T12:00:05Z,1,1,a\n" + head + "2026-03-04T12:00:00Z,1,1,a\n2026-03-04T11:00:00Z,1,1,b",
              "3 points"},
             {"elapsed (s),mph\n1,20",
              "The times of the file have no day. Say on what day, and when, the log began." + place + "2"},
             {"time,lat,lon\n12:00,1,1",
              "The times of the file have no day. Say on what day, and when, the log began." + place + "2"},
             {"time,lat,lon\n13:00 PM,1,1\n03/04/26 12:00:00,1,1",
              "The date \"03/04/26 12:00:00\" may be two days. Say whether the day or the month comes first." + place +
                  "3"},
             {"Name,Phone\nAnn,1\n",
              "Neither columns of latitude and longitude nor those of time and speed are known. Say "
              "what the columns hold, or choose another file." +
                  place + "1"},
             {"",
              "Neither columns of latitude and longitude nor those of time and speed are known. Say what the columns "
              "hold, or choose another file." +
                  place + "1"}})
        EXPECT_EQ(Outcome("Trip.csv", text), outcome) << text;
}

TEST_F(CsvReaderTest, StopsWhereItIsTold) {
    std::string text = "epoch,mph\n";
    for (int i = 0; i < 100000; ++i) text += std::to_string(1772625600 + i) + ",20\n";
    Files.PutText("/f/Trip.csv", text);
    int asked = 0;
    const Progress twice([&](double) { return ++asked < 2; });
    EXPECT_TRUE(ReadCsv(Files, Zones, "/f/Trip.csv", PreviewCsv(Files, "/f/Trip.csv").Mapping, Sink, twice).IsStopped);
    EXPECT_TRUE(asked == 2 && Points.size() > 1000 && Points.size() < 99000);
}

}  // namespace
}  // namespace vantor
