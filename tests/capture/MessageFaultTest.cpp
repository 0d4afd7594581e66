#include "capture/Message.h"
#include "capture/PreferenceKeys.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/capture/stores/SqliteMemoryLimit.h"
#include "tests/support/DeliberateLeak.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/watch/SystemWatchServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace orlimo {

namespace {

using namespace std::string_literals;
using testing::ElementsAre;

std::string hugeText()
{
    std::string text;
    text.resize(16'000'000, 'x');
    return text;
}

/// With stores, folders and watches that are not as they should be.
class MessageFaultTest : public MessageTestBase
{
protected:
    /// The host, reading the store in another Library folder. The watch stays on a good log.
    [[nodiscard]] CaptureServices servicesWithDatabase(Database& otherDatabase) const
    {
        const CaptureServices real = services();
        return {
            .database = otherDatabase,
            .userDefaults = real.userDefaults,
            .pasteboard = real.pasteboard,
            .libraryFolder = real.libraryFolder,
            .makeFileMonitor = real.makeFileMonitor,
        };
    }

    /// A check of a store that cannot be read: logs `line`, and finds no code.
    void expectUnreadable(Database& otherDatabase, const std::string& line) const
    {
        const auto message = watching(servicesWithDatabase(otherDatabase));
        const OutputCapture capture;
        message->fileDidChange();
        EXPECT_EQ(message->verificationCode(), "No Code");
        EXPECT_EQ(clipboardText(), "before");
        EXPECT_THAT(capture.lines(), ElementsAre("ready to access disk", line));
    }

    [[nodiscard]] std::filesystem::path otherStore() const
    {
        return other.path() / "Messages/chat.db";
    }

    TemporaryFolder other;
};

TEST_F(MessageFaultTest, StoreWithoutMessageTable)
{
    store.run("DROP TABLE message");
    expectUnreadable(database, "error preparing fetch limit : v1no such table: message");
}

TEST_F(MessageFaultTest, StoreThatIsMissing)
{
    std::filesystem::create_directory(other.path() / "Messages");
    expectUnreadable(
        processLifetimeDatabase(other.path()),
        "error preparing fetch limit : v1no such table: message");
}

TEST_F(MessageFaultTest, StoreThatIsNoDatabase)
{
    writeFile(otherStore(), std::string(5000, '?'));
    expectUnreadable(
        processLifetimeDatabase(other.path()),
        "error preparing fetch limit : v1file is not a database");
    EXPECT_EQ(contentOf(otherStore()), std::string(5000, '?'));
}

TEST_F(MessageFaultTest, StoreThatCouldNotBeOpened)
{
    Database* failed = nullptr;
    {
        const DeliberateLeak failedConnection;
        failed = &processLifetimeDatabase(other.path());
    }
    expectUnreadable(*failed, "error preparing fetch limit : v1out of memory");
}

TEST_F(MessageFaultTest, StoreThatIsLocked)
{
    StoreWriter writer(other.path(), StoreWriter::Journal::rollback);
    writer.appendText("Your code is 482913");
    writer.run("BEGIN EXCLUSIVE");
    expectUnreadable(
        processLifetimeDatabase(other.path()),
        "error preparing fetch limit : v1database is locked");
    writer.run("COMMIT");
}

TEST_F(MessageFaultTest, NoMessagesFolder)
{
    CaptureServices given = services();
    given.libraryFolder = [folder = other.path()] { return folder; };
    const auto message = Message::create(given);
    const OutputCapture capture;
    EXPECT_FALSE(message->registFileObserver());
    EXPECT_FALSE(message->ready());
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("registFileObserver", "init file monitor", "file access not allowed"));
}

TEST_F(MessageFaultTest, StoreWithoutLog)
{
    {
        StoreWriter writer(other.path(), StoreWriter::Journal::rollback);
        writer.appendText("Your code is 482913");
    }
    CaptureServices given = servicesWithDatabase(processLifetimeDatabase(other.path()));
    given.libraryFolder = [folder = other.path()] { return folder; };
    const auto message = Message::create(given);
    const OutputCapture capture;
    EXPECT_FALSE(message->registFileObserver());
    EXPECT_EQ(message->checkMessages(), std::nullopt);
    EXPECT_EQ(message->verificationCode(), "");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "registFileObserver",
            "init file monitor",
            "file access not allowed",
            "not ready to access disk"));
}

TEST_F(MessageFaultTest, WatchThatTheHostRefuses)
{
    CaptureServices given = services();
    given.makeFileMonitor = [](const auto& file) {
        WatchServices watch = systemWatchServices();
        watch.makeVnodeSource = [](int, VnodeEvents, Queue&) -> std::unique_ptr<VnodeSource> {
            throw std::system_error(ENOSPC, std::generic_category(), "too many watches");
        };
        return FileMonitor::create(file, watch);
    };
    const auto message = Message::create(given);
    const OutputCapture capture;
    EXPECT_FALSE(message->registFileObserver());
    EXPECT_FALSE(message->ready());
    EXPECT_THAT(
        capture.lines(),
        ElementsAre("registFileObserver", "init file monitor", "file access not allowed"));
}

