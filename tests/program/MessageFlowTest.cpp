#include "tests/app/StoredPreferences.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/StoreIntegrity.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

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

TEST_F(MessageFlow, ReplacedLogIsNotWatched)
{
    const auto newLog = session.log().string() + "-new";
    writeFile(newLog, "a new log");
    std::filesystem::rename(newLog, session.log());
    appendToFile(session.log(), "that grows");
    runEventLoop(std::chrono::milliseconds(300));

    EXPECT_TRUE(session.program().isRunning());
    EXPECT_THAT(
        linesOf(session.program().output()), ElementsAreArray(ProgramSession::startUpLines()));
}

TEST_F(MessageFlow, StoreIsByteForByteTheSameAfterManyChecks)
{
    session.deliver("text Code 482913");
    EXPECT_EQ(session.readReaction().size(), 4U);
    const std::string store = contentOf(session.store());
    const std::string log = contentOf(session.log());

    // Growth that means nothing to SQLite, so that nobody but the program under test could write.
    std::string growth;
    for (int check = 0; check < 3; ++check) {
        session.awaitOpenThrottle();
        appendToFile(session.log(), "x");
        growth += "x";
        EXPECT_EQ(session.readReaction().size(), 4U);
    }
    session.program().terminate();

    EXPECT_EQ(contentOf(session.store()), store);
    EXPECT_EQ(contentOf(session.log()), log + growth);
}

TEST_F(MessageFlow, KilledProgramLeavesTheStoreWhole)
{
    session.deliver("text Code 482913");
    ASSERT_TRUE(session.program().awaitLine("ready to access disk"));
    session.program().signal(SIGKILL);
    EXPECT_EQ(session.program().awaitEnd().signal, SIGKILL);

    EXPECT_EQ(integrityOf(session.store()), "ok");
    session.deliver("text Code 59302");
}

} // namespace
} // namespace orlimo
