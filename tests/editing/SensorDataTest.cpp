#include "editing/SensorData.h"

#include <gtest/gtest.h>

#include "editing/SensorEdits.h"
#include "editing/SensorView.h"
#include "fakes/ThrowsError.h"
#include "plots/Profiles.h"

namespace vantor {
namespace {

using Words = std::vector<int>;

OneBased<std::int16_t> WordsOf(const Words& values) { return RunOf(values).SampleValues; }

/// One foot a pulse: 44 pulses are 30 mph, 45 are 31, 59 are 40, 62 are 42, 66 are 45, 67 are 46, 73 are 50, 81 are 55.
SensorData OneFootAPulse() { return {1000, EnglishSettings()}; }

/// The words after the changes, which must tell the old ones.
Words After(OneBased<std::int16_t> words, const WordChanges& changes) {
    for (const WordChange& change : changes) {
        EXPECT_EQ(words[change.Point], change.Old);
        EXPECT_NE(change.New, change.Old);
        words[change.Point] = change.New;
    }
    return {words.begin(), words.end()};
}

TEST(SensorData, SpeedIsRoundedTwiceFromWidenedFactors) {
    using Case = std::tuple<int, std::int16_t, int>;
    for (const auto& [pulses, calConstant, speed] :
         {Case{44, 1000, 30}, Case{81, 1000, 55}, Case{0, 1000, 0}, Case{255, 1000, 174},
          Case{33, 1000, 23},    // 22.5 in single precision, a little more in double
          Case{250, 1582, 270},  // 395.5 feet and a little more: 396
          Case{255, 0, 0}, Case{255, 32767, 5697}})
        EXPECT_EQ(SensorData(calConstant, EnglishSettings()).SpeedOf(static_cast<std::int16_t>(0x8C00 | pulses)), speed)
            << pulses << " pulses, calibration " << calConstant;
    AppSettings settings = EnglishSettings();
    settings.SpeedFactor = 200;
    EXPECT_ERROR(Overflow, SensorData(1000, settings).SpeedOf(164));
    EXPECT_ERROR(Overflow, SensorData(1000, settings).DeSpike(WordsOf({1, 164, 1, 1, 1})));
}

TEST(SensorData, DeSpikeLooksAtBothNeighbours) {
    using Case = std::tuple<const char*, Words, Words>;
    for (const auto& [what, before, after] :
         {Case{"30, 55, 31: far from the left", {44, 81, 45, 45, 45}, {44, 44, 45, 45, 45}},
          Case{"30, 55, 55: far from the left alone", {44, 81, 81, 81, 81}, {44, 62, 81, 81, 81}},
          Case{"30, 50, 50: 20 is not above 20", {44, 73, 73, 73, 73}, {44, 73, 73, 73, 73}},
          Case{"30, 42, 30: more than 10 on both sides", {44, 62, 44, 44, 44}, {44, 44, 44, 44, 44}},
          Case{"30, 40, 30: 10 is not above 10", {44, 59, 44, 44, 44}, {44, 59, 44, 44, 44}},
          Case{"31, 30, 55: far from the right alone", {45, 44, 81, 81, 81}, {45, 44, 81, 81, 81}},
          Case{"7.5 is 8", {7, 60, 8, 8, 8}, {7, 8, 8, 8, 8}}, Case{"6.5 is 6", {6, 60, 7, 7, 7}, {6, 6, 7, 7, 7}},
          Case{"a dip", {81, 0, 81, 81, 81}, {81, 81, 81, 81, 81}},
          Case{"keys and nodes stay", {44, 0x0C51, 45 | 0x0700, 45, 45}, {44, 0x0C2C, 45 | 0x0700, 45, 45}},
          Case{"a node stays", {44, 81 - 0x8000, 45, 45, 45}, {44, 44 - 0x8000, 45, 45, 45}},
          Case{"the last three and the first stay", {255, 0, 255, 0, 255, 0, 255}, {255, 255, 255, 255, 255, 0, 255}},
          Case{"no spike at either end", {0, 81, 81, 81, 81, 0, 200}, {0, 40, 60, 81, 81, 0, 200}},
          Case{"four points", {44, 81, 45, 45}, {44, 81, 45, 45}}, Case{"no points", {}, {}}})
        EXPECT_EQ(After(WordsOf(before), OneFootAPulse().DeSpike(WordsOf(before))), after) << what;
}

TEST(SensorData, SmoothLooksAtTheRepairedLeftNeighbour) {
    using Case = std::tuple<std::int16_t, Words, Words>;
    for (const auto& [factor, before, after] :
         {Case{15, {44, 66, 67, 67, 67}, {44, 56, 67, 67, 67}}, Case{16, {44, 66, 67, 67, 67}, {44, 66, 67, 67, 67}},
          // 81 becomes 62 (42 mph), so the next 81 is 13 mph off and becomes 72 (49 mph); the one after it is in reach.
          Case{10, {44, 81, 81, 81, 81, 81, 81, 81}, {44, 62, 72, 81, 81, 81, 81, 81}},
          // Everything is at least 0 and -1 apart.
          Case{0, {10, 10, 20, 30, 30, 30}, {10, 15, 22, 30, 30, 30}},
          Case{-1, {10, 10, 20, 30, 30, 30}, {10, 15, 22, 30, 30, 30}},
          Case{0, {44, 0x1042, 67, 67}, {44, 0x1042, 67, 67}},
          Case{0, {44, 0x1042, 67, 67, 67}, {44, 0x1038, 67, 67, 67}}})
        EXPECT_EQ(After(WordsOf(before), OneFootAPulse().Smooth(WordsOf(before), factor)), after);
}

TEST(SensorData, TypedSpeedBecomesPulses) {
    using Case = std::tuple<const char*, int, std::int16_t, std::int16_t, bool, int>;
    for (const auto& [what, word, typed, calConstant, isMetric, edited] :
         {Case{"81 feet", 44, 55, 1000, false, 81}, Case{"the same speed", 44, 30, 1000, false, 44},
          Case{"keeps key and node", 0x0C00 | 44, 55, 1000, false, 0x0C00 | 81},
          Case{"100 km/h are 62 mph, 91 feet", 44, 100, 1000, true, 91},
          Case{"compared before it is converted", 44, 30, 1000, true, 44},
          Case{"48 km/h are 30 mph", 45, 48, 1000, true, 44}, Case{"40.5 pulses", 0, 55, 2000, false, 40},
          Case{"810 pulses", 0, 55, 100, false, 810 - 768}, Case{"less than nothing", 0, -5, 1000, false, 249},
          Case{"to rest", 44, 0, 1000, false, 0}}) {
        AppSettings settings = EnglishSettings();
        settings.MetricUnits = isMetric ? -1 : 0;
        EXPECT_EQ(SensorData(calConstant, settings).WithSpeed(static_cast<std::int16_t>(word), typed), edited) << what;
    }
    AppSettings settings = EnglishSettings();
    // A foot a pulse: 255 ft/s are 173.9 mph, 175 mph are 257 pulses, -1 mph are -1.
    for (const auto& [typed, note] : {std::pair{"174", ""},
                                      {"175", "above 174 MPH: wraps to 1"},
                                      {"-1", "below 0 MPH: wraps to 174"},
                                      {"12.6", "counts as 13"},
                                      {"12 mph", "counts as 12"},
                                      {"", "no number: counts as 0"},
                                      {"fast", "no number: counts as 0"},
                                      {" 0 ", ""},
                                      {"40000", "above 32767: no change"}})
        EXPECT_EQ(SensorData(1000, EnglishSettings()).NoteOnSpeed(44, typed), note) << typed;
    EXPECT_ERROR(DivisionByZero, SensorData(0, settings).WithSpeed(44, 30));
    EXPECT_EQ(SensorData(0, settings).WithSpeed(44, 0), 44);
    settings.SpeedFactor = 0;
    EXPECT_ERROR(DivisionByZero, SensorData(1000, settings).WithSpeed(44, 30));
    settings.SpeedFactor = 1e-9F;
    EXPECT_ERROR(Overflow, SensorData(1000, settings).WithSpeed(44, 30));
}

TEST(SensorEdits, StepsGoBackAndForthAndKnowWhatIsSaved) {
    auto words = WordsOf({1, 2, 3});
    SensorEdits edits(words);
    const auto expect = [&](const Words& expected, bool isUnsaved) {
        EXPECT_EQ(words, WordsOf(expected));
        EXPECT_EQ(edits.IsUnsaved(), isUnsaved);
    };
    edits.Do({});
    EXPECT_FALSE(edits.CanUndo());
    EXPECT_ERROR(SubscriptOutOfRange, edits.Undo());
    edits.Do({{1, 1, 10}, {3, 3, 30}});
    edits.Do({{1, 10, 11}});
    expect({11, 2, 30}, true);
    EXPECT_EQ(edits.Undo(), (WordChanges{{1, 10, 11}}));
    expect({10, 2, 30}, true);
    edits.Undo();
    expect({1, 2, 3}, false);
    edits.Redo();
    edits.Saved();
    expect({10, 2, 30}, false);
    edits.Undo();
    expect({1, 2, 3}, true);
    // The saved step can never come back after this.
    edits.Do({{2, 2, 20}});
    EXPECT_FALSE(edits.CanRedo());
    EXPECT_ERROR(SubscriptOutOfRange, edits.Redo());
    expect({1, 20, 3}, true);
    edits.Undo();
    expect({1, 2, 3}, true);
}

TEST(SensorView, FollowsTheActivePointAndZoomsFromPointsToTheWholeRun) {
    const RunRecord run = RunOf(Words(1500, 44));
    const AppSettings settings = EnglishSettings();
    SensorView view(run, settings);
    view.SetRectangle(RoundArea);
    for (const auto& [steps, scale] : {std::pair{0, 150}, {-1, 150}, {100, 1}}) {
        view.Zoom(steps, 550);  // at second 750
        EXPECT_EQ(view.Geometry().ScaleStep(), scale);
    }
    EXPECT_EQ(std::pair(view.PointAt(550), view.PointAt(550 + 60)), std::pair(750, 751));
    view.SetActivePoint(753);
    EXPECT_EQ(std::pair(view.PointAt(550), view.ZoomAnchor()), std::pair(750, 850.0));
    view.SetActivePoint(1100);
    EXPECT_EQ(view.PointAt(550), 1100);
    view.SetActivePoint(5000);
    EXPECT_EQ(view.ActivePoint(), 1500);
    for (const double x : {1050, 4000}) EXPECT_EQ(view.PointAt(x), 1500);
    view.ScrollTo(-5);
    EXPECT_EQ(std::pair(view.PointAt(0), view.ZoomAnchor()), std::pair(1, 550.0));

    const RunRecord empty = RunOf({});
    SensorView nothing(empty, settings);
    nothing.SetActivePoint(3);
    EXPECT_EQ(std::pair(nothing.ActivePoint(), nothing.PointAt(500)), std::pair(0, 0));
}

}  // namespace
}  // namespace vantor
