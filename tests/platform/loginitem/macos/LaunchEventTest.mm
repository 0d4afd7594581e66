#include "platform/loginitem/LaunchEvent.h"

#include "tests/platform/macos/fakes/FakeObject.h"

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

/// While the system has the program handle an event.
class LaunchEventTest : public testing::Test
{
protected:
    ~LaunchEventTest() override { FakeObject::resetAll(); }

    FakeObject& manager = FakeObject::named("NSAppleEventManager");
    FakeObject& event = FakeObject::named("event");
    FakeObject& parameter = FakeObject::named("parameter");
};

TEST_F(LaunchEventTest, IsNoneWhereNoEventIsHandled)
{
    // By the system: the argument of a launch at login counts for nothing here.
    const LaunchEventHandling handling(true);
    EXPECT_FALSE(currentLaunchEvent().has_value());
}

TEST_F(LaunchEventTest, HasTheEventsIdAndTheEnumeratedValueOfItsPropertyData)
{
    event.returns<AEEventID>("eventID", 0xFFFEFDFCU);
    manager.returns("currentAppleEvent", event.object());
    EXPECT_EQ(currentLaunchEvent()->eventId, 0xFFFEFDFCU);
    EXPECT_FALSE(currentLaunchEvent()->propertyData.has_value());
    AEKeyword keyword = 0;
    event.responds("paramDescriptorForKeyword:", [&](NSInvocation* invocation) {
        keyword = FakeObject::argument<AEKeyword>(invocation, 0);
        id found = parameter.object();
        [invocation setReturnValue:&found];
    });
    for (const FourCharacterCode value : {fourCharacterCode("lgit"), 0xFFFEFDFCU, 0U}) {
        parameter.returns<OSType>("enumCodeValue", value);
        EXPECT_EQ(currentLaunchEvent()->propertyData, value);
    }
    EXPECT_EQ(keyword, fourCharacterCode("prdt"));
}

} // namespace
} // namespace orlimo
