#include "capture/Database.h"

#include "tests/capture/reference/BodyBytes.h"
#include "tests/capture/stores/OpenedConnections.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/platform/files/ForeignLock.h"
#include "tests/support/DeliberateLeak.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

bool isSqliteSilent = false;

/// While it lives, `sqlite3_errmsg` returns null, which SQLite's documentation does not exclude.
struct SqliteWithoutErrorMessages
{
    SqliteWithoutErrorMessages() { isSqliteSilent = true; }
    SqliteWithoutErrorMessages(const SqliteWithoutErrorMessages&) = delete;
    SqliteWithoutErrorMessages& operator=(const SqliteWithoutErrorMessages&) = delete;
    ~SqliteWithoutErrorMessages() { isSqliteSilent = false; }
};

/// How many connections this process has closed.
int closedConnections = 0;

} // namespace

// Both take precedence over the library's functions of the same name, in this program only.

const char* sqlite3_errmsg(sqlite3* connection)
{
    using Function = const char* (*)(sqlite3*);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "sqlite3_errmsg"));
    return isSqliteSilent ? nullptr : real(connection);
}

int sqlite3_close(sqlite3* connection)
{
    using Function = int (*)(sqlite3*);
    static const auto real = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "sqlite3_close"));
    const int result = real(connection);
    closedConnections += connection != nullptr && result == SQLITE_OK ? 1 : 0;
    return result;
}

namespace orlimo {

/// Shown when an expectation about a message fails.
void PrintTo(const Msg& message, std::ostream* stream)
{
    *stream << "message " << message.rowid << " with text " << testing::PrintToString(message.text)
            << " and body " << testing::PrintToString(message.attributedBody);
}

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Messages = std::vector<Msg>;

constexpr const char* connected = "database connected!!";
constexpr const char* query = "SELECT rowid, text, HEX(attributedBody), attributedBody FROM "
                              "message ORDER BY date DESC LIMIT ";

/// An empty Library folder.
class DatabaseTest : public testing::Test
{
protected:
    [[nodiscard]] std::filesystem::path library() const { return folder.path(); }
    [[nodiscard]] std::filesystem::path store() const { return library() / "Messages/chat.db"; }

    /// What a new reader fetches. Nothing may be logged meanwhile.
    Messages fetched(std::int64_t limit = 10) const
    {
        Database& database = processLifetimeDatabase(library());
        const OutputCapture capture;
        Messages messages = database.fetchMessages(limit);
        EXPECT_EQ(capture.text(), "");
        return messages;
    }

    /// The bytes of the store and of its log. Read by another process: closing a descriptor of a
    /// store would release the locks that this process's connections hold on it.
    [[nodiscard]] std::string storedBytes() const
    {
        const ForkedRun reading = runForked([&] {
            for (const char* name : {"chat.db", "chat.db-wal"}) {
                const auto file = store().parent_path() / name;
                const std::string bytes = std::filesystem::exists(file) ? contentOf(file) : "";
                (void)std::fwrite(bytes.data(), 1, bytes.size(), stdout);
            }
        });
        EXPECT_GT(reading.output.size(), 0U);
        return reading.output;
    }