TEST_F(MessageFaultTest, CodeBehindDamagedPageIsNotFound)
{
    {
        StoreWriter writer(other.path(), StoreWriter::Journal::rollback);
        writer.appendText("Your code is 11111");
        for (int number = 1; number <= 9; ++number) {
            writer.appendText("message " + std::to_string(number) + std::string(3500, '.'));
        }
    }
    std::string content = contentOf(otherStore());
    const std::size_t page = content.find("message 7.") / 4096 * 4096;
    writeFile(otherStore(), content.replace(page, 4096, std::string(4096, '\xA5')));
    const auto message = watching(servicesWithDatabase(processLifetimeDatabase(other.path())));
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(message->verificationCode(), "No Code");
    EXPECT_EQ(clipboardText(), "before");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "message 9" + std::string(3500, '.'),
            "message 8" + std::string(3500, '.')));
    EXPECT_TRUE(contentOf(otherStore()) == content);
}

TEST_F(MessageFaultTest, HugeText)
{
    const std::string huge = hugeText();
    store.appendText("Your code is 482913");
    store.appendText(huge);
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_TRUE(
        capture.text() ==
        "ready to access disk\n" + huge + "\nYour code is 482913\nFound numbers: [\"482913\"]\n");
}

TEST_F(MessageFaultTest, CodeAtTheEndOfHugeText)
{
    store.appendText(hugeText() + " 482913");
    const auto message = watching();
    const OutputCapture swallowed;
    EXPECT_EQ(message->checkMessages(), "482913");
}

TEST_F(MessageFaultTest, TenThousandDigits)
{
    const std::string digits(10'000, '7');
    store.appendText("Your code is 482913");
    store.appendText(digits);
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk", digits, "Your code is 482913", R"(Found numbers: ["482913"])"));
}

TEST_F(MessageFaultTest, NulInText)
{
    store.appendText("Your code is 482913");
    store.appendText("nothing before\0 99999"s);
    store.appendText("99\0999"s);
    const auto message = watching();
    const OutputCapture capture;
    EXPECT_EQ(message->checkMessages(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "99",
            "nothing before",
            "Your code is 482913",
            R"(Found numbers: ["482913"])"));
}

TEST_F(MessageFaultTest, TextThatIsNotUtf8)
{
    store.appendText("\xFF\xC0\xAF 482913 \xE2\x82");
    const auto message = watching();
    const OutputCapture capture;
    message->fileDidChange();
    EXPECT_EQ(clipboardText(), "482913");
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "ready to access disk",
            "\uFFFD\uFFFD\uFFFD 482913 \uFFFD",
            R"(Found numbers: ["482913"])",
            "file changed!! at message: code? 482913"));
}

// The fatal stops.

class MessageFaultDeathTest : public MessageFaultTest
{};

TEST_F(MessageFaultDeathTest, AbsentLibraryFolder)
{
    expectFatalStop(
        [this] {
            CaptureServices given = services();
            given.libraryFolder = [] { return std::nullopt; };
            Message::create(given)->registFileObserver();
        },
        {"registFileObserver"},
        {"capture/Message.cpp", "the user has no Library folder"});
}

TEST_F(MessageFaultDeathTest, LibraryFolderThatIsGoneWhenItIsLookedForAgain)
{
    expectFatalStop(
        [this] {
            CaptureServices given = services();
            given.libraryFolder = [folder = std::optional(library.path())]() mutable {
                return std::exchange(folder, std::nullopt);
            };
            Message::create(given)->registFileObserver();
        },
        {"registFileObserver"},
        {"capture/Message.cpp", "the user has no Library folder"});
}

TEST_F(MessageFaultDeathTest, MessageWithoutTextAndWithEmptyBody)
{
    store.append({});
    expectFatalStop(
        [this] { watching()->checkMessages(); },
        {"ready to access disk"},
        {"capture/BodyDecoding.cpp", "a message body holds no string"});
}

TEST_F(MessageFaultDeathTest, MessageWithoutTextAndWithoutBody)
{
    if (!sqliteTracksMemory()) {
        GTEST_SKIP() << "this SQLite does not count its memory";
    }
    // The reader yields no body where memory runs out for it.
    writeStoreForMemoryLimit(other.path());
    expectFatalStop(
        [&] {
            Database& starved = processLifetimeDatabase(other.path());
            const auto message = watching(servicesWithDatabase(starved));
            limitSqliteMemory();
            message->checkMessages();
        },
        {"ready to access disk"},
        {"capture/Message.cpp", "a message has neither text nor body"});
}

TEST_F(MessageFaultDeathTest, MalformedBody)
{
    store.appendText("Your code is 482913");
    store.appendBody("no archive at all");
    store.appendText("See you at 8");
    expectFatalStop(
        [this] { watching()->checkMessages(); },
        {"ready to access disk", "See you at 8"},
        {"capture/BodyDecoding.cpp", "a message body holds no string"});
}

TEST_F(MessageFaultDeathTest, MalformedLongBody)
{
    store.appendBody("NSString\x01\x95\x84\x01\x2B\x81\x02\0\xC0\xAF"s);
    expectFatalStop(
        [this] { watching()->checkMessages(); },
        {"ready to access disk", "first 129"},
        {"capture/BodyDecoding.cpp", "the string in a message body is not UTF-8"});
}

} // namespace

} // namespace orlimo
