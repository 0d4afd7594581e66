#include "tests/app/StoredPreferences.h"
#include "tests/program/ProgramSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::ElementsAreArray;

/// A program on its own store, its throttle open.
class MessageFlow : public testing::Test
{
protected:
    void SetUp() override
    {
        session.start();
        session.awaitOpenThrottle();
    }

    ProgramSession session;
};

TEST_F(MessageFlow, BodyBecomesACode)
{
    const std::string text = std::string(300, 'x') + " 59302";
    session.deliver("body " + text);
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "first 129",
            text,
            "Found numbers: [\"59302\"]",
            "file changed!! at message: code? 59302"));
}

TEST_F(MessageFlow, BurstGivesOneReactionAndIsCaughtUpWithLater)
{
    const auto start = steady_clock::now();
    session.deliver("text Code 111111");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Code 111111", "111111")));
    session.deliver("text Code 222222");
    session.deliver("text Code 333333");
    if (steady_clock::now() - start > 1500ms) {
        GTEST_SKIP() << "the machine stalled: the burst was none";
    }
    session.awaitOpenThrottle();

    // No trailing reaction came in between, and the messages of the burst are found now.
    session.deliver("text Lunch at noon?");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "Lunch at noon?",
            "Code 333333",
            "Found numbers: [\"333333\"]",
            "file changed!! at message: code? 333333"));
}

TEST_F(MessageFlow, EachPreferenceTakesEffectAtTheNextMessage)
{
    storePreferences(session, {{"capturingEnabled", false}, {"fourDigitInclude", true}});
    session.deliver("text Code 111111");
    ProgramSession::waitForThrottle();

    storePreferences(session, {{"capturingEnabled", true}, {"fourDigitInclude", false}});
    session.deliver("text PIN 4321, code 654321");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("PIN 4321, code 654321", "654321")));
}

} // namespace
} // namespace orlimo
