#include "core/Numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

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
    EXPECT_EQ(Str(12), " 12");
    EXPECT_EQ(Str(0), " 0");
    EXPECT_EQ(Str(-7), "-7");
    EXPECT_EQ(ZeroPadded(7, 3), "007");
    EXPECT_EQ(ZeroPadded(1234, 3), "1234");
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
    const std::pair<double, const char*> cases[] = {{2.456, "2.46"},
                                                    {0.5, ".5"},
                                                    {3, "3."},
                                                    {0, "."},
                                                    {0.125, ".13"},
                                                    {0.375, ".38"},
                                                    {-2.5, "-2.5"},
                                                    {107.0 / 40, "2.68"},
                                                    {0.004, "."},
                                                    {0.005, ".01"},
                                                    {9.999, "10."},
                                                    {0.999, "1."},
                                                    {-0.001, "."},
                                                    {123456.785, "123456.79"},
                                                    {1e15, "1000000000000000."},
                                                    {99.994, "99.99"},
                                                    {10.05, "10.05"}};
    for (const auto& [value, text] : cases) EXPECT_EQ(FormatRatio(value), text) << value;
}

}  // namespace
}  // namespace vantor
