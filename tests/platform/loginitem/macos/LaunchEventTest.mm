#include "platform/loginitem/LaunchEvent.h"

#include "tests/platform/macos/fakes/FakeObject.h"

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

TEST(LaunchEvent, HasIdAndPropertyDataOfSystemsCurrentEvent)
{
    FakeObject& event = FakeObject::named("event");
    FakeObject& parameter = FakeObject::named("parameter");
    // The argument of a launch at login counts for nothing here.
    const LaunchEventHandling handling(true);
    EXPECT_FALSE(currentLaunchEvent().has_value());
    event.returns<AEEventID>("eventID", 0xFFFEFDFCU);
    FakeObject::named("NSAppleEventManager").returns("currentAppleEvent", event.object());
    EXPECT_EQ(currentLaunchEvent()->eventId, 0xFFFEFDFCU);
    EXPECT_FALSE(currentLaunchEvent()->propertyData.has_value());
    event.responds("paramDescriptorForKeyword:", [&](NSInvocation* invocation) {
        const auto keyword = FakeObject::argument<AEKeyword>(invocation, 0);
        EXPECT_EQ(keyword, fourCharacterCode("prdt"));
        id found = parameter.object();
        [invocation setReturnValue:&found];
    });
    for (const FourCharacterCode value : {fourCharacterCode("lgit"), 0xFFFEFDFCU, 0U}) {
        parameter.returns<OSType>("enumCodeValue", value);
        EXPECT_EQ(currentLaunchEvent()->propertyData, value);
    }
    FakeObject::resetAll();
}

} // namespace
} // namespace orlimo
