#include "core/RunDecoding.h"

#include <gtest/gtest.h>

#include "core/RunArithmetic.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

constexpr std::int16_t Node(int pulses) { return static_cast<std::int16_t>(0x8000 | pulses); }
constexpr std::int16_t Key(int pulses, int key) { return static_cast<std::int16_t>(key * 256 + pulses); }

TEST(RunDecoding, DerivesSectionsEventsAndLength) {
    RunRecord run = RunOfValues({10, Key(12, 16), Node(7), 20, Key(1, 15), Node(30), 5}, 1500);
    run.Header.ButtonLabel[3] = "old";
    run.Header.ButtonWord[3] = -1;
    run.Header.SectionDist[32] = 99;
    DecodeNewRun(run);
    const RunHeader& header = run.Header;
    EXPECT_EQ(std::tuple(header.NumberOfSections, header.SectionDist[1], header.SectionDist[2], header.SectionDist[3],
                         header.SectionDist[32]),
              std::tuple(4, 29, 51, 5, 0));
    EXPECT_EQ(std::tuple(header.HeaderWord3, header.ButtonLong[1], header.ButtonWord2[1], header.ButtonLong[2],
                         header.ButtonWord2[2]),
              std::tuple(2, 22, 16, 50, 15))
        << "events";
    EXPECT_EQ(std::tuple(header.ButtonWord[16], header.ButtonWord[3]), std::tuple(-1, 0));
    EXPECT_EQ(std::tuple(header.ButtonLabel[16], header.ButtonLabel[3]), std::tuple("Signal", ""));
    EXPECT_EQ(header.RunLength, 128) << "85 pulses of 1.5 feet are 127.5, to even";
    EXPECT_EQ(std::tuple(header.Duration, header.HeaderWord1, header.HeaderWord2, header.Before, header.After),
              std::tuple(7, -1, 0, -1, 0));
}

TEST(RunDecoding, RunWithoutNodesIsSecondary) {
    RunRecord run = RunOfValues({10, 20});
    DecodeNewRun(run);
    EXPECT_EQ(std::tuple(run.Header.NumberOfSections, run.Header.HeaderWord1, run.Header.HeaderWord2),
              std::tuple(2, 0, -1));
    RunRecord empty = RunOfValues({});
    DecodeNewRun(empty);
    EXPECT_EQ(std::tuple(empty.Header.NumberOfSections, empty.Header.Duration), std::tuple(2, 0));
}

TEST(RunDecoding, KeepsThirtyTwoEventsAndOverwritesTheLast) {
    std::vector<int> words(32, Key(1, 2));
    for (const int key : {3, 33, 127}) words.push_back(Key(1, key));
    RunRecord run = RunOfValues(words);
    DecodeRunSamples(run);
    EXPECT_EQ(std::tuple(run.Header.HeaderWord3, run.Header.ButtonLong[32], run.Header.ButtonWord2[32]),
              std::tuple(32, 33, 3));
    EXPECT_EQ(run.Header.RunLength, 35);
}

TEST(RunDecoding, DropsSectionsPastTheSixtyFourthNode) {
    for (const int nodes : {62, 63, 70}) {
        std::vector<int> words(static_cast<std::size_t>(nodes), Node(2));
        words.push_back(1);
        RunRecord run = RunOfValues(words);
        DecodeRunSamples(run);
        EXPECT_EQ(run.Header.NumberOfSections, 64) << nodes;
        const auto& lengths = run.Header.SectionDist;
        EXPECT_EQ(std::tuple(lengths[62], lengths[63], lengths[64]), std::tuple(2, nodes == 62 ? 1 : 2, 0)) << nodes;
    }
}

TEST(RunArithmetic, RoundsTheWidenedProductOnce) {
    // In single precision 1.018 is a little more, 1.004 a little less: neither product is the half that would go to
    // the even neighbour.
    const std::tuple<std::int16_t, int, int> cases[] = {
        {1018, 250, 255}, {1004, 125, 125}, {1500, 1, 2}, {1500, 3, 4}, {500, 1, 0}, {0, 255, 0}, {-1000, 7, -7},
    };
    for (const auto& [calConstant, pulses, feet] : cases)
        EXPECT_EQ(FeetOfPulses(calConstant, pulses), feet) << calConstant;
    const RunArithmetic arithmetic(1000, MphSettings().SpeedFactor);
    EXPECT_EQ(arithmetic.DistanceIncrement(Node(255)), 255);
    EXPECT_EQ(arithmetic.Speed(Key(66, 16)), 0.68181818F * 66.0F);
}

TEST(RunDecoding, EditedRunKeepsTheLabelsOfItsKeys) {
    RunRecord run = RunOfValues({10, Key(12, 1), Key(7, 2), 20});
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
