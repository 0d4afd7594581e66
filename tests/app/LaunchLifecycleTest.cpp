#include "app/LaunchLifecycle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

using testing::ElementsAre;

/// What the launch event says at this moment.
std::string eventNow()
{
    const auto event = currentLaunchEvent();
    if (!event) {
        return "none";
    }
    if (event->eventId != fourCharacterCode("oapp")) {
        return "another";
    }
    return event->propertyData == fourCharacterCode("lgit") ? "oapp lgit" : "oapp";
}

/// Records each lifecycle event with the launch event at that moment.
class LaunchEventRecorder final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { notes.push_back("will: " + eventNow()); }
    void applicationDidFinishLaunching() override { notes.push_back("did: " + eventNow()); }
    void applicationWillBecomeActive() override { notes.push_back("active: " + eventNow()); }

    std::vector<std::string> notes;
};

TEST(LaunchLifecycle, KeepsLaunchEventUntilLaunchingHasFinished)
{
    for (const bool atLogin : {false, true}) {
        const std::string event = atLogin ? "oapp lgit" : "oapp";
        LaunchEventRecorder delegate;
        LaunchLifecycle lifecycle(
            delegate, atLogin, [&] { delegate.notes.push_back("launched: " + eventNow()); });
        EXPECT_EQ(eventNow(), event);
        lifecycle.applicationWillFinishLaunching();
        lifecycle.applicationWillBecomeActive();
        lifecycle.applicationDidFinishLaunching();
        lifecycle.applicationWillBecomeActive();
        EXPECT_THAT(
            delegate.notes,
            ElementsAre(
                "will: " + event,
                "active: " + event,
                "did: " + event,
                "launched: none",
                "active: none"));
    }
}

TEST(LaunchLifecycle, EndsLaunchEventWhenDestroyed)
{
    LaunchEventRecorder delegate;
    {
        LaunchLifecycle lifecycle(delegate, true);
        EXPECT_EQ(eventNow(), "oapp lgit");
        // Without a callback.
        lifecycle.applicationDidFinishLaunching();
    }
    {
        const LaunchLifecycle lifecycle(delegate, true);
        EXPECT_EQ(eventNow(), "oapp lgit");
    }
    EXPECT_EQ(eventNow(), "none");
}

} // namespace
} // namespace orlimo
