#include "core/Numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/Date.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

TEST(Numeric, RoundsHalvesToEven) {
    const std::pair<double, int> cases[] = {
        {0.5, 0},   {1.5, 2},    {2.5, 2},    {-0.5, 0},       {-1.5, -2},
        {-2.5, -2}, {2.4999, 2}, {-0.51, -1}, {12.500001, 13}, {0.49999999999999994, 0}};
    for (const auto& [value, rounded] : cases) {
        EXPECT_EQ(Round16(value), rounded) << value;
        EXPECT_EQ(Round32(value), rounded) << value;
    }
}

TEST(Numeric, RefusesWhatDoesNotFit) {
    EXPECT_EQ(Round16(32767.4), 32767);
    EXPECT_EQ(Round16(-32768.5), -32768);
    EXPECT_EQ(Round32(2147483647.4), 2147483647);
    EXPECT_ERROR(Overflow, Round16(32767.5));
    EXPECT_ERROR(Overflow, Round16(-32768.6));
    EXPECT_ERROR(Overflow, Round32(2147483647.5));
    EXPECT_ERROR(Overflow, Round32(std::nan("")));
    EXPECT_ERROR(Overflow, Round32(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(Add32(2147483646, 1), 2147483647);
    EXPECT_ERROR(Overflow, Add32(2147483647, 1));
    EXPECT_EQ(Subtract32(-2147483647, 1), std::numeric_limits<std::int32_t>::min());
    EXPECT_ERROR(Overflow, Subtract32(-2147483647, 2));
    EXPECT_EQ(To16(-32768), -32768);
    EXPECT_ERROR(Overflow, Add16(32767, 1));
}

TEST(Numeric, WritesNumbersWithTheirSignPosition) {
    EXPECT_EQ(Str(12) + Str(0) + Str(-7), " 12 0-7");
    EXPECT_EQ(ZeroPadded(7, 3) + " " + ZeroPadded(1234, 3), "007 1234");
}

TEST(Numeric, ReadsLeadingNumbers) {
    const std::pair<const char*, double> cases[] = {
        {"012", 12}, {"  7 x", 7}, {"-3", -3}, {"+4", 4},  {"12.6ab", 12.6}, {"", 0},    {"abc", 0},
        {"-", 0},    {".5", 0.5},  {"inf", 0}, {"nan", 0}, {"1E3", 1000},    {"1 2", 1}, {"+-4", 0}};
    for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << text;
    EXPECT_ERROR(Overflow, Val("1E999"));
}

TEST(Numeric, ReadsWholeNumbersFromWholeTexts) {
    EXPECT_EQ(IntegerOfText(" -12 "), -12);
    EXPECT_EQ(IntegerOfText("12.5"), 12);
    EXPECT_ERROR(TypeMismatch, IntegerOfText(""));
    EXPECT_ERROR(TypeMismatch, IntegerOfText("12 s"));
    EXPECT_ERROR(Overflow, IntegerOfText("2147483648"));
}

TEST(Numeric, FormatsRatiosWithoutForcedZeros) {
    const std::pair<double, const char*> cases[] = {
        {2.456, "2.46"}, {0.5, ".5"},    {3, "3."},       {0, "."},          {0.125, ".13"},
        {0.375, ".38"},  {-2.5, "-2.5"}, {2.675, "2.68"}, {0.004, "."},      {0.005, ".01"},
        {9.999, "10."},  {0.999, "1."},  {-0.001, "."},   {99.994, "99.99"}, {10.05, "10.05"},
    };
    for (const auto& [value, text] : cases) EXPECT_EQ(FormatRatio(value), text) << value;
    EXPECT_EQ(FormatRatio(123456.785), "123456.79");
    EXPECT_EQ(FormatRatio(1e15), "1000000000000000.");
}

TEST(Date, CountsDaysFrom30December1899) {
    // 14 March 2008 is day 39521, 1 January 1900 day 2 of the spreadsheet calendar without its leap day.
    const std::tuple<int, int, int, double> cases[] = {
        {2008, 3, 14, 39521}, {1899, 12, 30, 0}, {1900, 1, 1, 2}, {2000, 2, 29, 36585}};
    for (const auto& [year, month, day, days] : cases) EXPECT_EQ(DateOf(year, month, day).Days, days);
    EXPECT_EQ(TimeOf(6, 0).Days, 0.25);
    EXPECT_EQ(TimeOf(0, 0, 27).Days, 0.0003125);
}

TEST(Date, ShowsDatesAndTimes) {
    const Date moment{39521 + 8.0 / 24 + 5.0 / 1440};
    EXPECT_EQ(ShortDate(moment), "03/14/08");
    EXPECT_EQ(DashedDate(moment), "03-14-08");
    EXPECT_EQ(ShortTime(moment), "08:05");
    EXPECT_EQ(IsoDateTime(moment), "2008-03-14T08:05:00");
    EXPECT_EQ(IsoDateTime({39521.9999999}), "2008-03-15T00:00:00") << "rounds up over midnight";
    EXPECT_EQ(IsoDateTime({-1.25}), "1899-12-29T06:00:00") << "before day 0 the fraction counts forward";
    EXPECT_EQ(IsoDateTime({-657434}), "0100-01-01T00:00:00") << "the first day that is stored";
    EXPECT_EQ(IsoDateTime({-657435}), "");
    EXPECT_EQ(IsoDateTime({2958465}), "9999-12-31T00:00:00") << "the last one";
    EXPECT_EQ(ShortDate({2958466}), "");
    EXPECT_EQ(IsoDateTime({std::nan("")}), "");
}

TEST(Date, RefusesDaysAndTimesThatDoNotExist) {
    for (const auto& day : {std::tuple{2007, 2, 29}, {2008, 13, 1}, {2008, 0, 1}, {2008, 4, 31}})
        EXPECT_ERROR(TypeMismatch, std::apply(DateOf, day));
    EXPECT_ERROR(TypeMismatch, TimeOf(24, 0));
    EXPECT_ERROR(TypeMismatch, TimeOf(8, 60));
}

TEST(Date, ReadsTwoDigitYears) {
    for (const auto& [year, full] : {std::pair{0, 2000}, {29, 2029}, {30, 1930}, {99, 1999}})
        EXPECT_EQ(FullYear(year), full);
}

TEST(Date, IsReadInItsUsualForms) {
    using Case = std::pair<const char*, const char*>;
    for (const auto& [text, iso] :
         {Case{"03/14/08", "2008-03-14"}, Case{" 3-4-1998 ", "1998-03-04"}, Case{"02/29/00", "2000-02-29"},
          Case{"12/31/29", "2029-12-31"}, Case{"01/01/30", "1930-01-01"}, Case{"02/29/01", ""}, Case{"13/01/08", ""},
          Case{"3/11", ""}, Case{"3/11/08/1", ""}, Case{"3//08", ""}, Case{"/3/11/08", ""}, Case{"today", ""},
          Case{"1/1/99999", ""}, Case{"1/1/99999999999999999999", ""}, Case{"", ""}}) {
        const auto date = DayOfText(text);
        EXPECT_EQ(date ? IsoDateTime(*date).substr(0, 10) : "", iso) << text;
    }
    for (const auto& [text, iso] :
         {Case{"07:45", "07:45:00"}, Case{"7:6", "07:06:00"}, Case{"23:59:59", "23:59:59"}, Case{"24:00", ""},
          Case{"7", ""}, Case{"7:60", ""}, Case{"7:05 pm", ""}, Case{"7:05:00:00", ""}, Case{"", ""}}) {
        const auto time = ClockOfText(text);
        EXPECT_EQ(time ? IsoDateTime(*time).substr(11) : "", iso) << text;
    }
    EXPECT_TRUE(!DayOfText("3-4-98", "/") && DayOfText("3/4/98", "/"));
    EXPECT_EQ(WeekdayName(DateOf(2008, 3, 14)) + WeekdayName(DateOf(1899, 12, 25)), "FridayMonday");
}

TEST(Numeric, ReadsOnlyTextsThatAreNumbersAsAWhole) {
    constexpr double None = -99;
    using Case = std::tuple<const char*, double, double>;
    for (const auto& [text, plain, exponent] :
         {Case{" 12.5 ", 12.5, 12.5}, Case{".5", .5, .5}, Case{"-3", -3, -3}, Case{"+3.", 3, 3}, Case{"1e2", None, 100},
          Case{"", None, None}, Case{".", None, None}, Case{"1.2.3", None, None}, Case{"inf", None, None},
          Case{"12 s", None, None}, Case{"1e999", None, None}}) {
        EXPECT_EQ(NumberOfText(text).value_or(None), plain) << text;
        EXPECT_EQ(NumberOfText(text, true).value_or(None), exponent) << text;
    }
    using Count = std::pair<const char*, int>;
    for (const auto& [text, count] : {Count{" 007 ", 7}, Count{"10", 10}, Count{"11", -1}, Count{"-1", -1},
                                      Count{"1.0", -1}, Count{"", -1}, Count{"99999999999", -1}})
        EXPECT_EQ(CountOfText(text, 10).value_or(-1), count) << text;
}

TEST(Numeric, ShowsTenthsWithHalvesToEven) {
    using Case = std::pair<double, const char*>;
    for (const auto& [value, text] : {Case{0.25, "0.2"}, Case{-0.75, "-0.8"}, Case{-0.01, "0.0"}, Case{12, "12.0"}})
        EXPECT_EQ(OneDecimal(value), text);
}

}  // namespace
}  // namespace vantor
