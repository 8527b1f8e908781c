#include "editing/RunFileTexts.h"

#include <gtest/gtest.h>

#include "core/Text.h"
#include "fakes/ThrowsError.h"
#include "plots/Profiles.h"

namespace vantor {
namespace {

/// A run with one node and the key "Signal" used, every value of its header set.
RunRecord FullRun() {
    RunRecord run = RunOf({10, 20, Node | 30, (16 << 8) | 5, 40});
    RunHeader& header = run.Header;
    header.RunName = "NB-001";
    header.RunDate = {39518.25};  // 11 March 2008, with a time of day
    header.RunTime = TimeOf(7, 5, 42);
    header.CountNumber = 3;
    header.RunNumber = -1;
    header.SiteCode = "MAINSTNB";
    // Flags as no screen would set them.
    header.HeaderWord1 = header.HeaderWord2 = header.Before = header.After = 7;
    header.ButtonLabel[12] = "label of a key that is not used";
    header.Notes = "Wet  ";
    return run;
}

struct Changed {
    RunRecord Run = FullRun();
    RunFileTexts Texts = TextsOf(Run.Header);
    RunHeader Header() const { return WithTexts(Run, Texts).Header; }
    RunHeader With(std::string RunFileTexts::*field, const std::string& text) {
        Texts.*field = text;
        return Header();
    }
};

TEST(RunFileTexts, ShowsEveryValue) {
    RunRecord run = FullRun();
    const RunFileTexts texts = TextsOf(run.Header);
    EXPECT_EQ(texts.RunDate + " " + texts.RunTime, "03/11/08 07:05");
    EXPECT_EQ(texts.CountNumber + texts.RunNumber + texts.CalConstant, "3-11000");
    EXPECT_EQ(texts.BeforeOrAfter + texts.RunType, "BeforePrimary");
    EXPECT_EQ(texts.Length + "|" + texts.Duration + "|" + texts.NumberOfSections, "105|5|3");
    EXPECT_EQ(texts.ButtonLabel[16] + texts.ButtonLabel[12] + "|" + texts.Notes, "Signal|Wet");
    EXPECT_EQ(texts.SectionDist[0] + "|" + texts.SectionDist[1] + "|" + texts.SectionDist[2], "0|60|45");
    EXPECT_EQ(texts.SectionName[0] + texts.SectionName[1] + texts.SectionName[2], "[Start]");
    EXPECT_EQ(texts.SectionName[3], "[End]") << "node number NumberOfSections";
    run.Header.SectionName[0] = "Oak St";
    run.Header.NumberOfSections = 64;
    EXPECT_EQ(TextsOf(run.Header).SectionName[0] + TextsOf(run.Header).SectionName[3], "Oak St");
}

TEST(RunFileTexts, TextsAsTheyWereShownChangeNothingButTheTwoNamesAndTheSeconds) {
    Changed given;
    RunRecord expected = given.Run;
    Name(expected.Header, {"[Start]", "", "", "[End]"});
    expected.Header.RunTime = TimeOf(7, 5);
    EXPECT_EQ(WithTexts(given.Run, given.Texts), expected);
    EXPECT_EQ(Joined(ChangesOf(given.Run.Header, expected.Header), "; "),
              "RunTime (without its seconds); SectionName (\"[Start]\", \"[End]\")");
    RunRecord damaged = given.Run;
    damaged.Header.RunDate.Days = damaged.Header.RunTime.Days = 1e300;
    EXPECT_EQ(WithTexts(damaged, TextsOf(damaged.Header)).Header.RunTime, damaged.Header.RunTime);
}

TEST(RunFileTexts, TakesDaysAndTimes) {
    Changed given;
    EXPECT_EQ(given.With(&RunFileTexts::RunDate, "3-4-1998").RunDate, DateOf(1998, 3, 4));
    EXPECT_EQ(given.With(&RunFileTexts::RunTime, "7:05:09").RunTime, TimeOf(7, 5, 9));
    EXPECT_ERROR(TypeMismatch, given.With(&RunFileTexts::RunDate, "02/30/08"));
    EXPECT_ERROR(TypeMismatch, given.With(&RunFileTexts::RunTime, ""));
}

TEST(RunFileTexts, ConvertsNumbers) {
    Changed given;
    EXPECT_EQ(given.With(&RunFileTexts::CountNumber, " 12.5 ").CountNumber, 12) << "halves to even";
    EXPECT_EQ(given.With(&RunFileTexts::CalConstant, "12.6 or so").CalConstant, 13);
    EXPECT_EQ(given.With(&RunFileTexts::CalConstant, "none").CalConstant, 0);
    EXPECT_EQ(given.With(&RunFileTexts::Length, "-2147483648").RunLength, -2147483648);
    EXPECT_EQ(given.With(&RunFileTexts::NumberOfSections, "32767").NumberOfSections, 32767);

    using T = RunFileTexts;
    using Case = std::tuple<std::string T::*, const char*, const char*, ErrorNumber>;
    using enum ErrorNumber;
    for (const auto& [field, text, name, error] :
         {Case{&T::CountNumber, "x", "CountNumber", TypeMismatch},
          Case{&T::CountNumber, "32767.5", "CountNumber", Overflow}, Case{&T::RunNumber, "", "RunNumber", TypeMismatch},
          Case{&T::RunNumber, "-32769", "RunNumber", Overflow}, Case{&T::CalConstant, "40000", "CalConstant", Overflow},
          Case{&T::Length, "1 mile", "Length", TypeMismatch}, Case{&T::Length, "2147483648", "Length", Overflow},
          Case{&T::Duration, "5 s", "Duration", TypeMismatch}, Case{&T::Duration, "32768", "Duration", Overflow},
          Case{&T::Duration, "-1", "Duration", SubscriptOutOfRange},
          Case{&T::NumberOfSections, "two", "NumberOfSections", TypeMismatch}}) {
        try {
            Changed().With(field, text);
            ADD_FAILURE() << name << ' ' << text;
        } catch (const RunTimeError& thrown) {
            EXPECT_EQ(thrown.Number(), error) << name << ' ' << text;
            EXPECT_TRUE(thrown.Place().starts_with(std::string(name) + ": \"" + text + "\"\n"));
        }
    }
    // The first wrong text is the error.
    given.Texts.RunTime = "noon";
    EXPECT_ERROR(TypeMismatch, given.With(&T::CountNumber, "99999"));
    EXPECT_ERROR(Overflow, given.With(&T::RunTime, "12:00"));
}

TEST(RunFileTexts, FlagsNeedTheirExactText) {
    Changed given;
    for (const char* text : {"before", "After", "", " Before"}) {
        const RunHeader header = given.With(&RunFileTexts::BeforeOrAfter, text);
        EXPECT_EQ(std::tuple(header.Before, header.After), std::tuple(0, -1)) << text;
    }
    RunHeader header = given.With(&RunFileTexts::RunType, "primary");
    EXPECT_EQ(std::tuple(header.HeaderWord1, header.HeaderWord2), std::tuple(0, -1));
    given.Run.Header.HeaderWord1 = 0;
    header = given.With(&RunFileTexts::RunType, "Primary");
    EXPECT_EQ(std::tuple(header.HeaderWord1, header.HeaderWord2), std::tuple(-1, 0));
}

TEST(RunFileTexts, DurationIsTheNumberOfSamples) {
    Changed given;
    given.Run.RunSamples[2].DelayNumber = 4;
    for (const auto& [text, count] : {std::pair{"2", 2}, {"0", 0}, {"32767", 32767}}) {
        given.Texts.Duration = text;
        const RunRecord run = WithTexts(given.Run, given.Texts);
        EXPECT_EQ(std::tuple(run.Header.Duration, run.Header.SampleCount), std::tuple(count, count));
        EXPECT_EQ(std::tuple(run.SampleValues.LastIndex(), run.RunSamples.LastIndex()), std::tuple(count, count));
        EXPECT_EQ(run.Header.RunLength, 105) << "nothing is derived anew";
        if (count < 2) continue;
        EXPECT_EQ(std::tuple(run.SampleValues[2], run.RunSamples[2].DelayNumber), std::tuple(20, 4));
    }
    EXPECT_EQ(WithTexts(given.Run, given.Texts).SampleValues[32767], 0);
}

TEST(RunFileTexts, TextsAreCutAtTheirWidths) {
    Changed given;
    const std::string longText = "é" + std::string(200, 'x');
    given.Texts.RunName = given.Texts.SiteCode = given.Texts.Notes = longText;
    given.Texts.ButtonLabel[16] = given.Texts.SectionName[15] = longText;
    given.Texts.SectionDist[1] = "1";
    const RunHeader header = given.Header();
    for (const std::string& text : {header.RunName, header.SiteCode, header.ButtonLabel[16], header.SectionName[15]})
        EXPECT_EQ(text, "é" + std::string(31, 'x'));
    EXPECT_EQ(header.Notes, "é" + std::string(127, 'x'));
    EXPECT_EQ(header.SectionDist, given.Run.Header.SectionDist);
}

}  // namespace
}  // namespace vantor
