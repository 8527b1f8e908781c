#include "gpsobd/TrackInbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Tracks.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/StudyGroupFolders.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/PalmDatabase.h"
#include "gpsobd/TrackChoices.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::IsEmpty, testing::SizeIs, testing::StartsWith;

class TrackInboxTest : public testing::Test, protected TestProgram {
protected:
    InboxFile Read(const std::string& name, const std::string& text) {
        Files.PutText("/t/" + name, text);
        const PalmDatabase palm(Files);
        const LogSources sources{Files, Databases, palm,
                                 Time,  false,     TrackSourcesOf(LoadUserChoices(Files), OtherPrograms)};
        return ReadTracks(sources, "/t/" + name, State.Settings);
    }
    InboxTrack Track(const Drive& drive) { return Read("a.gpx", Gpx(drive)).Tracks.at(0); }
};

TEST_F(TrackInboxTest, DirectionIsTheWayDriven) {
    const InboxTrack north = Track({});
    EXPECT_EQ(north.Direction, "NB");
    EXPECT_THAT(north.Run.Header.Notes, StartsWith("Direction NB"));
    EXPECT_THAT(north.Flags, IsEmpty());
    // 61 seconds of 0.00012 degrees of a meridian of 40,008 km.
    EXPECT_NEAR(north.Run.Header.RunLength, 61 * 0.00012 * 40008e3 / 360 / 0.3048, 30);
    EXPECT_EQ(Track({.IsNorth = false}).Direction, "EB");
    RunRecord run = north.Run;
    std::reverse(run.RunSamples.begin(), run.RunSamples.end());
    EXPECT_EQ(DirectionDriven(run), "SB");
    for (RunSample& sample : run.RunSamples) sample.Longitude = sample.Latitude > 42.001 ? -179.99 : 179.99;
    EXPECT_EQ(DirectionDriven(run), "WB") << "over the date line";
}

TEST_F(TrackInboxTest, WhatIsToBeLookedAtIsFlagged) {
    EXPECT_THAT(Track({.Steps = 15}).Flags, ElementsAre(HasSubstr("short: 1")));
    EXPECT_THAT(Track({.JumpAt = 30}).Flags, testing::Contains(StartsWith("speed jumps at 15:00:")));
    const std::string whole = Gpx({.Steps = 100});
    std::string gap = whole;
    const std::size_t from = gap.find("<trkpt lat=\"42.006000"), to = gap.find("<trkpt lat=\"42.008400");
    gap.erase(from, to - from);
    EXPECT_THAT(Read("gap.gpx", gap).Tracks.at(0).Flags, ElementsAre(HasSubstr("gaps: 1")));
    EXPECT_THAT(Read("bad.gpx", "<gpx></gpx>").Remarks, ElementsAre(StartsWith("bad.gpx: The file has no point")));
    EXPECT_THAT(Read("none.gpx", "").Tracks, IsEmpty());
}

TEST_F(TrackInboxTest, ColumnsThatLeaveAQuestionAreFlaggedUntilItIsAnswered) {
    const std::string head = "time;lat;lon;speed";
    const InboxFile open = Read("a.csv", Csv(head, {}));
    EXPECT_TRUE(open.HasColumns);
    EXPECT_THAT(open.Tracks.at(0).Flags, testing::Contains(StartsWith("What unit are the speeds in?")));
    CsvMapping mapping = PreviewCsv(Files, "/t/a.csv").Mapping;
    mapping.SpeedUnit = CsvSpeedUnit::KilometresPerHour;
    StoreUserChoices(Files, KeptMapping(head, mapping));
    EXPECT_THAT(Read("b.csv", Csv(head, {})).Tracks.at(0).Flags, IsEmpty()) << "50 km/h, as 30 mph on the way";
    const InboxFile unknown = Read("c.csv", Csv("Zeit;Breite;Weite;Tempo", {}));
    EXPECT_THAT(unknown.Tracks, IsEmpty());
    EXPECT_THAT(unknown.Remarks, ElementsAre(testing::AllOf(StartsWith("c.csv: Neither columns"),
                                                            testing::EndsWith("another file. (line 1)"))));
}

TEST_F(TrackInboxTest, NamesTakeTheNextFreeNumberOfTheirDirection) {
    const std::vector<InboxTrack> tracks{Track({}), Track({.Minute = 5}), Track({.Minute = 9, .IsNorth = false})};
    const NamesInGroups there{{"Main", {"Main-NB-001", "main-nb-003", "Main-EB-x"}}, {"Elm", {"Elm-NB-001"}}};
    std::vector<TakenTrack> taken{{&tracks[0], "Main"}, {&tracks[1], "Main"}, {&tracks[2], "Main"},
                                  {&tracks[0], "Elm"},  {&tracks[1], "New"},  {&tracks[0], "Elm", "Elm-NB-002"}};
    const auto names = [&](const std::string& base) {
        std::vector<TakenTrack> named = taken;
        NameTracks(base, named, there);
        std::vector<std::string> all;
        for (const TakenTrack& track : named) all.push_back(track.Name);
        return all;
    };
    EXPECT_THAT(names(""),
                ElementsAre("Main-NB-002", "Main-NB-004", "Main-EB-001", "Elm-NB-003", "New-NB-001", "Elm-NB-002"));
    EXPECT_THAT(names("Elm"),
                ElementsAre("Elm-NB-001", "Elm-NB-002", "Elm-EB-001", "Elm-NB-003", "Elm-NB-001", "Elm-NB-002"))
        << "each group counts its own";
    taken = {{nullptr, "Main", "A"}, {nullptr, "Elm", "a"}, {nullptr, "Main", "a"}};
    EXPECT_THAT(NameClash(taken, {}), StartsWith("Two runs would be called a."));
    taken.pop_back();
    EXPECT_EQ(NameClash(taken, {{"Main", {"B"}}}), "") << "one of a name in each group";
    EXPECT_THAT(NameClash(taken, {{"Elm", {"A"}}}), StartsWith("Study Group Elm has a run a already."));
}

TEST_F(TrackInboxTest, RunsAreWrittenAllOrNoneAndKnownAgain) {
    const std::vector<InboxTrack> tracks{Track({}), Track({.Minute = 5}), Track({})};
    for (const char* folder : {"/g/one", "/g/two"}) Files.CreateFolder(folder);
    Files.PutText("/g/two/B.rd2", "there before");
    std::vector<TakenTrack> taken{{&tracks[0], "one", "A"}, {&tracks[1], "two", "B"}};
    EXPECT_ERROR(FileAlreadyExists, WriteTracks(Files, taken, "/g"));
    EXPECT_THAT(Files.List("/g/one", RunExtension), IsEmpty());
    taken[1].Name = "C";
    EXPECT_TRUE(WriteTracks(Files, taken, "/g"));
    EXPECT_EQ(ReadRun(Files, "/g/one/", "A", RunPart::Whole).Run.Header.SampleCount, tracks[0].Run.Header.SampleCount);
    std::vector<std::pair<std::size_t, std::string>> same;
    const std::vector<std::string> folders{"/g/two", "/g/two", "/g/one"};
    for (const SameRun& run : SameRuns(Files, folders, tracks)) same.emplace_back(run.Track, run.Name);
    EXPECT_THAT(
        same, testing::UnorderedElementsAre(testing::Pair(2U, "a.gpx"), testing::Pair(1U, "C"), testing::Pair(2U, "A")))
        << "the first does not lie in its group";
}

}  // namespace
}  // namespace vantor
