#include "statistics/StudyStatistics.h"

#include <gmock/gmock.h>

#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "statistics/ComparedStudy.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr, testing::IsEmpty, testing::Optional;

constexpr int Node = NodeFlag;
constexpr StopSpeeds FiveTen{5, 10};

RunMeasures Measured(const std::vector<int>& feet, const StopSpeeds& speeds = FiveTen) {
    return MeasureRun(RunOfValues(feet), MphSettings().SpeedFactor, speeds);
}

TEST(RunMeasures, SecondsFallWhereTheyAreAndStopsWhereTheyBegin) {
    const RunMeasures run = Measured({44, 44, 30, 15, Node | 0, 6, 0, 12, 8, 16, 30, 44});
    EXPECT_EQ(run.Whole, (PieceMeasures{12, 249, 3, 1}));
    EXPECT_THAT(run.Sections, ElementsAre(PieceMeasures{5, 133, 1, 1}, PieceMeasures{7, 116, 2, 0}));
    EXPECT_THAT(run.NodeTimes, ElementsAre(5));
    EXPECT_THAT(run.NodeDistances, ElementsAre(133));
    EXPECT_THAT(Measured({0, Node | 0}).Sections, ElementsAre(PieceMeasures{2, 0, 2, 1}, PieceMeasures()));
    EXPECT_EQ(Measured({0}).Whole.RunningSpeed(), std::nullopt);
    EXPECT_THAT(Measured({0}).Whole.TravelSpeed(), Optional(0.0)) << "a run that stands";
    EXPECT_EQ(PieceMeasures().PercentStopped(), std::nullopt);
    // 30, 4, 12, 4, 16, 4 and 20 miles per hour.
    for (const auto& [go, stops] : {std::pair(10.0, 3), {15.0, 2}, {5.0, 3}})
        EXPECT_EQ(Measured({44, 6, 18, 6, 23, 6, 29}, {5, go}).Whole.Stops, stops) << go;
}

TEST(RunMeasures, SectionsAddUp) {
    std::vector<int> values(3000);
    for (int i = 1; int& value : values) {
        value = i * i % 61 % (i % 97 + 1) | (i % 53 == 0 ? Node : 0);
        ++i;
    }
    const RunMeasures run = Measured(values);
    ASSERT_GT(run.Sections.size(), 50U);
    PieceMeasures sum;
    for (const PieceMeasures& section : run.Sections)
        sum = {sum.TravelTime + section.TravelTime, sum.Distance + section.Distance,
               sum.StoppedTime + section.StoppedTime, sum.Stops + section.Stops};
    EXPECT_EQ(sum, run.Whole);
}

/// A study of runs "R1" and so on in "/g/", each with both boundaries and a control delay of ten times its number.
struct StudyStatisticsTest : testing::Test {
    MemoryFileSystem Files;
    Study TheStudy;
    std::string Notes;

    void Put(const std::vector<int>& feet, bool isBefore = false, bool isAfter = true, int hour = 7) {
        const std::string name = "R" + std::to_string(TheStudy.Record.RunCount + 1);
        RunRecord run = RunOfValues(feet);
        run.Header.RunDate = DateOf(2008, 3, 11);
        run.Header.RunTime = TimeOf(hour, 0);
        run.Header.Notes = Notes;
        run.Header.Before = isBefore ? -1 : 0;
        run.Header.After = isAfter ? -1 : 0;
        if (TheStudy.Record.RunCount == 0) Files.CreateFolder("/g");
        PutRunFile(Files, run, "/g/", name);
        AppendRun(TheStudy, name);
        StudyRunEntry& entry = TheStudy.Entries[TheStudy.Record.RunCount];
        entry.CDStartDist = 1;
        entry.CDEndDist = 2;
        entry.ControlDelay = 10 * TheStudy.Record.RunCount;
        entry.LOSGrade = "A";
    }

    StudyRuns Read() const { return ReadStudyRuns(TheStudy, Files, "/g/", MphSettings()); }
    StudyStatistics Compute() const { return ComputeStatistics(Read().Runs, TheStudy.Options); }
};

