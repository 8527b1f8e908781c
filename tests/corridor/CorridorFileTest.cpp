#include "corridor/CorridorFile.h"

#include <gmock/gmock.h>

#include "core/Text.h"
#include "corridor/CorridorJson.h"
#include "corridor/CorridorNodes.h"
#include "corridor/CorridorPeriods.h"
#include "corridor/CorridorRules.h"
#include "corridor/NodeOrder.h"
#include "fakes/MemoryFileSystem.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::string Path = "/groups/Main St.corridor.geojson";

Corridor Decoded(const std::string& text) { return DecodeCorridor(BytesOf(text), Path); }
std::string Encoded(const Corridor& corridor) {
    const std::vector<std::byte> bytes = EncodeCorridor(corridor);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}
std::string ProblemIn(const std::string& text) {
    try {
        Decoded(text);
    } catch (const RunTimeError& error) {
        return error.Place();
    }
    return "none";
}
std::string Nodes(const std::string& features, const std::string& settings = "") {
    return R"({"type":"FeatureCollection","features":[)" + features + R"(],"vantor":{)" + settings + "}}";
}
std::string Node(const std::string& facts, const std::string& place = "-83.05,42.33") {
    return R"({"type":"Feature","geometry":)" +
           (place.empty() ? "null" : R"({"type":"Point","coordinates":[)" + place + "]}") + R"(,"properties":{)" +
           facts + "}}";
}

const std::string Whole = Nodes(
    Node(R"("name":"Oak St","control":"stop","distanceFt":0,"upstreamFt":500,"downstreamFt":300,"speedLimitMph":35,
            "osm":{"ref":7},"timings":[{"direction":"back","condition":"after","period":"AM","cycleSeconds":90,
            "greenStartSeconds":12.5,"greenSeconds":40,"note":"x"}])") +
        "," + Node(R"("name":"Elm St","distanceFt":1280.5,"height":null)", "") + R"(,
    {"type":"Feature","id":9,"geometry":{"type":"LineString","coordinates":[[-83.05,42.33],[-83.05,42.34]]},
     "properties":{"role":"alignment"}},
    {"type":"Feature","geometry":{"type":"Polygon","coordinates":[]},"properties":{"name":"Park"}})",
    R"("version":1,"directions":{"forward":{"name":"EB","idealSpeedMph":35,"tint":"red"},"back":{"name":"WB"}},
    "periods":[{"name":"AM","from":"07:00","to":"09:00","days":"Mo-Fr"},{"name":"Night","from":"22:00","to":"24:00"}],
    "matching":{"toleranceFt":80,"leadFt":500,"later":[1,2]},"bandsMayOverlap":true,"statistics":{"confidence":90},
    "runs":[{"group":"Main","name":"Main-EB-001","movement":"00000000000000ff","direction":"back","condition":"after",
    "period":"AM","setAside":"rain","ownBands":[{"node":2,"upstreamFt":700,"downstreamFt":200}],
    "setNodes":[{"node":1,"sample":31}],"source":{"file":"day.gpx","hash":"ffffffffffffffff",
    "from":"2026-11-22T08:00:00","to":"2026-11-22T08:05:01"},"driver":"K"}],"signed":{"by":"me"})");

