#include "sample/SampleStore.h"

#include "sample/Delivery.h"
#include "tests/sample/StoreContent.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

namespace orlimo::sample {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;
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
    [[nodiscard]] std::uintmax_t logSize() const { return std::filesystem::file_size(logOf(path)); }
    [[nodiscard]] StoreContent content() const { return StoreContent(path); }
    [[nodiscard]] long long messages() const
    {
        return content().number("SELECT count(*) FROM message");
    }

    /// Delivers with `input` as the lines that set the pace, and returns what is printed.
    std::vector<std::string>
    delivered(const DeliveryOptions& options, const std::string& input = "")
    {
        std::istringstream lines(input);
        std::ostringstream output;
        deliver(store, options, lines, output);
        return linesOf(output.str());
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "chat.db";
    SampleStore store{path, Synchronous::off};
};

TEST_F(SampleStoreTest, HasTheShapeOfTheRealStore)
{
    EXPECT_THAT(
        content().column("SELECT name FROM sqlite_master WHERE type = 'table'"),
        IsSupersetOf(
            {"attachment",
             "chat",
             "chat_handle_join",
             "chat_message_join",
             "handle",
             "message",
             "message_attachment_join"}));
    EXPECT_THAT(
        content().column("SELECT name || ' ' || type FROM pragma_table_info('message')"),
        IsSupersetOf(
            {"ROWID INTEGER",
             "guid TEXT",
             "text TEXT",
             "handle_id INTEGER",
             "service TEXT",
             "attributedBody BLOB",
             "date INTEGER",
             "date_read INTEGER",
             "is_from_me INTEGER",
             "is_read INTEGER"}));
    EXPECT_THAT(content().column("PRAGMA journal_mode"), ElementsAre("wal"));
    EXPECT_THAT(
        content().column(
            "EXPLAIN QUERY PLAN SELECT text FROM message ORDER BY date DESC LIMIT 10", 3),
        ElementsAre("SCAN message USING INDEX message_idx_date"));
}

TEST_F(SampleStoreTest, KeepsTextAndBodyByteForByteInOneChat)
{
    const std::string text("a\0b\xFF\n", 5);
    EXPECT_EQ(store.append({.text = text}), 1);
    EXPECT_EQ(store.append({.attributedBody = std::vector<std::uint8_t>{0x00, 0x84, 0xFF}}), 2);
    EXPECT_EQ(store.append({.text = "", .isFromMe = true}), 3);

    EXPECT_THAT(content().column("SELECT text FROM message"), ElementsAre(text, "NULL", ""));
    EXPECT_THAT(
        content().column("SELECT typeof(attributedBody) || hex(attributedBody) FROM message"),
        ElementsAre("null", "blob0084FF", "null"));
    EXPECT_THAT(content().column("SELECT is_from_me FROM message"), ElementsAre("0", "0", "1"));
    EXPECT_EQ(
        content().number("SELECT count(DISTINCT message.guid) FROM message JOIN chat_message_join "
                         "ON message_id = message.ROWID AND message_date = date JOIN chat ON "
                         "chat.ROWID = chat_id JOIN handle ON handle.ROWID = handle_id"),
        3);
}

TEST_F(SampleStoreTest, DateIsNowButLaterThanTheNewest)
{
    const auto before = currentDate();
    store.append({.text = "now"});
    const auto date = content().number("SELECT date FROM message");
    EXPECT_LE(before, date);
    EXPECT_LE(date, currentDate());

    const auto future = currentDate() + 86'400'000'000'000;
    store.run(
        "INSERT INTO message (guid, text, date) VALUES ('x', 'tomorrow', " +
        std::to_string(future) + ")");
    store.append({.text = "next"});
    store.append({.text = "last"});
    EXPECT_THAT(
        content().column("SELECT text FROM message ORDER BY date DESC"),
        ElementsAre("last", "next", "tomorrow", "now"));
    EXPECT_EQ(content().number("SELECT max(date) FROM message"), future + 2);
}

TEST_F(SampleStoreTest, FilledStoreHoldsEveryKindOfMessageInOrderAndNoCode)
{
    store.fill(0);
    EXPECT_FALSE(store.isInTransaction());
    store.fill(12'000); // more than one transaction
    EXPECT_EQ(messages(), 12'000);
    EXPECT_EQ(
        content().number("SELECT count(*) FROM message AS a JOIN message AS b ON b.ROWID = a.ROWID "
                         "+ 1 WHERE b.date > a.date"),
        11'999);
    EXPECT_LT(content().number("SELECT max(date) FROM message"), currentDate());
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
                          "FROM message LIMIT 1000"))
    {
        EXPECT_FALSE(std::regex_search(words, code)) << words;
    }
}

TEST_F(SampleStoreTest, LogGrowsWithEachMessageUntilTruncated)
{
    // Long after SQLite would have restarted it.
    for (int number = 0; number < 500; ++number) {
        const auto size = store.logSize();
        store.append({.text = "only in the log"});
        ASSERT_GT(store.logSize(), size) << number;
    }
    EXPECT_GT(store.logSize(), 2 * 1000UL * (4096 + 24));
    EXPECT_THAT(contentOf(path), Not(HasSubstr("only in the log")));
    store.truncateLog();
    EXPECT_EQ(logSize(), 0U);
    EXPECT_EQ(messages(), 500);
}

TEST_F(SampleStoreTest, FailedMessageLeavesNoTransactionOpen)
{
    store.append({.text = "one"});
    store.run("DROP TABLE chat_message_join");
    EXPECT_THAT(
        [&] { store.append({.text = "two"}); },
        ThrowsMessage<std::runtime_error>(HasSubstr("no such table: chat_message_join")));
    EXPECT_FALSE(store.isInTransaction());
    EXPECT_EQ(messages(), 1);
}

TEST_F(SampleStoreTest, ConcurrentWritersWaitForEachOther)
{
    // Each message is a transaction that reads the newest date and then writes; one that read
    // before another's commit could not write any more.
    std::vector<std::thread> writers;
    while (writers.size() < 3) {
        writers.emplace_back([this] {
            SampleStore writing(path, Synchronous::off);
            for (int message = 0; message < 100; ++message) {
                EXPECT_NO_THROW(writing.append({.text = "Hello"}));
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(content().number("SELECT count(DISTINCT date) FROM message"), 300);
}

TEST_F(SampleStoreTest, ForeignStoreIsRefusedAndLeftAlone)
{
    const auto expectRefused = [](const auto& file, const char* reason) {
        const std::string before = contentOf(file);
        EXPECT_THAT(
            [&] { const SampleStore opened(file, Synchronous::off); },
            ThrowsMessage<std::runtime_error>(HasSubstr(reason)));
        EXPECT_EQ(contentOf(file), before);
    };
    StoreWriter(folder.path()).appendText("not yours");
    expectRefused(folder.path() / "Messages/chat.db", "is not a sample store");
    const auto letter = folder.path() / "letter";
    writeFile(letter, "This is a letter and not a database. " + std::string(4096, '.'));
    expectRefused(letter, "file is not a database");
    writeFile(letter, "");
    EXPECT_EQ(SampleStore(letter, Synchronous::off).append({.text = "one"}), 1);
}

// Deliveries.

TEST_F(SampleStoreTest, DeliveryAnnouncesEachMessageAndRecordsItsCode)
{
    const auto expected = folder.path() / "expected";
    const auto lines = delivered({.interval = 0s, .count = 24, .expected = expected});
    ASSERT_EQ(lines.size(), 25U);
    EXPECT_EQ(lines[0], "ready");
    EXPECT_THAT(
        lines[1],
        AllOf(StartsWith("in the text column: Your Orlimo sample code is "), EndsWith(")")));
    EXPECT_THAT(lines[2], StartsWith("as a body alone: "));
    EXPECT_EQ(lines[3], "in the text column: Lunch at noon? (no code)");
    EXPECT_EQ(messages(), 24);

    std::vector<std::string> announced;
    for (const std::string& line : lines) {
        constexpr std::string_view mark = "(expect ";
        if (const auto at = line.rfind(mark); at != std::string::npos) {
            announced.push_back(line.substr(at + mark.size(), line.size() - at - mark.size() - 1));
        }
    }
    EXPECT_EQ(announced.size(), 18U);
    EXPECT_EQ(linesOf(contentOf(expected)), announced);
    EXPECT_THROW(
        delivered({.interval = 0s, .count = 1, .expected = folder.path() / "none/expected"}),
        std::runtime_error);
}

TEST_F(SampleStoreTest, DeliveryIsPacedByIntervalOrInput)
{
    const auto start = std::chrono::steady_clock::now();
    delivered({.interval = 0.05s, .count = 3});
    EXPECT_GE(std::chrono::steady_clock::now() - start, 150ms);
    EXPECT_EQ(delivered({.interval = 0s, .count = 12, .paced = true}, "\n\n\n").size(), 4U);
    EXPECT_EQ(delivered({.interval = 0s, .count = 2, .paced = true}, "\n\n\n").size(), 3U);
}

TEST_F(SampleStoreTest, DeliveryTruncatesLogBeyondItsLimit)
{
    delivered({.interval = 0s, .count = 5});
    const auto size = store.logSize();
    delivered({.interval = 0s, .count = 5, .maxLogSize = size});
    EXPECT_GT(store.logSize(), 0U);
    EXPECT_LT(store.logSize(), size);
    EXPECT_EQ(messages(), 10);
}

} // namespace
} // namespace orlimo::sample