TEST_F(StudyStatisticsTest, AverageSpeedsAreSumsOverSums) {
    // 2000 ft in tenths of seconds (a published example), here ten times as many feet and seconds.
    for (const int tenths : {405, 442, 417, 473, 465, 419, 430, 470, 426, 433}) {
        std::vector<int> feet(static_cast<std::size_t>(tenths), 20000 / tenths);
        for (int i = 0; i < 20000 % tenths; ++i) ++feet[static_cast<std::size_t>(i)];
        Put(feet);
    }
    const GroupStatistics all = Compute().Whole.All;
    EXPECT_NEAR(*all.AverageTravelSpeed * FeetPerSecondOfMph, 45.662, 0.0005);
    EXPECT_NEAR(*all.Of[Measure::TravelSpeed].Mean * FeetPerSecondOfMph, 45.782, 0.0005);
    EXPECT_EQ(all.RestsOn.Text(), "10 runs, 1 day, 07:00");
}

TEST_F(StudyStatisticsTest, GroupsAndSections) {
    Put({44, 44, Node | 44, 0, 44}, true, false, 9);
    Put({44, Node | 44, 44, 44}, true, false);
    Put({44, Node | 44, 44}, false, true);
    Put({44, 44, Node | 44, 44}, false, true, 17);
    Put({22, Node | 44}, true, true, 8);
    const StudyRuns read = Read();
    std::vector<std::string> names;
    for (const MeasuredRun& run : read.Runs) names.push_back(run.Name);
    EXPECT_THAT(names, ElementsAre("R2", "R3", "R5", "R1", "R4")) << "in the order driven";
    const StudyStatistics statistics = ComputeStatistics(read.Runs, {});
    EXPECT_THAT(statistics.ContradictoryFlags, ElementsAre(2U));
    EXPECT_EQ(statistics.Whole.Before.N, 3) << "Before counts, whatever After says";
    EXPECT_THAT(statistics.Whole.Before.Of[Measure::ControlDelay].Mean, Optional((10 + 20 + 50) / 3.0));
    EXPECT_THAT(statistics.Whole.All.Warnings, ElementsAre("times of day mixed: 07:00 to 17:00"));
    EXPECT_THAT(statistics.Whole.Before.Warnings, ElementsAre("few runs"));
    ASSERT_EQ(statistics.Sections.size(), 2U);
    EXPECT_EQ(statistics.Sections[0].From + statistics.Sections[1].From + statistics.Sections[1].To,
              "[Start]Node 1[End]");
    TheStudy.Entries[5].SetAside = "detour";
    EXPECT_EQ(Compute().Whole.All.N, 5) << "it stays";
    EXPECT_EQ(WithoutSetAside(Read().Runs).size(), 4U);
    double times = 0;
    for (const SectionOverRuns& section : statistics.Sections) times += *section.All.Of[Measure::TravelTime].Mean;
    EXPECT_NEAR(times, *statistics.Whole.All.Of[Measure::TravelTime].Mean, 1e-12);
    EXPECT_TRUE(statistics.SectionsComparable);
    EXPECT_TRUE(statistics.Sections[0].Compared[Measure::TravelTime].HolmP);
    EXPECT_THAT(statistics.Sections[1].Before.Of[Measure::TravelTime].Min, Optional(0.0)) << "the node closes the run";
}

TEST_F(StudyStatisticsTest, RunsOfAnotherNodeCountStandApart) {
    for (int i = 0; i < 3; ++i) Put({44, Node | 44, 44});
    for (int i = 0; i < 2; ++i) Put({44, Node | 44, Node | 44, 44}, true, false);
    const StudyStatistics statistics = Compute();
    EXPECT_FALSE(statistics.SectionsComparable);
    EXPECT_EQ(statistics.NodeCountText(), "3 of 5 runs have 1 node");
    ASSERT_EQ(statistics.Sections.size(), 2U);
    EXPECT_EQ(statistics.Sections[0].All.N, 3);
    EXPECT_EQ(statistics.Sections[0].Compared[Measure::TravelTime], Comparison());
    EXPECT_THAT(statistics.NodeCounts[1].Runs, ElementsAre(3U, 4U));
}

TEST_F(StudyStatisticsTest, PeriodsTellWhatIsAlike) {
    for (const int hour : {7, 8}) Put({44, 44}, true, false, hour);
    for (const int hour : {16, 17}) Put({44}, false, true, hour);
    EXPECT_THAT(Compute().Whole.Warnings, ElementsAre(HasSubstr("07:00 to 08:00 before, 16:00 to 17:00 after")));
    for (int i = 1; i <= 4; ++i) TheStudy.Entries[i].Period = i % 2 == 0 ? "AM" : "PM";
    EXPECT_THAT(Compute().Whole.Warnings, IsEmpty()) << "both have both";
    EXPECT_THAT(Compute().Whole.Before.Warnings, testing::Contains("periods mixed: PM, AM"));
    TheStudy.Entries[2].Period = "PM";
    EXPECT_THAT(Compute().Whole.Warnings, ElementsAre(HasSubstr("PM before, PM, AM after")));
}

