#include "statistics/DelayEvents.h"

#include <gmock/gmock.h>

#include "Drives.h"
#include "core/Units.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

RunEvents EventsOf(const Drive& drive) {
    return FindDelayEvents(RunOfValues(drive.Values()), MphSettings().SpeedFactor);
}

/// Where braking begins and the speed is regained, and the delay by v/2d + standstill + v/2a.
TEST(DelayEvents, AStopLiesBetweenBrakingAndTheSpeedBefore) {
    for (const int standing : {5, 20, 60}) {
        Drive drive;
        const int brakes = drive.Cruise(40).Seconds();
        drive.Stop(standing).Node();
        const int goesOn = drive.Seconds();
        const RunEvents found = EventsOf(drive.Cruise(40));
        ASSERT_EQ(found.Events.size(), 1U);
        const DelayEvent& event = found.Events.front();
        EXPECT_NEAR(event.Onset, brakes, 2);
        EXPECT_NEAR(event.End, goesOn, 3);
        const double delay = event.End - event.Onset - (event.EndDistance - event.OnsetDistance) / 60.0;
        EXPECT_NEAR(delay, 60 / (2 * 8.0) + standing + 60 / (2 * 5.0), 1.2) << standing;
        EXPECT_NEAR(event.OnsetSpeed, 60 / FeetPerSecondOfMph, 1.6);
        EXPECT_EQ(event.OnsetDistance, event.Onset * 60) << "distances are those at the ends of the samples";
        EXPECT_THAT(found.EventOfNode, testing::ElementsAre(0U)) << "the node of the standstill";
    }
}

TEST(DelayEvents, MovingUpIsOneEventAndTwoSignalsAreTwo) {
    const auto count = [](const Drive& drive) { return EventsOf(drive).Events.size(); };
    EXPECT_EQ(count(Drive().Cruise(30).Stop(10, 25).Stop(15, 22).Stop(5).Cruise(30)), 1U) << "a queue";
    EXPECT_EQ(count(Drive().Cruise(30).Stop(10, 50).Cruise(9, 50).Stop(15).Cruise(30)), 2U) << "two signals";
    EXPECT_EQ(count(Drive().Cruise(30).To(50, 4).To(60, 4).Cruise(30)), 0U) << "less than 10 mph";
    EXPECT_EQ(count(Drive().Cruise(9, 0).To(60, 4).Cruise(30).To(0, 8)), 0U) << "cut by the run's start and end";
    for (const Drive& brief : {Drive(), Drive().Cruise(1), Drive().Cruise(4, 0)}) EXPECT_EQ(count(brief), 0U);
}

TEST(DelayEvents, ANodeThatIsPassedFreelyHasNone) {
    const RunEvents found = EventsOf(
        Drive().Cruise(30).Node().Cruise(9).Stop(9).Cruise(30).To(0, 8).Cruise(9, 0).Node().To(60, 5).Cruise(9));
    EXPECT_EQ(found.Events.size(), 2U);
    EXPECT_THAT(found.EventOfNode, testing::ElementsAre(std::nullopt, 1U));
    EXPECT_EQ(found.NodeDistances.front(), 30 * 60);
}

}  // namespace
}  // namespace vantor
