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
using testing::StartsWith;

/// The full-width form of ASCII digits.
std::string fullWidth(const std::string& digits)
{
    std::string wide;
    for (const char digit : digits) {
        wide += "\xEF\xBC";
        wide += static_cast<char>(0x90 + (digit - '0'));
    }
    return wide;
}

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

TEST_F(MessageFlow, TextBecomesACode)
{
    session.deliver("text Your code is 482913.");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Your code is 482913.", "482913")));
}

TEST_F(MessageFlow, BodyBecomesACode)
{
    session.deliver("body Your code is 482913.");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "first not 129 20",
            "Your code is 482913.",
            "Found numbers: [\"482913\"]",
            "file changed!! at message: code? 482913"));
}

TEST_F(MessageFlow, LongBodyBecomesACode)
{
    const std::string words = std::string(300, 'x') + " 59302";
    session.deliver("body " + words);
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "first 129",
            words,
            "Found numbers: [\"59302\"]",
            "file changed!! at message: code? 59302"));
}

TEST_F(MessageFlow, DigitsOfAnotherScriptBecomeACode)
{
    const std::string code = fullWidth("482913");
    session.deliver("text Code " + code);
    EXPECT_THAT(
        session.readReaction(), ElementsAreArray(ProgramSession::reactionTo("Code " + code, code)));
}

TEST_F(MessageFlow, EveryNumberIsLoggedAndTheFirstIsTaken)
{
    session.deliver("text PIN 4321, code 654321");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "PIN 4321, code 654321",
            "Found numbers: [\"4321\", \"654321\"]",
            "file changed!! at message: code? 4321"));
}

TEST_F(MessageFlow, MessageWithoutACodeLeavesTheWordToTheOneBefore)
{
    session.deliver("text Code 482913");
    EXPECT_EQ(session.readReaction().size(), 4U);
    session.awaitOpenThrottle();

    session.deliver("text Lunch at noon?");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "Lunch at noon?",
            "Code 482913",
            "Found numbers: [\"482913\"]",
            "file changed!! at message: code? 482913"));
}

TEST_F(MessageFlow, ImmutableBodyIsPassedOver)
{
    session.deliver("text Code 482913");
    EXPECT_EQ(session.readReaction().size(), 4U);
    session.awaitOpenThrottle();

    session.deliver("immutable Code 777777");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "first not 129 1",
            "Code 482913",
            "Found numbers: [\"482913\"]",
            "file changed!! at message: code? 482913"));
}

TEST_F(MessageFlow, OnlyTheTenNewestMessagesAreRead)
{
    ASSERT_EQ(session.writer().ask("begin"), "ok");
    EXPECT_THAT(session.writer().ask("text Code 482913"), StartsWith("added"));
    for (int number = 1; number <= 10; ++number) {
        EXPECT_THAT(
            session.writer().ask("text plain " + std::to_string(number)), StartsWith("added"));
    }
    ASSERT_EQ(session.writer().ask("commit"), "committed");
    ASSERT_TRUE(session.program().awaitLine("plain 1"));
    ProgramSession::waitForThrottle();

    session.deliver("text Code 59302");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Code 59302", "59302")));
    EXPECT_THAT(session.program().output(), testing::Not(testing::HasSubstr("482913")));
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

TEST(ClosedThrottle, DropsWhatComesRightAfterTheStart)
{
    ProgramSession session;
    const auto start = steady_clock::now();
    session.start();
    session.deliver("text Code 111111");
    if (steady_clock::now() - start > 1500ms) {
        GTEST_SKIP() << "the machine stalled: the throttle may have opened";
    }
    session.awaitOpenThrottle();

    session.deliver("text Lunch at noon?");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            "Lunch at noon?",
            "Code 111111",
            "Found numbers: [\"111111\"]",
            "file changed!! at message: code? 111111"));
}

TEST_F(MessageFlow, AnyGrowthCopiesTheSameCodeAgain)
{
    session.deliver("text Code 482913");
    EXPECT_EQ(session.readReaction().size(), 4U);
    session.awaitOpenThrottle();

    ASSERT_EQ(
        session.writer().ask("sql INSERT INTO handle (id, service) VALUES ('+1', 'SMS')"), "ok");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Code 482913", "482913")));
}

TEST_F(MessageFlow, CapturingSwitchedOffIgnoresTheChangeAltogether)
{
    storePreferences(session, {{"capturingEnabled", false}, {"fourDigitInclude", true}});
    session.deliver("text Code 111111");
    ProgramSession::waitForThrottle();

    storePreferences(session, {{"capturingEnabled", true}, {"fourDigitInclude", true}});
    session.deliver("text Code 222222");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Code 222222", "222222")));
}

TEST_F(MessageFlow, FourDigitsSwitchedOffTakesEffectAtTheNextMessage)
{
    session.deliver("text PIN 4321");
    EXPECT_EQ(session.readReaction().back(), "file changed!! at message: code? 4321");
    session.awaitOpenThrottle();

    storePreferences(session, {{"capturingEnabled", true}, {"fourDigitInclude", false}});
    session.deliver("text PIN 4321, code 654321");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("PIN 4321, code 654321", "654321")));
}

} // namespace
} // namespace orlimo