    /// The names of all files beside the store and of itself.
    [[nodiscard]] std::set<std::string> names() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(store().parent_path())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

private:
    TemporaryFolder folder;
};

/// What a new reader of the store in `library` logs at construction and at two fetches, which yield
/// nothing.
std::vector<std::string> linesOfEmptyFetches(const std::optional<std::filesystem::path>& library)
{
    const OutputCapture capture;
    Database database(library);
    EXPECT_THAT(database.fetchMessages(10), IsEmpty());
    EXPECT_THAT(database.fetchMessages(10), IsEmpty());
    return capture.lines();
}

Msg textMessage(std::int64_t rowid, const std::string& text)
{
    return {.rowid = rowid, .text = text, .attributedBody = ""};
}

// What a fetch returns.

TEST_F(DatabaseTest, NewestMessagesByDateComeFirstUpToLimit)
{
    StoreWriter writer(library());
    writer.append({.text = "middle", .date = 2000});
    writer.append({.text = "newest", .date = 3000});
    writer.append({.text = "oldest", .date = 1000});
    const Messages all{
        textMessage(2, "newest"), textMessage(1, "middle"), textMessage(3, "oldest")};
    EXPECT_EQ(fetched(10), all);
    EXPECT_EQ(fetched(2), Messages(all.begin(), all.begin() + 2));
    EXPECT_THAT(fetched(0), IsEmpty());
    EXPECT_EQ(fetched(-1), all) << "SQLite takes a negative limit for none";
}

TEST_F(DatabaseTest, AbsentValuesDifferFromEmptyOnes)
{
    std::string everyByte;
    for (int value = 0; value < 256; ++value) {
        everyByte.push_back(static_cast<char>(value));
    }
    StoreWriter writer(library());
    writer.append({});
    writer.append({.text = "", .attributedBody = everyByte});
    EXPECT_THAT(
        fetched(),
        ElementsAre(
            Msg{.rowid = 2, .text = "", .attributedBody = asHexadecimal(everyByte)},
            Msg{.rowid = 1, .text = {}, .attributedBody = ""}));
}

TEST_F(DatabaseTest, TextEndsAtItsFirstNulAndIsRepaired)
{
    StoreWriter writer(library());
    writer.appendText("before\0after\0"s);
    writer.appendText("\0after"s);
    writer.appendText("a\xFF\xE2\x82z");
    EXPECT_THAT(
        fetched(),
        ElementsAre(
            textMessage(3, "a\uFFFD\uFFFDz"), textMessage(2, ""), textMessage(1, "before")));
}

TEST_F(DatabaseTest, RowidBeyondThirtyTwoBitsIsWrapped)
{
    StoreWriter writer(library());
    writer.append({.rowid = 2147483647, .text = "last that fits"});
    writer.append({.rowid = 2147483648, .text = "first that does not"});
    writer.append({.rowid = 4294967295, .text = "all bits"});
    writer.append({.rowid = 4294967303, .text = "more"});
    EXPECT_THAT(
        fetched(),
        ElementsAre(
            textMessage(7, "more"),
            textMessage(-1, "all bits"),
            textMessage(-2147483648, "first that does not"),
            textMessage(2147483647, "last that fits")));
}

TEST_F(DatabaseTest, OnlyCommittedMessagesAreSeen)
{
    StoreWriter writer(library());
    writer.appendText("first");
    Database& database = processLifetimeDatabase(library());
    EXPECT_THAT(database.fetchMessages(10), ElementsAre(textMessage(1, "first")));
    writer.run("BEGIN IMMEDIATE");
    writer.appendText("second");
    EXPECT_THAT(database.fetchMessages(10), ElementsAre(textMessage(1, "first")));
    writer.run("DELETE FROM message WHERE ROWID = 1; COMMIT");
    EXPECT_THAT(database.fetchMessages(10), ElementsAre(textMessage(2, "second")));
}

// How a connection is opened.

TEST_F(DatabaseTest, OpensForReadingAndWriting)
{
    const StoreWriter writer(library());
    const OpenedConnections opened;
    (void)processLifetimeDatabase(library());
    EXPECT_EQ(sqlite3_db_readonly(opened.only(), "main"), 0);
    EXPECT_EQ(sqlite3_db_filename(opened.only(), "main"), store().string());
}

TEST_F(DatabaseTest, MissingStoreIsCreatedEmpty)
{
    std::filesystem::create_directory(library() / "Messages");
    constexpr const char* noTable = "error preparing fetch limit : v1no such table: message";
    EXPECT_THAT(
        linesOfEmptyFetches(library()), ElementsAre("Database init", connected, noTable, noTable));
    EXPECT_EQ(contentOf(store()), "");
    EXPECT_THAT(names(), ElementsAre("chat.db"));
}

TEST_F(DatabaseTest, FailedOpenIsFinalAndItsConnectionStaysOpen)
{
    const int closedBefore = closedConnections;
    {
        const DeliberateLeak failedConnection;
        const OutputCapture capture;
        Database database(library());
        std::filesystem::create_directory(library() / "Messages");
        EXPECT_THAT(database.fetchMessages(10), IsEmpty());
        EXPECT_THAT(database.fetchMessages(10), IsEmpty());
        EXPECT_THAT(
            capture.lines(),
            ElementsAre(
                "Database init",
                "database connection:  unable to open database file",
                "error preparing fetch limit : v1out of memory",
                "error preparing fetch limit : v1out of memory"));
    }
    EXPECT_EQ(closedConnections, closedBefore);
    EXPECT_FALSE(std::filesystem::exists(store()));
}

TEST_F(DatabaseTest, FailedOpenMayHaveNoMessage)
{
    const SqliteWithoutErrorMessages silent;
    const DeliberateLeak failedConnection;
    const OutputCapture capture;
    const Database database(library());
    EXPECT_THAT(
        capture.lines(), ElementsAre("Database init", "database connection:  Unknown Error"));
}

TEST_F(DatabaseTest, AbsentLibraryFolderOpensStoreWithoutName)
{
    const OpenedConnections opened;
    const OutputCapture swallowed;
    const Database database(std::nullopt);
    EXPECT_STREQ(sqlite3_db_filename(opened.only(), "main"), "");
    EXPECT_EQ(swallowed.lines().back(), connected);
}

// Stores that cannot be read.

TEST_F(DatabaseTest, StoreOfAnotherShapeIsLoggedUntilItIsGood)
{
    StoreWriter writer(library());
    writer.run("ALTER TABLE message RENAME TO hidden");
    Database& database = processLifetimeDatabase(library());
    const OutputCapture capture;
    EXPECT_THAT(database.fetchMessages(10), IsEmpty());
    writer.run("ALTER TABLE hidden RENAME TO message");
    writer.appendText("there");
    EXPECT_THAT(database.fetchMessages(10), ElementsAre(textMessage(1, "there")));
    writer.run("ALTER TABLE message DROP COLUMN attributedBody");
    Database& later = processLifetimeDatabase(library());
    EXPECT_THAT(later.fetchMessages(10), IsEmpty());
    EXPECT_THAT(
        capture.lines(),
        ElementsAre(
            "error preparing fetch limit : v1no such table: message",
            "error preparing fetch limit : v1no such column: attributedBody"));
}

TEST_F(DatabaseTest, FileThatIsNoDatabaseIsLoggedAndLeftAlone)
{
    const std::string content =
        "This is a letter, and not a database.\n" + std::string(8192, '\xA5');
    writeFile(store(), content);
    constexpr const char* noDatabase = "error preparing fetch limit : v1file is not a database";
    EXPECT_THAT(
        linesOfEmptyFetches(library()),
        ElementsAre("Database init", connected, noDatabase, noDatabase));
    EXPECT_EQ(contentOf(store()), content);
    EXPECT_THAT(names(), ElementsAre("chat.db"));
}

TEST_F(DatabaseTest, FailedPreparationWithoutMessageIsFatal)
{
    expectFatalStop(
        [&] {
            std::filesystem::create_directory(library() / "Messages");
            auto* const database = new Database(library());
            const SqliteWithoutErrorMessages silent;
            (void)database->fetchMessages(10);
        },
        {"Database init", connected},
        {"capture/Database.cpp", "SQLite does not say why a statement cannot be compiled"});
}

TEST_F(DatabaseTest, MessagesBeforeDamagedPageAreReturned)
{
    // Each on a page of its own.
    constexpr std::size_t pageSize = 4096;
    const auto textOf = [](int number) {
        return "message " + std::to_string(number) + std::string(3500, '.');
    };
    {
        StoreWriter writer(library(), StoreWriter::Journal::rollback);
        for (int number = 1; number <= 10; ++number) {
            writer.appendText(textOf(number));
        }
    }
    std::string content = contentOf(store());
    const std::size_t page = content.find("message 6.") / pageSize * pageSize;
    content.replace(page, pageSize, std::string(pageSize, '\xA5'));
    writeFile(store(), content);
    EXPECT_THAT(
        fetched(),
        ElementsAre(
            textMessage(10, textOf(10)),
            textMessage(9, textOf(9)),
            textMessage(8, textOf(8)),
            textMessage(7, textOf(7))));
    EXPECT_EQ(contentOf(store()), content);
}

/// Locks readers out of a store as another program does: out of one with a rollback journal by an
/// exclusive transaction, out of one with a log by the recovery after a crash. A reader that has
/// the schema already meets the lock at its first step.
class StoreLock
{
public:
    StoreLock(const std::filesystem::path& store, StoreWriter::Journal journal)
        : index(store.string() + "-shm")
    {
        if (journal == StoreWriter::Journal::rollback) {
            EXPECT_EQ(sqlite3_open(store.c_str(), &connection), SQLITE_OK);
            EXPECT_EQ(
                sqlite3_exec(connection, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
            return;
        }
        // Bytes of the shared index, from SQLite's WAL-index format.
        writing.emplace(index, 120);
        recovering.emplace(index, 122);
        changeHeader();
    }
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;
    ~StoreLock()
    {
        if (recovering) {
            changeHeader();
        }
        sqlite3_close(connection);
    }

private:
    /// Makes the two copies of the index's header differ, or match again. In another process:
    /// closing a descriptor of the index drops all locks of its process on it.
    void changeHeader() const
    {
        const ForkedRun run = runForked([&] {
            const int descriptor = ::open(index.c_str(), O_RDWR | O_CLOEXEC);
            char byte = 0;
            (void)!::pread(descriptor, &byte, 1, 0);
            byte = static_cast<char>(~byte);
            ::_exit(::pwrite(descriptor, &byte, 1, 0) == 1 ? 0 : 1);
        });
        EXPECT_EQ(run.status, 0) << index;
    }

    std::filesystem::path index;
    sqlite3* connection = nullptr;
    std::optional<ForeignLock> writing;
    std::optional<ForeignLock> recovering;
};

class StoreOfJournal : public DatabaseTest, public testing::WithParamInterface<StoreWriter::Journal>
{
protected:
    /// SQLite's result for another program that truncates the log.
    [[nodiscard]] int checkpoint() const
    {
        sqlite3* connection = nullptr;
        EXPECT_EQ(sqlite3_open(store().c_str(), &connection), SQLITE_OK);
        const int result = sqlite3_wal_checkpoint_v2(
            connection, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
        sqlite3_close(connection);
        return result;
    }
};

TEST_P(StoreOfJournal, LockHidesMessagesButNoLaterCommit)
{
    StoreWriter writer(library(), GetParam());
    writer.appendText("locked away");
    Database& newReader = processLifetimeDatabase(library());
    const OpenedConnections opened;
    Database& database = processLifetimeDatabase(library());
    const OutputCapture capture;
    EXPECT_THAT(database.fetchMessages(10), SizeIs(1));
    EXPECT_EQ(capture.text(), "");
    {
        const StoreLock lock(store(), GetParam());
        EXPECT_THAT(newReader.fetchMessages(10), IsEmpty()) << "without the schema";
        for (int fetch = 0; fetch < 3; ++fetch) {
            EXPECT_THAT(database.fetchMessages(10), IsEmpty())
                << "the step fails, not the preparation";
        }
    }
    for (std::size_t commit = 2; commit <= 4; ++commit) {
        writer.appendText("after the lock");
        EXPECT_THAT(database.fetchMessages(10), SizeIs(commit));
        EXPECT_EQ(sqlite3_txn_state(opened.only(), nullptr), SQLITE_TXN_NONE);
        EXPECT_EQ(checkpoint(), SQLITE_OK);
    }
    EXPECT_THAT(statementsOn(opened.only()), SizeIs(7)) << "none is finalised";
    EXPECT_THAT(newReader.fetchMessages(10), SizeIs(4));
    EXPECT_THAT(capture.lines(), ElementsAre("error preparing fetch limit : v1database is locked"));
}

INSTANTIATE_TEST_SUITE_P(
    Journals,
    StoreOfJournal,
    testing::Values(StoreWriter::Journal::rollback, StoreWriter::Journal::writeAheadLog),
    [](const auto& parameter) {
        return parameter.param == StoreWriter::Journal::rollback ? "Rollback" : "WriteAheadLog";
    });

// The statements.

TEST_F(DatabaseTest, OnlyTheQueryIsRunAndItsStatementsStay)
{
    StoreWriter writer(library());
    writer.appendText("only");
    const OpenedConnections opened;
    Database& database = processLifetimeDatabase(library());
    static std::vector<std::string> run;
    run.clear();
    const auto note = [](unsigned /*event*/, void* /*context*/, void* /*statement*/, void* text) {
        run.emplace_back(static_cast<const char*>(text));
        return 0;
    };
    ASSERT_EQ(sqlite3_trace_v2(opened.only(), SQLITE_TRACE_STMT, note, nullptr), SQLITE_OK);
    EXPECT_EQ(database.fetchMessages(10), database.fetchMessages(10));
    (void)database.fetchMessages(std::numeric_limits<std::int64_t>::max());
    (void)database.fetchMessages(std::numeric_limits<std::int64_t>::min());
    sqlite3_trace_v2(opened.only(), 0, nullptr, nullptr);
    const std::vector<std::string> expected{
        query + "10"s,
        query + "10"s,
        query + "9223372036854775807"s,
        query + "-9223372036854775808"s};
    EXPECT_EQ(run, expected);
    EXPECT_EQ(statementsOn(opened.only()), expected);
    EXPECT_EQ(std::string(query).size(), 94U);
}

TEST_F(DatabaseTest, ChangedSchemaCostsOneFetch)
{
    // The legacy sqlite3_prepare does not compile a statement again.
    StoreWriter writer(library());
    writer.appendText("only");
    Database& database = processLifetimeDatabase(library());
    const OutputCapture capture;
    EXPECT_THAT(database.fetchMessages(10), SizeIs(1));
    writer.run("CREATE TABLE neighbour (ROWID INTEGER PRIMARY KEY)");
    EXPECT_THAT(database.fetchMessages(10), IsEmpty());
    EXPECT_THAT(database.fetchMessages(10), SizeIs(1));
    EXPECT_EQ(capture.text(), "");
}

TEST_F(DatabaseTest, DestructionClosesTheConnectionUnlessSomethingWasFetched)
{
    const OutputCapture swallowed;
    auto writer = std::make_unique<StoreWriter>(library());
    writer->appendText("only");
    const int closedBefore = closedConnections;
    std::make_unique<Database>(library()).reset();
    EXPECT_EQ(closedConnections, closedBefore + 1);
    const OpenedConnections opened;
    {
        const DeliberateLeak connectionThatStaysOpen;
        Database database(library());
        EXPECT_THAT(database.fetchMessages(10), SizeIs(1));
    }
    EXPECT_EQ(closedConnections, closedBefore + 1);
    EXPECT_THAT(statementsOn(opened.only()), ElementsAre(query + "10"s));
    writer.reset();
    EXPECT_TRUE(std::filesystem::exists(library() / "Messages/chat.db-wal"))
        << "the last connection was closed and has removed the log";
}

// The store is only read.

TEST_P(StoreOfJournal, IsUnchangedAfterManyFetchesBetweenCommits)
{
    StoreWriter writer(library(), GetParam());
    Database& database = processLifetimeDatabase(library());
    for (int number = 0; number < 4; ++number) {
        writer.appendText("Your code is " + std::to_string(100'000 + number));
        writer.appendBody(mutableStringBody(std::string(5000, 'x')));
        const std::string before = storedBytes();
        for (int check = 0; check < 10; ++check) {
            ASSERT_FALSE(database.fetchMessages(10).empty());
        }
        ASSERT_TRUE(storedBytes() == before);
    }
    const bool hasLog = GetParam() == StoreWriter::Journal::writeAheadLog;
    EXPECT_EQ(
        names(),
        hasLog ? (std::set<std::string>{"chat.db", "chat.db-shm", "chat.db-wal"})
               : std::set<std::string>{"chat.db"});
}

TEST_F(DatabaseTest, StoreOfCrashedWriterIsUnchanged)
{
    const TemporaryFolder other;
    {
        StoreWriter writer(other.path());
        writer.appendText("only");
        std::filesystem::create_directory(library() / "Messages");
        for (const std::string& name : {"chat.db"s, "chat.db-wal"s}) {
            std::filesystem::copy_file(
                other.path() / "Messages" / name, library() / "Messages" / name);
        }
    }
    const std::string before = storedBytes();
    EXPECT_THAT(fetched(), ElementsAre(textMessage(1, "only")));
    EXPECT_TRUE(storedBytes() == before);
}

} // namespace

} // namespace orlimo
