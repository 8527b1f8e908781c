#include "core/RunDecoding.h"

#include <gtest/gtest.h>

#include "core/RunArithmetic.h"
#include "core/modMain.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

RunRecord RunOf(std::vector<std::int16_t> words, std::int16_t calConstant = 1000) {
    RunRecord run;
    run.Header.CalConstant = calConstant;
    run.Header.SampleCount = static_cast<std::int32_t>(words.size());
    run.SampleValues = OneBased<std::int16_t>(std::move(words));
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    return run;
}

constexpr std::int16_t Node(int pulses) { return static_cast<std::int16_t>(0x8000 | pulses); }
constexpr std::int16_t Key(int pulses, int key) { return static_cast<std::int16_t>(key * 256 + pulses); }

TEST(RunDecoding, DerivesSectionsEventsAndLength) {
    RunRecord run = RunOf({10, Key(12, 16), Node(7), 20, Key(1, 15), Node(30), 5}, 1500);
    run.Header.ButtonLabel[3] = "old";
    run.Header.ButtonWord[3] = -1;
    run.Header.SectionDist[32] = 99;
    DecodeNewRun(run);
    EXPECT_EQ(run.Header.NumberOfSections, 4);
    EXPECT_EQ(run.Header.SectionDist[1], 29);
    EXPECT_EQ(run.Header.SectionDist[2], 51);
    EXPECT_EQ(run.Header.SectionDist[3], 5);
    EXPECT_EQ(run.Header.SectionDist[32], 0);
    EXPECT_EQ(run.Header.HeaderWord3, 2);
    EXPECT_EQ(run.Header.ButtonLong[1], 22);
    EXPECT_EQ(run.Header.ButtonWord2[1], 16);
    EXPECT_EQ(run.Header.ButtonLong[2], 50);
    EXPECT_EQ(run.Header.ButtonWord2[2], 15);
    EXPECT_EQ(run.Header.ButtonWord[16], -1);
    EXPECT_EQ(run.Header.ButtonWord[3], 0);
    EXPECT_EQ(run.Header.ButtonLabel[16], "Signal");
    EXPECT_EQ(run.Header.ButtonLabel[3], "");
    EXPECT_EQ(run.Header.RunLength, 128) << "85 pulses of 1.5 feet are 127.5, to even";
    EXPECT_EQ(run.Header.Duration, 7);
    EXPECT_EQ(run.Header.HeaderWord1, -1);
    EXPECT_EQ(run.Header.HeaderWord2, 0);
    EXPECT_EQ(run.Header.Before, -1);
}

TEST(RunDecoding, RunWithoutNodesIsSecondary) {
    RunRecord run = RunOf({10, 20});
    DecodeNewRun(run);
    EXPECT_EQ(run.Header.NumberOfSections, 2);
    EXPECT_EQ(run.Header.HeaderWord1, 0);
    EXPECT_EQ(run.Header.HeaderWord2, -1);
    RunRecord empty = RunOf({});
    DecodeNewRun(empty);
    EXPECT_EQ(empty.Header.NumberOfSections, 2);
    EXPECT_EQ(empty.Header.Duration, 0);
}

TEST(RunDecoding, KeepsThirtyTwoEventsAndOverwritesTheLast) {
    std::vector<std::int16_t> words(32, Key(1, 2));
    words.push_back(Key(1, 3));
    words.push_back(Key(1, 33));
    words.push_back(Key(1, 127));
    RunRecord run = RunOf(words);
    DecodeRunSamples(run);
    EXPECT_EQ(run.Header.HeaderWord3, 32);
    EXPECT_EQ(run.Header.ButtonLong[32], 33);
    EXPECT_EQ(run.Header.ButtonWord2[32], 3);
    EXPECT_EQ(run.Header.RunLength, 35);
}

TEST(RunDecoding, DropsSectionsPastTheSixtyFourthNode) {
    for (const auto& [nodes, sections, lastLength] : {std::tuple{62, 64, 1}, {63, 64, 0}, {70, 64, 0}}) {
        std::vector<std::int16_t> words(static_cast<std::size_t>(nodes), Node(2));
        words.push_back(1);
        RunRecord run = RunOf(words);
        DecodeRunSamples(run);
        EXPECT_EQ(run.Header.NumberOfSections, sections) << nodes;
        EXPECT_EQ(run.Header.SectionDist[62], 2) << nodes;
        EXPECT_EQ(run.Header.SectionDist[63], nodes == 62 ? lastLength : 2) << nodes;
        EXPECT_EQ(run.Header.SectionDist[64], 0) << nodes;
    }
}

TEST(RunArithmetic, RoundsTheWidenedProductOnce) {
    // In single precision 1.018 is a little more, 1.004 a little less: neither product is the half that would go to
    // the even neighbour.
    EXPECT_EQ(FeetOfPulses(1018, 250), 255);
    EXPECT_EQ(FeetOfPulses(1004, 125), 125);
    EXPECT_EQ(FeetOfPulses(1500, 1), 2);
    EXPECT_EQ(FeetOfPulses(1500, 3), 4);
    EXPECT_EQ(FeetOfPulses(500, 1), 0);
    EXPECT_EQ(FeetOfPulses(0, 255), 0);
    EXPECT_EQ(FeetOfPulses(-1000, 7), -7);
    const RunArithmetic arithmetic(1000, static_cast<float>(3600.0 / 5280.0));
    EXPECT_EQ(arithmetic.DistanceIncrement(Node(255)), 255);
    EXPECT_EQ(arithmetic.Speed(Key(66, 16)), static_cast<float>(3600.0 / 5280.0) * 66.0F);
}

TEST(RunDecoding, EditedRunKeepsTheLabelsOfItsKeys) {
    RunRecord run = RunOf({10, Key(12, 1), Key(7, 2), 20});
    DecodeNewRun(run);
    run.Header.ButtonLabel[1] = "Left turn queue";
    run.SampleValues[3] = Key(7, 3);
    DecodeEditedRun(run);
    EXPECT_EQ(run.Header.ButtonLabel[1], "Left turn queue");
    EXPECT_EQ(run.Header.ButtonLabel[2], "") << "no longer used";
    EXPECT_EQ(run.Header.ButtonLabel[3], EventCodeLabel(3)) << "used for the first time";
}

}  // namespace
}  // namespace vantor
