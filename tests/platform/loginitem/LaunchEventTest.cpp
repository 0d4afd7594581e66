#include "platform/loginitem/LaunchEvent.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(LaunchEvent, IsCurrentOnlyDuringHandling)
{
    EXPECT_FALSE(currentLaunchEvent().has_value());
    for (const bool atLogin : {false, true}) {
        {
            const LaunchEventHandling handling(atLogin);
            const auto event = currentLaunchEvent();
            ASSERT_TRUE(event.has_value());
            EXPECT_EQ(event->eventId, fourCharacterCode("oapp"));
            EXPECT_EQ(
                event->propertyData,
                atLogin ? std::optional(fourCharacterCode("lgit")) : std::nullopt);
            EXPECT_TRUE(currentLaunchEvent().has_value()) << "reading does not end it";
        }
        EXPECT_FALSE(currentLaunchEvent().has_value());
    }
}

} // namespace
} // namespace orlimo
