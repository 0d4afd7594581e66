#include "platform/files/WalIndex.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo::sample {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

/// The program in another process, told what to write.
class SampleService : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(process.readLine(), "ready"); }

    [[nodiscard]] std::string ask(const std::string& command) { return process.ask(command); }
    [[nodiscard]] StoreContent content() const { return StoreContent(store); }
    [[nodiscard]] std::uintmax_t logSize() const
    {
        return std::filesystem::file_size(logOf(store));
    }

    TemporaryFolder folder;
    std::filesystem::path store = folder.path() / "chat.db";
    ChildProcess process{ORLIMO_SAMPLE_STORE, {.arguments = {"serve", store.string()}}};
};

TEST_F(SampleService, AnswersAMessageOnceItCanBeRead)
{
    for (int number = 1; number <= 50; ++number) {
        ASSERT_EQ(ask("text Hello"), "committed " + std::to_string(number));
        ASSERT_EQ(content().number("SELECT count(*) FROM message"), number);
    }
}

TEST_F(SampleService, StoresEachKindOfMessage)
{
    EXPECT_EQ(ask("text Lunch at noon?"), "committed 1");
    EXPECT_EQ(ask("body Your code is 482913"), "committed 2");
    EXPECT_EQ(ask("immutable Hello"), "committed 3");

    EXPECT_THAT(
        content().column("SELECT text FROM message"),
        ElementsAre("Lunch at noon?", "NULL", "NULL"));
    const auto bodies = content().column("SELECT attributedBody FROM message");
    ASSERT_EQ(bodies.size(), 3U);
    EXPECT_EQ(bodies[0], "NULL");
    EXPECT_NE(bodies[1].find("\x01\x95\x84\x01\x2B\x13Your code is 482913"), std::string::npos);
    EXPECT_NE(bodies[2].find("\x01\x94\x84\x01\x2B\x05Hello"), std::string::npos);
}

TEST_F(SampleService, TakesWordsAsTheyStand)
{
    EXPECT_EQ(ask("text  two  blanks "), "committed 1");
    EXPECT_EQ(ask("text "), "committed 2");
    EXPECT_EQ(ask("text"), "committed 3");
    EXPECT_EQ(ask("text Gr\xC3\xBC\xC3\x9F"), "committed 4");
    EXPECT_THAT(
        content().column("SELECT text FROM message"),
        ElementsAre(" two  blanks ", "", "", "Gr\xC3\xBC\xC3\x9F"));
}

TEST_F(SampleService, EscapesStandForSingleBytes)
{
    EXPECT_EQ(ask(R"(text a\nb\tc\\d\x00e\xffF\x0a1)"), "committed 1");
    EXPECT_EQ(ask(R"(body \xC3\xA4)"), "committed 2");
    EXPECT_THAT(
        content().column("SELECT hex(text) FROM message WHERE text IS NOT NULL"),
        ElementsAre("610A6209635C640065FF460A31"));
    EXPECT_EQ(
        content().number("SELECT count(*) FROM message WHERE instr(hex(attributedBody), "
                         "'019584012B02C3A486')"),
        1);
}

TEST_F(SampleService, UnknownEscapesAreAnErrorAndStoreNothing)
{
    for (const std::string words : {R"(\q)", R"(\)", R"(\x1)", R"(\xZZ)"}) {
        EXPECT_EQ(ask("text " + words), "error: unknown escape in the words") << words;
    }
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
}

TEST_F(SampleService, TransactionHoldsTheWritersLockFromItsFirstMessageToItsCommit)
{
    WalIndex index(logOf(store));
    EXPECT_FALSE(index.writeLock() == WalIndex::Lock::held);
    EXPECT_EQ(ask("begin"), "ok");
    EXPECT_EQ(ask("text one"), "added 1");
    EXPECT_TRUE(index.writeLock() == WalIndex::Lock::held);
    EXPECT_EQ(ask("body two"), "added 2");
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
    EXPECT_EQ(ask("commit"), "committed");
    EXPECT_FALSE(index.writeLock() == WalIndex::Lock::held);
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 2);
}

TEST_F(SampleService, SpilledFramesAreInTheLogWhileTheLockIsHeld)
{
    WalIndex index(logOf(store));
    EXPECT_EQ(ask("begin"), "ok");
    EXPECT_EQ(ask("text one"), "added 1");
    const auto size = logSize();
    EXPECT_EQ(ask("spill"), "ok");
    EXPECT_GT(logSize(), size);
    EXPECT_TRUE(index.writeLock() == WalIndex::Lock::held);
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
    EXPECT_EQ(ask("commit"), "committed");
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 1);
}

TEST_F(SampleService, RollbackGivesTheLockBackAndLeavesNothing)
{
    WalIndex index(logOf(store));
    EXPECT_EQ(ask("begin"), "ok");
    EXPECT_EQ(ask("text one"), "added 1");
    EXPECT_EQ(ask("spill"), "ok");
    EXPECT_EQ(ask("rollback"), "rolled back");
    EXPECT_FALSE(index.writeLock() == WalIndex::Lock::held);
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
    EXPECT_EQ(ask("text two"), "committed 1");
}

TEST_F(SampleService, TruncatesTheLog)
{
    EXPECT_EQ(ask("text one"), "committed 1");
    EXPECT_EQ(ask("truncate"), "ok");
    EXPECT_EQ(logSize(), 0U);
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 1);
}

TEST_F(SampleService, RunsAnyStatement)
{
    EXPECT_EQ(ask("sql INSERT INTO message (guid, text) VALUES ('x', 'a\\n'); SELECT 1"), "ok");
    EXPECT_THAT(content().column("SELECT text FROM message"), ElementsAre("a\\n"));
}

TEST_F(SampleService, FailureIsAnsweredAndTheServiceGoesOn)
{
    EXPECT_EQ(ask("sql SELEKT"), "error: near \"SELEKT\": syntax error");
    EXPECT_EQ(ask("commit"), "error: cannot commit - no transaction is active");
    EXPECT_EQ(ask("dance now"), "error: unknown command \"dance\"");
    EXPECT_THAT(ask("body " + std::string(65536, 'x')), StartsWith("error: a body's words"));
    EXPECT_EQ(ask(""), "error: unknown command \"\"");
    EXPECT_EQ(ask("text Hello"), "committed 1");
}

TEST_F(SampleService, EndsWhenItIsToldTo)
{
    process.writeLine("quit");
    EXPECT_EQ(process.awaitEnd().status, 0);
    EXPECT_EQ(process.output(), "ready\n");
}

TEST_F(SampleService, EndsWithItsInput)
{
    process.closeInput();
    EXPECT_EQ(process.awaitEnd().status, 0);
}

TEST(FilledSampleService, BeginsWithThatManyMessages)
{
    const TemporaryFolder folder;
    const auto store = folder.path() / "chat.db";
    ChildProcess process(
        ORLIMO_SAMPLE_STORE,
        {.arguments = {"serve", store.string(), "--messages", "30", "--synchronous", "NORMAL"}});
    ASSERT_EQ(process.readLine(), "ready");
    EXPECT_EQ(StoreContent(store).number("SELECT count(*) FROM message"), 30);
    EXPECT_EQ(process.ask("text next"), "committed 31");
}

} // namespace
} // namespace orlimo::sample
