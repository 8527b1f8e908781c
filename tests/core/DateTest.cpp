#include "core/Date.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

TEST(Date, CountsDaysFrom30December1899) {
    // 14 March 2008 is day 39521, 1 January 1900 day 2 of the spreadsheet calendar without its leap day.
    EXPECT_EQ(DateOf(2008, 3, 14).Days, 39521);
    EXPECT_EQ(DateOf(1899, 12, 30).Days, 0);
    EXPECT_EQ(DateOf(1900, 1, 1).Days, 2);
    EXPECT_EQ(DateOf(2000, 2, 29).Days, 36585);
    EXPECT_EQ(TimeOf(6, 0).Days, 0.25);
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
    EXPECT_ERROR(TypeMismatch, DateOf(2007, 2, 29));
    EXPECT_ERROR(TypeMismatch, DateOf(2008, 13, 1));
    EXPECT_ERROR(TypeMismatch, DateOf(2008, 0, 1));
    EXPECT_ERROR(TypeMismatch, DateOf(2008, 4, 31));
    EXPECT_ERROR(TypeMismatch, TimeOf(24, 0));
    EXPECT_ERROR(TypeMismatch, TimeOf(8, 60));
}

TEST(Date, ReadsTwoDigitYears) {
    EXPECT_EQ(FullYear(0), 2000);
    EXPECT_EQ(FullYear(29), 2029);
    EXPECT_EQ(FullYear(30), 1930);
    EXPECT_EQ(FullYear(99), 1999);
}

}  // namespace
}  // namespace vantor
