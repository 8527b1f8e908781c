#include "platform/SystemClock.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vantor {
namespace {

TEST(SystemClockTest, ZonesAreThoseOfTheSystemWithTheirSummers) {
    const SystemClock clock;
    const auto names = clock.ZoneNames();
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_TRUE(std::ranges::count(names, "America/Detroit") == 1 && clock.ZoneOffset(clock.OwnZone(), 0));
    // Summer time began in Germany on 28 March 2021, 01:00 UTC.
    EXPECT_EQ(clock.ZoneOffset("Europe/Berlin", 1616893199), 3600);
    EXPECT_EQ(clock.ZoneOffset("Europe/Berlin", 1616893200), 7200);
    EXPECT_EQ(clock.ZoneOffset("America/St_Johns", 1735689600), -12600);
    EXPECT_EQ(clock.ZoneOffset("Nowhere/Town", 0), std::nullopt);
}

}  // namespace
}  // namespace vantor
