#include "platform/loginitem/LaunchEvent.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(LaunchEvent, IsCurrentOnlyWhileItIsHandled)
{
    EXPECT_FALSE(currentLaunchEvent().has_value());
    {
        const LaunchEventHandling handling(false);
        EXPECT_TRUE(currentLaunchEvent().has_value());
        EXPECT_TRUE(currentLaunchEvent().has_value()) << "asking does not end it";
    }
    EXPECT_FALSE(currentLaunchEvent().has_value());
    {
        const LaunchEventHandling handling(true);
        EXPECT_TRUE(currentLaunchEvent().has_value());
    }
    EXPECT_FALSE(currentLaunchEvent().has_value());
}

TEST(LaunchEvent, AtLoginSaysSoInItsPropertyData)
{
    const LaunchEventHandling handling(true);
    const auto event = currentLaunchEvent();
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->eventId, fourCharacterCode("oapp"));
    EXPECT_EQ(event->propertyData, fourCharacterCode("lgit"));
}

TEST(LaunchEvent, ByTheUserHasNoPropertyData)
{
    const LaunchEventHandling handling(false);
    const auto event = currentLaunchEvent();
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->eventId, fourCharacterCode("oapp"));
    EXPECT_FALSE(event->propertyData.has_value());
}

} // namespace
} // namespace orlimo
