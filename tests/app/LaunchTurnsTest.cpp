#include "app/LaunchTurns.h"

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

/// Notes each turn with the launch event of its moment.
class NotingDelegate final : public ApplicationDelegate
{
public:
    void applicationWillFinishLaunching() override { notes.push_back("will: " + eventNow()); }
    void applicationDidFinishLaunching() override { notes.push_back("did: " + eventNow()); }
    void applicationWillBecomeActive() override { notes.push_back("active: " + eventNow()); }

    std::vector<std::string> notes;
};

class LaunchTurnsTest : public testing::Test
{
protected:
    NotingDelegate delegate;
};

TEST_F(LaunchTurnsTest, KeepTheLaunchEventUntilLaunchingHasFinished)
{
    LaunchTurns turns(delegate, false);
    EXPECT_EQ(eventNow(), "oapp");
    turns.applicationWillFinishLaunching();
    turns.applicationDidFinishLaunching();
    EXPECT_EQ(eventNow(), "none");
    turns.applicationWillBecomeActive();
    EXPECT_THAT(delegate.notes, ElementsAre("will: oapp", "did: oapp", "active: none"));
}

TEST_F(LaunchTurnsTest, HaveTheWorkDoneThatWaitsForTheLaunch)
{
    LaunchTurns turns(delegate, false, [this] { delegate.notes.push_back("work: " + eventNow()); });
    turns.applicationWillFinishLaunching();
    turns.applicationDidFinishLaunching();
    turns.applicationWillBecomeActive();
    EXPECT_THAT(
        delegate.notes, ElementsAre("will: oapp", "did: oapp", "work: none", "active: none"));
}

TEST_F(LaunchTurnsTest, SayThatALoginStartedTheProgram)
{
    LaunchTurns turns(delegate, true);
    turns.applicationWillFinishLaunching();
    turns.applicationDidFinishLaunching();
    EXPECT_THAT(delegate.notes, ElementsAre("will: oapp lgit", "did: oapp lgit"));
    EXPECT_EQ(eventNow(), "none");
}

TEST_F(LaunchTurnsTest, HandEachActivationOn)
{
    LaunchTurns turns(delegate, false);
    turns.applicationWillBecomeActive();
    turns.applicationWillBecomeActive();
    EXPECT_THAT(delegate.notes, ElementsAre("active: oapp", "active: oapp"));
}

TEST_F(LaunchTurnsTest, EndTheLaunchEventWithThemselves)
{
    EXPECT_EQ(eventNow(), "none");
    {
        const LaunchTurns turns(delegate, true);
        EXPECT_EQ(eventNow(), "oapp lgit");
    }
    EXPECT_EQ(eventNow(), "none");
}

} // namespace
} // namespace orlimo
