#include "sample/SampleStore.h"

#include "sample/ArchivedBody.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <regex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace orlimo::sample {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::ThrowsMessage;

/// Now, in nanoseconds since the beginning of 2001.
long long currentDate()
{
    constexpr std::chrono::seconds beginning{978'307'200};
    const auto since = std::chrono::system_clock::now().time_since_epoch() - beginning;
    return std::chrono::duration_cast<std::chrono::nanoseconds>(since).count();
}

class SampleStoreTest : public testing::Test
{
protected:
    [[nodiscard]] std::filesystem::path path() const { return folder.path() / "chat.db"; }
    [[nodiscard]] std::uintmax_t logSize() const
    {
        return std::filesystem::file_size(logOf(path()));
    }
    [[nodiscard]] StoreContent content() const { return StoreContent(path()); }

    TemporaryFolder folder;
};

TEST_F(SampleStoreTest, HasTheShapeOfTheRealStore)
{
    const SampleStore store(path(), Synchronous::off);

    EXPECT_THAT(
        content().column("SELECT name FROM sqlite_master WHERE type = 'table'"),
        IsSupersetOf({
            "attachment",
            "chat",
            "chat_handle_join",
            "chat_message_join",
            "handle",
            "message",
            "message_attachment_join",
        }));
    EXPECT_THAT(
        content().column("SELECT name || ' ' || type FROM pragma_table_info('message')"),
        IsSupersetOf({
            "ROWID INTEGER",
            "guid TEXT",
            "text TEXT",
            "handle_id INTEGER",
            "service TEXT",
            "attributedBody BLOB",
            "date INTEGER",
            "date_read INTEGER",
            "is_from_me INTEGER",
            "is_read INTEGER",
        }));
    EXPECT_THAT(content().column("PRAGMA journal_mode"), ElementsAre("wal"));
}

TEST_F(SampleStoreTest, NewestMessagesAreFoundThroughTheIndexOnTheirDates)
{
    const SampleStore store(path(), Synchronous::off);
    EXPECT_THAT(
        content().column(
            "EXPLAIN QUERY PLAN SELECT text FROM message ORDER BY date DESC LIMIT 10", 3),
        ElementsAre("SCAN message USING INDEX message_idx_date"));
}

TEST_F(SampleStoreTest, KeepsTextAndBodyByteForByte)
{
    const std::string text("a\0b\xFF\n", 5);
    const std::vector<std::uint8_t> body{0x00, 0x84, 0xFF};
    SampleStore store(path(), Synchronous::off);

    EXPECT_EQ(store.append({.text = text}), 1);
    EXPECT_EQ(store.append({.attributedBody = body}), 2);
    EXPECT_EQ(store.append({.text = "", .isFromMe = true}), 3);

    EXPECT_THAT(content().column("SELECT text FROM message"), ElementsAre(text, "NULL", ""));
    EXPECT_THAT(
        content().column("SELECT hex(attributedBody) FROM message"), ElementsAre("", "0084FF", ""));
    EXPECT_THAT(
        content().column("SELECT typeof(attributedBody) FROM message"),
        ElementsAre("null", "blob", "null"));
    EXPECT_THAT(content().column("SELECT is_from_me FROM message"), ElementsAre("0", "0", "1"));
}

TEST_F(SampleStoreTest, EveryMessageBelongsToAChatAndItsHandle)
{
    SampleStore store(path(), Synchronous::off);
    store.append({.text = "one"});
    store.append({.text = "two"});
    EXPECT_EQ(
        content().number("SELECT count(*) FROM message JOIN chat_message_join ON message_id = "
                         "message.ROWID AND message_date = date JOIN chat ON chat.ROWID = chat_id "
                         "JOIN handle ON handle.ROWID = handle_id"),
        2);
    EXPECT_EQ(content().number("SELECT count(DISTINCT guid) FROM message"), 2);
}

TEST_F(SampleStoreTest, DateIsThePresentTimeInNanoseconds)
{
    SampleStore store(path(), Synchronous::off);
    const auto before = currentDate();
    store.append({.text = "now"});
    const auto after = currentDate();
    const auto date = content().number("SELECT date FROM message");
    EXPECT_LE(before, date);
    EXPECT_LE(date, after);
}