TEST_F(StudyStatisticsTest, DirectionsTellWhatIsAlike) {
    for (const char* notes : {"Direction NB; a.gd2", "Direction SB", "Direction of travel"}) {
        Notes = notes;
        Put({44, 44}, Notes.ends_with('2'), !Notes.ends_with('2'));
    }
    EXPECT_THAT(Compute().Whole.All.Warnings, testing::Contains("directions mixed: NB, SB"));
    EXPECT_THAT(Compute().Whole.Warnings, ElementsAre(HasSubstr("NB before, SB after. Compare runs of the same dir")));
    TheStudy.Record.Direction = 1;
    TheStudy.MissingEntries = 1;
    const ComparedStudy group = OpenStudyGroup(Files, "/g/");
    const auto compared =
        CompareConditions({ConditionOf({"/g/", "AM", TheStudy, false}, Read()),
                           ConditionOf(group, ReadStudyRuns(group.Contents, Files, group.Folder, MphSettings()))},
                          {});
    EXPECT_THAT(compared[0].Remarks, ElementsAre("2 of 3 entries are there: the study file was cut short."));
    EXPECT_THAT(compared[1].Remarks, ElementsAre(HasSubstr("a Study Group alone has no boundaries. Make a study")));
    EXPECT_THAT(compared[1].Warnings, ElementsAre(HasSubstr("SB before, NB and SB after")));
}

TEST_F(StudyStatisticsTest, BadCasesGetASentenceEach) {
    const auto warnings = [&] { return Compute().Warnings; };
    EXPECT_THAT(warnings(), ElementsAre("There are no runs to make statistics of."));
    Put({44, 44});
    TheStudy.Entries[1].CDEndDist = 0;
    EXPECT_THAT(warnings(),
                ElementsAre(HasSubstr("one run"), HasSubstr("no control delay"), HasSubstr("No run has nodes")));
    EXPECT_FALSE(Compute().Whole.All.Of[Measure::ControlDelay].Mean);
    Put({44, Node | 44}, true, true);
    EXPECT_THAT(warnings(), ElementsAre(HasSubstr("equal"), HasSubstr("contradict each other in 1 run (R2)"),
                                        HasSubstr("1 of 2 runs has 1 node")));
    Put({});
    AppendRun(TheStudy, "Gone");
    Files.Delete("/g/R1.rd2");
    const StudyRuns read = Read();
    ASSERT_EQ(read.LeftOut.size(), 3U);
    EXPECT_THAT(read.LeftOut[0].Problem, HasSubstr("Missing Run File: R1"));
    EXPECT_THAT(read.LeftOut[1].Problem, HasSubstr("R3: the run has no samples"));
    EXPECT_EQ(read.Runs.size(), 1U);
    EXPECT_FALSE(ReadStudyRuns(TheStudy, Files, "/g/", MphSettings(), Progress([](double) { return false; })).IsWhole);
}

TEST_F(StudyStatisticsTest, ManyRunsAreReadAllAndInOrder) {
    for (int i = 1; i <= 150; ++i) Put(std::vector<int>(static_cast<std::size_t>(i), 44), false, true, i % 2 + 7);
    Files.Delete("/g/R50.rd2");
    Files.PutText("/g/R60.rd2", "no run");
    const StudyRuns read = Read();
    ASSERT_EQ(read.Runs.size(), 148U);
    EXPECT_EQ(read.LeftOut[0].Entry, 50);
    EXPECT_EQ(read.LeftOut[1].Outcome, RunOutcome::Damaged);
    for (std::size_t i = 1; i < read.Runs.size(); ++i) {
        EXPECT_LT(std::pair(read.Runs[i - 1].RunTime.Days, read.Runs[i - 1].Entry),
                  std::pair(read.Runs[i].RunTime.Days, read.Runs[i].Entry));
        EXPECT_EQ(read.Runs[i].Measures.Whole.TravelTime, read.Runs[i].Entry);
    }
}

}  // namespace
}  // namespace vantor