TEST(CorridorFile, SaysAllOfACorridorAndCarriesThroughWhatItDoesNotKnow) {
    Corridor corridor = Decoded(Whole);
    EXPECT_EQ(corridor.Nodes[0].At, (Position{42.33, -83.05}));
    EXPECT_EQ(corridor.Nodes[0].Control, NodeControl::Stop);
    EXPECT_EQ(corridor.Nodes[0].Around, (Band{500, 300}));
    EXPECT_EQ(corridor.Nodes[0].SpeedLimitMph, 35);
    EXPECT_THAT(corridor.Nodes[0].Timings, ElementsAre(SignalTiming{Way::Back, false, "AM", 90, 12.5, 40}));
    EXPECT_EQ(corridor.Nodes[1].At, std::nullopt);
    EXPECT_EQ(corridor.Nodes[1].DistanceFt, 1280.5);
    EXPECT_THAT(corridor.Alignment, SizeIs(2));
    EXPECT_EQ(corridor.Of(Way::Forward), (CorridorDirection{"EB", 35}));
    EXPECT_THAT(corridor.Periods, ElementsAre(CorridorPeriod{"AM", 420, 540}, CorridorPeriod{"Night", 1320, 0}));
    EXPECT_EQ(corridor.Matching, (MatchOptions{80, 500}));
    EXPECT_TRUE(corridor.BandsMayOverlap);
    EXPECT_EQ(corridor.Options.Confidence, 90);
    CorridorRun run{"Main", "Main-EB-001", 255, Way::Back, "AM", false, "rain", {{1, {700, 200}}}, {{0, 31}}, {}, {}};
    run.Source = TrackSource{"day.gpx",
                             ~std::uint64_t{0},
                             {DateOf(2026, 11, 22).Days + TimeOf(8, 0).Days},
                             {DateOf(2026, 11, 22).Days + TimeOf(8, 5, 1).Days}};
    run.OtherFacts = corridor.Runs[0].OtherFacts;
    EXPECT_THAT(corridor.Runs, ElementsAre(run));

    const std::string written = Encoded(corridor);
    EXPECT_EQ(Decoded(written), corridor);
    EXPECT_EQ(Encoded(Decoded(written)), written);
    // What is changed wins; what is not known stays.
    corridor.Of(Way::Forward).Name = "Out";
    corridor.Nodes[0].SpeedLimitMph.reset();
    corridor.BandsMayOverlap = false;
    std::swap(corridor.Periods[0], corridor.Periods[1]);
    const std::string changed = Encoded(corridor);
    for (const char* kept : {R"("ref": 7)", R"("note": "x")", R"("height": null)", R"("id": 9)", "Polygon", R"("tint")",
                             R"("days": "Mo-Fr")", R"("later")", R"("driver": "K")", R"("by": "me")"})
        EXPECT_THAT(changed, HasSubstr(kept));
    EXPECT_EQ(Decoded(changed).Nodes[0].SpeedLimitMph, std::nullopt);
    EXPECT_FALSE(Decoded(changed).BandsMayOverlap);
    EXPECT_EQ(Decoded(Nodes("")), Corridor()) << "what is missing is as usual";
    // The example of the page.
    MemoryFileSystem files;
    files.PutCopyOf(VANTOR_TEST_DATA "../../docs/formats.md", "/page");
    const std::vector<std::byte> bytes = ReadWholeFile(files, "/page");
    const std::string page(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t example = page.find(R"(    {"type":"FeatureCollection",)");
    corridor = Decoded(page.substr(example, page.find("\n\n", example) - example));
    EXPECT_EQ(corridor.Runs[0].Movement, 0x93f1c0d2a4b5e687);
    EXPECT_EQ(corridor.Nodes[1].Control, NodeControl::Stop);
}

TEST(CorridorFile, SaysWhatIsWrongWithOneAndWhere) {
    const std::string node = Node(R"("name":"Oak St")");
    const std::string far = Node(R"("name":"Elm St")", "-83.05,42.34");
    const auto runs = [&](const std::string& facts) { return Nodes(node, R"("runs":[{"group":"G",)" + facts + "}]"); };
    const auto bad = [](const std::string& facts) { return Nodes(Node(facts)); };
    std::string many;
    for (int i = 0; i <= 188; ++i) many += (i == 0 ? "" : ",") + Node(R"("distanceFt":)" + std::to_string(i));
    const std::string deep(100000, '[');
    const std::string timing = R"("name":"A","timings":[{"cycleSeconds":90,"greenSeconds":)";
    const std::vector<std::pair<std::string, const char*>> cases = {
        {"{\n\n\"type\" 1", "The file is no JSON: line 3"},
        {"[1]", "FeatureCollection"},
        {deep, "64 deep"},
        {bad(R"("distanceFt":NaN)"), "The file is no JSON"},
        {bad(R"("distanceFt":1e999)"), "number that is too large"},
        {bad(R"("distanceFt":1e12)"), "The node 1 (\"Node 1\") has a distance"},
        {bad(R"("distanceFt":"far")"), "\"features 1.properties.distanceFt\" is no number"},
        {bad(R"("upstreamFt":1e10)"), "\"features 1.properties.upstreamFt\" is no whole number"},
        {bad(R"("upstreamFt":-1)"), "0 to 52,800 ft"},
        {bad(R"("control":"gate")"), "must be one of \"signal\", \"stop\""},
        {bad(R"("speedLimitMph":900)"), "between 1 and 200"},
        {bad(timing + "91}]"), "at most as long as the cycle"},
        {bad(timing + "9,\"greenStartSeconds\":90}]"), "within its cycle"},
        {Nodes(Node("", "200,95")), "no place on the earth"},
        {Nodes(Node("", "1")), "[longitude, latitude]"},
        {Nodes(node + "," + node), "The node 2 (\"Oak St\") is not farther along"},
        {Nodes(node + "," + Node(R"("name":"B")", "")), "without \"distanceFt\""},
        {Nodes(many), "188"},
        {Nodes(node, R"("version":2)"), "a later version"},
        {Nodes(node, R"("directions":{"back":{"name":"nb"}})"), "Both directions"},
        {Nodes(node, R"("periods":[{"name":"AM","from":"25:00","to":"09:00"}])"), "no time of day"},
        {Nodes(node, R"("matching":{"toleranceFt":0})"), "tolerance"},
        {Nodes(node, R"("statistics":{"confidence":"high"})"), "another kind"},
        {Nodes(node, R"("statistics":{"confidence":5})"), "The confidence must lie"},
        {runs(R"("name":"../x")"), "no file can have"},
        {runs(R"("name":"R","movement":"zz")"), "16 hexadecimal digits"},
        {runs(R"("name":"R","ownBands":[{"node":2}])"), "the corridor has 1 nodes"},
        {runs(R"("name":"R","setNodes":[{"node":1,"sample":4},{"node":1,"sample":5}])"), "twice"},
        {runs(R"("name":"R","source":{"file":"t","from":"2026-02-30T00:00:00"})"), "does not exist"},
        {runs(R"("name":"R"},{"group":"g","name":"r")"), "stands there twice"},
    };
    for (const auto& [text, reason] : cases) {
        EXPECT_THAT(ProblemIn(text), testing::AllOf(HasSubstr(reason), HasSubstr(Path), HasSubstr("backup")));
    }
    EXPECT_NEAR(Decoded(Nodes(node + "," + far)).Nodes[1].DistanceFt, 3648.1, 0.2) << "a hundredth of a degree north";
}

TEST(CorridorFile, KeepsWhatAnotherProgramWroteAndIsListedByName) {
    MemoryFileSystem files;
    files.CreateFolder("/groups");
    Corridor corridor = Decoded(Whole);
    const FileStamp first = SaveCorridor(files, Path, corridor, Expected::Nothing()).Stamp;
    EXPECT_ERROR(FileAlreadyExists, SaveCorridor(files, Path, corridor, Expected::Nothing()));
    const StoredCorridor stored = LoadCorridor(files, Path);
    EXPECT_EQ(stored.Stamp, first);
    EXPECT_EQ(stored.Corridor.Name, "Main St");
    files.PutText(Path, "theirs");
    corridor.BandsMayOverlap = false;
    EXPECT_EQ(SaveCorridor(files, Path, corridor, Expected::Unchanged(first)).Backup, Path + ".bak");
    EXPECT_EQ(files.Bytes(Path + ".bak"), BytesOf("theirs"));
    EXPECT_THAT(ListCorridors(files, "/groups"), ElementsAre("Main St"));
    EXPECT_THAT(ListCorridors(files, "/none"), IsEmpty());
    corridor.Nodes[1].DistanceFt = 0;
    EXPECT_ERROR(TypeMismatch, SaveCorridor(files, Path, corridor, AsItStands(files, Path)));
    EXPECT_THAT(CorridorNameProblem("a/b"), HasSubstr("cannot be used"));
}

TEST(CorridorNodes, ComeFromTablesAndPointsOfAnyProgram) {
    const auto found = [](const std::string& text) {
        MemoryFileSystem files;
        files.PutText("/nodes", text);
        return ReadNodes(files, "/nodes");
    };
    FoundNodes nodes = found(
        "\xEF\xBB\xBFLatitude;Longitude;Node Name;Control;Speed Limit\r\n"
        "42,33;-83,05;\"Oak; St\";Stop;35\r\n\r\n42,35;-83,05;Fir;;\r\n42,34;-83,05;;gate;\r\n");
    EXPECT_EQ(nodes.Nodes[0].Name, "Oak; St");
    EXPECT_EQ(nodes.Nodes[0].At, (Position{42.33, -83.05}));
    EXPECT_EQ(nodes.Nodes[0].Control, NodeControl::Stop);
    EXPECT_EQ(nodes.Nodes[0].SpeedLimitMph, 35);
    EXPECT_THAT(nodes.Remarks, ElementsAre(HasSubstr("\"gate\" of node 3"), HasSubstr("Oak; St, Node 3, Fir")));
    EXPECT_EQ(found("Oak,42.33,-83.05").Nodes[0].At, (Position{42.33, -83.05}));
    EXPECT_EQ(found("Oak\t900\nElm\t2180\n").Nodes[1].DistanceFt, 2180);
    EXPECT_ERROR(TypeMismatch, found("name,lat,lon\nOak,142.33,-83.05"));
    EXPECT_ERROR(TypeMismatch, found("name,color\nOak,red"));
    EXPECT_ERROR(TypeMismatch, found(""));

    // The line was drawn against the order of the points.
    nodes = found(Nodes(Node(R"("Name":"Oak","osm":1)") + "," + Node(R"("title":"Elm")", "-83.05,42.34,180") +
                        R"(,{"type":"Feature","properties":null,"geometry":{"type":"LineString","coordinates":)" +
                        "[[-83.05,42.34],[-83.04,42.335],[-83.05,42.33]]}}"));
    Corridor corridor;
    PutNodes(corridor, nodes);
    EXPECT_EQ(corridor.Nodes[1].Name, "Elm");
    const Position bend{42.335, -83.04};
    EXPECT_NEAR(corridor.Nodes[1].DistanceFt, FeetBetween({42.33, -83.05}, bend) + FeetBetween(bend, {42.34, -83.05}),
                1);
    EXPECT_THAT(ProblemOf(corridor), IsEmpty());
    EXPECT_ERROR(TypeMismatch, found(R"({"type":"FeatureCollection","features":[1]})"));
}

TEST(CorridorNodes, ComeFromARunWithItsWayWhereItHasOne) {
    RunRecord run = RunOfValues(std::vector<int>(60, 50));
    for (const int second : {10, 30, 50}) run.SampleValues[second] = static_cast<std::int16_t>(0x8000 | 50);
    run.Header.SectionName[1] = "Oak";
    run.Header.SectionName[3] = "Fir";
    const FoundNodes marks = NodesFromRun(run, Way::Back);
    EXPECT_EQ(marks.Nodes[0].Name, "Fir");
    EXPECT_EQ(marks.Nodes[1].Name, "Node 2");
    EXPECT_NEAR(marks.Nodes[2].DistanceFt, 2000, 0.01);
    EXPECT_THAT(marks.Alignment, IsEmpty());
    // North for 30 s, then east; a degree of latitude is 364,813 ft.
    for (int i = 1; i <= 60; ++i) {
        run.RunSamples[i].Latitude = 42 + std::min(i, 30) * 50 / 364813.0;
        run.RunSamples[i].Longitude = -83 + std::max(i - 30, 0) * 50 / 271107.0;
    }
    EXPECT_THAT(NodesFromRun(run, Way::Forward).Alignment, SizeIs(3)) << "its corner and its ends";
    EXPECT_THAT(NodesFromRun(RunOfValues({1, 2}), Way::Forward).Remarks, SizeIs(1));
}

TEST(CorridorPeriods, AreSaidAsTheyAreRead) {
    EXPECT_EQ(PeriodOfText(" 7:00 - 09:30 AM peak "), (CorridorPeriod{"AM peak", 420, 570}));
    EXPECT_EQ(TextOf({"AM", 420, 540}), "07:00-09:00 AM");
    for (const char* text : {"", "AM", "07:00-09:00", "07:00-09:60 AM", "24:30-09:00 AM", "-09:00 AM", "07:0-9:00 AM"})
        EXPECT_EQ(PeriodOfText(text), std::nullopt) << text;
}

}  // namespace
}  // namespace vantor
