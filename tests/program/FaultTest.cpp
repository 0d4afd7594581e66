#include "tests/program/ProgramSession.h"
#include "tests/support/StoreIntegrity.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace orlimo {
namespace {

using testing::ElementsAreArray;

class Fault : public testing::Test
{
protected:
    void SetUp() override
    {
        session.start();
        session.awaitOpenThrottle();
    }

    ProgramSession session;
};

TEST_F(Fault, ReplacedLogIsNotWatched)
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

TEST_F(Fault, StoreIsByteForByteTheSameAfterManyChecks)
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

TEST_F(Fault, KilledProgramLeavesTheStoreWhole)
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
