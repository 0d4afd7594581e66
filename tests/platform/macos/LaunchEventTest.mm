#include "platform/LaunchEvent.h"

#include "tests/platform/macos/standins/AppleEvents.h"
#include "tests/support/FatalStopExpectation.h"

#include <gtest/gtest.h>

#include <thread>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

TEST(LaunchEvent, IsNoneWhereNoEventIsHandled)
{
    EXPECT_FALSE(currentLaunchEvent().has_value());
}

TEST(LaunchEvent, HasTheEventsOwnIdWhateverItIs)
{
    @autoreleasepool {
        for (const AEEventID eventId :
             {AEEventID{kAEOpenApplication},
              AEEventID{kAEReopenApplication},
              AEEventID{kAEOpenDocuments},
              AEEventID{0xFFFEFDFC}})
        {
            const CurrentAppleEvent handling(appleEvent(kCoreEventClass, eventId));
            const auto event = currentLaunchEvent();
            ASSERT_TRUE(event.has_value());
            EXPECT_EQ(event->eventId, eventId);
            EXPECT_FALSE(event->propertyData.has_value());
        }
    }
    EXPECT_FALSE(currentLaunchEvent().has_value());
}

/// The event of a launch with a parameter.
class LaunchEventWithParameter : public testing::Test
{
protected:
    [[nodiscard]] static std::optional<FourCharacterCode>
    propertyDataOf(NSAppleEventDescriptor* parameter, AEKeyword keyword)
    {
        NSAppleEventDescriptor* const event = appleEvent(kCoreEventClass, kAEOpenApplication);
        [event setParamDescriptor:parameter forKeyword:keyword];
        const CurrentAppleEvent handling(event);
        const auto launch = currentLaunchEvent();
        EXPECT_TRUE(launch.has_value());
        EXPECT_EQ(launch->eventId, fourCharacterCode("oapp"));
        return launch->propertyData;
    }
};

TEST_F(LaunchEventWithParameter, TellsOfALogin)
{
    @autoreleasepool {
        NSAppleEventDescriptor* const login =
            [NSAppleEventDescriptor descriptorWithEnumCode:keyAELaunchedAsLogInItem];
        EXPECT_EQ(propertyDataOf(login, keyAEPropData), fourCharacterCode("lgit"));
    }
}

TEST_F(LaunchEventWithParameter, KeepsAnyOtherValue)
{
    @autoreleasepool {
        for (const OSType value : {OSType{keyAELaunchedAsServiceItem}, OSType{0xFFFEFDFC}}) {
            EXPECT_EQ(
                propertyDataOf(
                    [NSAppleEventDescriptor descriptorWithEnumCode:value], keyAEPropData),
                value);
        }
    }
}

TEST_F(LaunchEventWithParameter, IsZeroForAnotherKindOfValue)
{
    @autoreleasepool {
        EXPECT_EQ(
            propertyDataOf([NSAppleEventDescriptor descriptorWithString:@"lgit"], keyAEPropData),
            0U);
    }
}

TEST_F(LaunchEventWithParameter, LooksAtNoOtherParameter)
{
    @autoreleasepool {
        NSAppleEventDescriptor* const login =
            [NSAppleEventDescriptor descriptorWithEnumCode:keyAELaunchedAsLogInItem];
        EXPECT_FALSE(propertyDataOf(login, fourCharacterCode("prdT")).has_value());
    }
}

TEST(LaunchEventHandling, LeavesTheEventToTheSystem)
{
    {
        const LaunchEventHandling handling(true);
        EXPECT_FALSE(currentLaunchEvent().has_value()) << "the argument is none of its business";
    }
    @autoreleasepool {
        const CurrentAppleEvent current(appleEvent(kCoreEventClass, kAEOpenApplication));
        {
            const LaunchEventHandling handling(true);
            EXPECT_FALSE(currentLaunchEvent()->propertyData.has_value());
        }
        EXPECT_TRUE(currentLaunchEvent().has_value());
    }
}

TEST(LaunchEvent, IsTheMainThreadsOwn)
{
    expectFatalStop(
        [&] { std::thread([] { (void)currentLaunchEvent(); }).join(); },
        {},
        {.file = "platform/macos/LaunchEvent.mm", .reason = "called off the main thread"});
}

} // namespace
} // namespace orlimo
