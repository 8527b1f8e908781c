#include "analysis/RunFacts.h"

#include <gmock/gmock.h>

#include "analysis/StudyEdits.h"
#include "core/Text.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

/// Ten seconds at 44 ft a second (30 mph), with the third and the fourth at rest.
RunReading StoppedOnce() {
    return {
        .Outcome = RunOutcome::Run, .Run = RunOfValues({44, 44, 0, 0, 44, 44, 44, 44, 44, 44}), .SamplesInFile = 10};
}

struct Case {
    std::int32_t Start;
    std::int32_t End;
    std::int32_t IdealSpeed;
    const char* Warnings;
    void (*Afterwards)(StudyRunEntry&, RunReading&) = [](StudyRunEntry&, RunReading&) {};
};

// From 88 ft (second 2, counted twice) to 300 ft (second 8): 6 s for 212 ft, 5 s at 30 mph, delay 1 s.
TEST(RunWarnings, NameWhatAFigureDoesNotTell) {
    const Case cases[] = {
        {88, 300, 0, ""},
        {88, 0, 0, ""},
        {88, 5000, 0, "end not reached; negative control delay"},
        {5000, 6000, 0, "start not reached; end not reached; not computed"},
        {88, 80, 0, "end before start"},
        {88, 88, 0, "end before start"},
        {88, 300, 5, "negative control delay; ideal speed below 10 mph"},
        {88, 300, 10, "negative control delay"},
        {88, 300, 80, ""},
        {88, 300, 81, "ideal speed above 80 mph"},
        {88, 300, 0, "boundary moved without a computation",
         [](StudyRunEntry& entry, RunReading&) { entry.CDEndDist = 310; }},
        {88, 300, 0, "run changed since it was computed",
         [](StudyRunEntry&, RunReading& reading) { reading.Run.SampleValues[10] = 43; }},
        {88, 300, 0, "", [](StudyRunEntry&, RunReading& reading) { reading.Run.SampleValues[9] |= 0x0500; }},
        {88, 300, 0, "", [](StudyRunEntry& entry, RunReading&) { entry.Computed.reset(); }},
        {88, 300, 0, "cut (3 of 10 samples)", [](StudyRunEntry&, RunReading& reading) { reading.SamplesInFile = 3; }},
    };
    for (const Case& expected : cases) {
        RunReading reading = StoppedOnce();
        StudyRunEntry entry{
            .CDStartDist = expected.Start, .CDEndDist = expected.End, .IdealSpeedUser = expected.IdealSpeed};
        PlotState plot = PlacedBoundaries(reading.Run, entry);
        try {
            if (expected.End != 0) ComputeEntry(reading.Run, MphSettings(), plot, entry);
        } catch (const RunTimeError&) {
            EXPECT_FALSE(entry.Computed->Failure.empty());
        }
        expected.Afterwards(entry, reading);
        const auto warnings = RunWarnings(entry, FactsOf(reading, entry, MphSettings()));
        EXPECT_EQ(Joined(warnings, "; "), expected.Warnings) << expected.Start << " " << expected.End;
    }
}

TEST(PreviewBounds, TellsWhatSetBoundsWouldMake) {
    TestProgram program;
    Study study;
    for (const char* name : {"Good", "Gone", "Short", "Still"}) AppendRun(study, name);
    RunRecord good = StoppedOnce().Run;
    RunRecord brief = RunOfValues({44, 44, 44});
    RunRecord still = RunOfValues({0, 0, 0, 0});
    PutRunFile(program.Files, good, "/start/", "Good");
    PutRunFile(program.Files, brief, "/start/", "Short");
    PutRunFile(program.Files, still, "/start/", "Still");
    const Study before = study;
    const auto previews = PreviewBounds(study, {1, 2, 3, 4}, {88, 300, {}}, program.Files, "/start/", MphSettings());
    ASSERT_EQ(previews.size(), 4U);
    EXPECT_EQ(previews[0].Then.ControlDelay, 1);
    EXPECT_THAT(previews[0].Warnings, testing::IsEmpty());
    EXPECT_EQ(previews[1].Problem, "Missing Run File: Gone");
    EXPECT_THAT(previews[2].Warnings, testing::Contains("end not reached"));
    EXPECT_THAT(previews[3].Problem, testing::HasSubstr("Division by zero"));
    EXPECT_EQ(previews[3].Then, before.Entries[4]);
    EXPECT_THAT(PreviewBounds(study, {1}, {88, 88, {}}, program.Files, "/start/", MphSettings())[0].Warnings,
                testing::Contains("Both boundaries lie in the same second of the run."));
    EXPECT_TRUE(PreviewBounds(study, {1, 2}, {}, program.Files, "/start/", MphSettings(),
                              Progress([](double) { return false; }))
                    .empty());
    ASSERT_EQ(SetBounds(study, {1, 2, 3, 4}, {88, 300, {}}, program.Files, "/start/", MphSettings()).size(), 2U);
    for (const BoundsPreview& preview : previews) EXPECT_EQ(study.Entries[preview.Run], preview.Then);
}

TEST(ComputeRuns, OneThatFailsKeepsItsFiguresAndSaysSo) {
    TestProgram program;
    RunRecord run = StoppedOnce().Run;
    PutRunFile(program.Files, run, "/start/", "NB-1");
    Study study;
    AppendRun(study, "NB-1");
    ASSERT_TRUE(SetBounds(study, {1}, {88, 300, {}}, program.Files, "/start/", MphSettings()).empty());
    EXPECT_EQ(study.Entries[1].ControlDelay, 1);
    EXPECT_EQ(study.Entries[1].StopDelayThreshold, 0);

    std::ranges::fill(run.SampleValues, std::int16_t{0});
    PutRunFile(program.Files, run, "/start/", "NB-1");
    ASSERT_EQ(ComputeRuns(study, program.Files, "/start/", MphSettings()).size(), 1U);
    EXPECT_EQ(study.Entries[1].ControlDelay, 1);
    const auto rows = MakeRunListRows(study, program.Files, "/start/", MphSettings());
    EXPECT_THAT(rows.front().Warnings, testing::Contains("not computed: the figure is an earlier one"));

    program.Files.Delete("/start/NB-1.rd2");
    const StudyRunEntry before = study.Entries[1];
    EXPECT_EQ(ComputeRuns(study, program.Files, "/start/", MphSettings()).front().Reason, "Missing Run File: NB-1");
    EXPECT_EQ(study.Entries[1], before);
}

}  // namespace
}  // namespace vantor