TEST_F(SampleStoreTest, LaterMessageIsTheNewerOneAlsoWhenTheClockIsBehind)
{
    SampleStore store(path(), Synchronous::off);
    const auto future = currentDate() + 86'400'000'000'000;
    store.run(
        "INSERT INTO message (guid, text, date) VALUES ('x', 'tomorrow', " +
        std::to_string(future) + ")");
    store.append({.text = "next"});
    store.append({.text = "last"});
    EXPECT_THAT(
        content().column("SELECT text FROM message ORDER BY date DESC"),
        ElementsAre("last", "next", "tomorrow"));
    EXPECT_EQ(content().number("SELECT max(date) FROM message"), future + 2);
}

TEST_F(SampleStoreTest, FilledStoreHoldsThatManyMessagesOfThePastInOrder)
{
    SampleStore store(path(), Synchronous::off);
    store.fill(25'000);

    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 25'000);
    EXPECT_EQ(
        content().number("SELECT count(*) FROM message AS a JOIN message AS b ON b.ROWID = a.ROWID "
                         "+ 1 WHERE b.date > a.date"),
        24'999);
    EXPECT_LT(content().number("SELECT max(date) FROM message"), currentDate());
    EXPECT_EQ(store.append({.text = "newest"}), 25'001);
    EXPECT_THAT(
        content().column("SELECT text FROM message ORDER BY date DESC LIMIT 1"),
        ElementsAre("newest"));
}

TEST_F(SampleStoreTest, FilledStoreHoldsEveryKindOfMessageAndNoCode)
{
    SampleStore store(path(), Synchronous::off);
    store.fill(1000);

    EXPECT_EQ(
        content().number(
            "SELECT count(*) FROM message WHERE text IS NULL AND attributedBody IS NULL"),
        0);
    for (const std::string kind :
         {"text IS NOT NULL AND attributedBody IS NULL",
          "text IS NOT NULL AND attributedBody IS NOT NULL",
          "text IS NULL AND instr(attributedBody, CAST('NSMutableString' AS BLOB)) > 0",
          "text IS NULL AND instr(attributedBody, CAST('NSMutableString' AS BLOB)) = 0"})
    {
        EXPECT_GT(content().number("SELECT count(*) FROM message WHERE " + kind), 0) << kind;
    }
    const std::regex code("[0-9]{4}");
    for (const std::string& words :
         content().column("SELECT coalesce(text, '') || coalesce(CAST(attributedBody AS TEXT), '') "
                          "FROM message"))
    {
        EXPECT_FALSE(std::regex_search(words, code)) << words;
    }
}

TEST_F(SampleStoreTest, FilledWithNothingStaysEmpty)
{
    SampleStore store(path(), Synchronous::off);
    store.fill(0);
    EXPECT_FALSE(store.isInTransaction());
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
}

TEST_F(SampleStoreTest, LogGrowsWithEachMessageLongAfterSqliteWouldHaveStartedItAnew)
{
    SampleStore store(path(), Synchronous::off);
    std::uintmax_t size = logSize();
    for (int number = 0; number < 500; ++number) {
        store.append({.text = "Hello"});
        ASSERT_GT(logSize(), size) << number;
        size = logSize();
    }
    constexpr std::uintmax_t sqliteStartsAnew = 1000UL * (4096 + 24);
    EXPECT_GT(size, 2 * sqliteStartsAnew);
    EXPECT_EQ(store.logSize(), size);
}

TEST_F(SampleStoreTest, LogIsThereAsSoonAsTheStoreIsOpen)
{
    {
        const SampleStore store(path(), Synchronous::off);
        EXPECT_GT(logSize(), 0U);
    }
    std::filesystem::remove(logOf(path()));
    const SampleStore store(path(), Synchronous::off);
    EXPECT_TRUE(std::filesystem::exists(logOf(path())));
}

TEST_F(SampleStoreTest, LogSurvivesTheWriterAndGrowsOnWithTheNext)
{
    SampleStore(path(), Synchronous::off).append({.text = "only in the log"});
    const auto size = logSize();
    EXPECT_GT(size, 0U);
    EXPECT_THAT(contentOf(path()), Not(HasSubstr("only in the log")));
    SampleStore(path(), Synchronous::off).append({.text = "two"});
    EXPECT_GT(logSize(), size);
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 2);
}

TEST_F(SampleStoreTest, TruncatedLogIsEmptyAndItsMessagesAreInTheStore)
{
    SampleStore store(path(), Synchronous::off);
    store.append({.text = "one"});
    store.truncateLog();
    EXPECT_EQ(logSize(), 0U);
    EXPECT_THAT(content().column("SELECT text FROM message"), ElementsAre("one"));
    store.append({.text = "two"});
    EXPECT_GT(logSize(), 0U);
}

TEST_F(SampleStoreTest, OpenTransactionIsSeenByNobodyUntilItsCommit)
{
    SampleStore store(path(), Synchronous::off);
    store.begin();
    EXPECT_TRUE(store.isInTransaction());
    store.append({.text = "one"});
    store.append({.text = "two"});
    EXPECT_TRUE(store.isInTransaction());
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
    store.commit();
    EXPECT_FALSE(store.isInTransaction());
    EXPECT_THAT(content().column("SELECT text FROM message"), ElementsAre("one", "two"));
}

TEST_F(SampleStoreTest, SpilledTransactionIsInTheLogAndStillNotSeen)
{
    SampleStore store(path(), Synchronous::off);
    store.begin();
    store.append({.text = "one"});
    const auto size = logSize();
    store.spill();
    EXPECT_GT(logSize(), size);
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
    store.commit();
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 1);
}

TEST_F(SampleStoreTest, RolledBackTransactionLeavesNothing)
{
    SampleStore store(path(), Synchronous::off);
    store.begin();
    store.append({.text = "one"});
    store.spill();
    store.rollback();
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
    EXPECT_EQ(store.append({.text = "two"}), 1);
}

TEST_F(SampleStoreTest, FailedMessageLeavesNoTransactionOpen)
{
    SampleStore store(path(), Synchronous::off);
    store.run("DROP TABLE chat_message_join");
    EXPECT_THAT(
        [&] { store.append({.text = "one"}); },
        ThrowsMessage<std::runtime_error>(HasSubstr("no such table: chat_message_join")));
    EXPECT_FALSE(store.isInTransaction());
    EXPECT_EQ(content().number("SELECT count(*) FROM message"), 0);
}

TEST_F(SampleStoreTest, TableCanBeDroppedAfterItWasWrittenTo)
{
    SampleStore store(path(), Synchronous::off);
    store.append({.text = "one"});
    EXPECT_NO_THROW(store.run("DROP TABLE message"));
    EXPECT_THAT(
        [&] { store.append({.text = "two"}); },
        ThrowsMessage<std::runtime_error>(HasSubstr("no such table: message")));
}

TEST_F(SampleStoreTest, WritersBesideEachOtherWaitForEachOther)
{
    // Each message is a transaction that reads the newest date and then writes; one that read
    // before another's commit could not write any more.
    constexpr int each = 200;
    const SampleStore made(path(), Synchronous::off);
    constexpr int number = 3;
    std::vector<std::thread> writers;
    writers.reserve(number);
    while (writers.size() < number) {
        writers.emplace_back([this] {
            SampleStore store(path(), Synchronous::off);
            for (int round = 0; round < each; ++round) {
                EXPECT_NO_THROW(store.append({.text = "Hello"}));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(content().number("SELECT count(DISTINCT date) FROM message"), number * each);
}

TEST_F(SampleStoreTest, SomebodyElsesStoreIsRefusedAndLeftAsItIs)
{
    {
        StoreWriter writer(folder.path());
        writer.appendText("not yours");
    }
    const auto store = folder.path() / "Messages/chat.db";
    const std::string before = contentOf(store);

    EXPECT_THAT(
        [&] { const SampleStore opened(store, Synchronous::off); },
        ThrowsMessage<std::runtime_error>(HasSubstr("is not a sample store")));
    EXPECT_EQ(contentOf(store), before);
}

TEST_F(SampleStoreTest, FileThatIsNoDatabaseIsRefusedAndLeftAsItIs)
{
    const std::string letter = "This is a letter and not a database. " + std::string(4096, '.');
    writeFile(path(), letter);
    EXPECT_THAT(
        [&] { const SampleStore opened(path(), Synchronous::off); },
        ThrowsMessage<std::runtime_error>(HasSubstr("file is not a database")));
    EXPECT_EQ(contentOf(path()), letter);
}

TEST_F(SampleStoreTest, EmptyFileBecomesAStore)
{
    writeFile(path(), "");
    SampleStore store(path(), Synchronous::off);
    EXPECT_EQ(store.append({.text = "one"}), 1);
}

TEST_F(SampleStoreTest, StoreInAFolderThatIsNotThereIsAnError)
{
    EXPECT_THAT(
        [&] { const SampleStore opened(folder.path() / "none/chat.db", Synchronous::off); },
        ThrowsMessage<std::runtime_error>(HasSubstr("unable to open database file")));
}

} // namespace
} // namespace orlimo::sample
