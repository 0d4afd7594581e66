#include "tests/capture/stores/StoreLock.h"
#include "tests/program/ProgramSession.h"
#include "tests/support/BuiltPrograms.h"
#include "tests/support/StoreIntegrity.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/UnprivilegedUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include <grp.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

/// Goes on as a user whom permissions bind, where the process runs as root.
void becomeUser(uid_t user)
{
    if (::geteuid() == 0 &&
        (::setgroups(0, nullptr) != 0 || ::setgid(user) != 0 || ::setuid(user) != 0))
    {
        ::_exit(1);
    }
}

void becomeOrdinaryUser()
{
    becomeUser(ProgramSession::ordinaryUsers.front());
}

/// A user of whom no other test starts or ends a process: their shares of inotify are counted.
void becomeUserWithoutInotify()
{
    becomeUser(ProgramSession::ordinaryUsers.back());
}

/// Lets everybody read `folder` and what is in it, and nobody write.
void makeReadOnly(const std::filesystem::path& folder)
{
    using std::filesystem::perms;
    const perms readable = perms::owner_read | perms::group_read | perms::others_read;
    const perms enterable = perms::owner_exec | perms::group_exec | perms::others_exec;
    std::filesystem::permissions(folder.parent_path(), perms::owner_all | readable | enterable);
    std::filesystem::permissions(folder, readable | enterable);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::filesystem::permissions(
            entry.path(), entry.is_directory() ? readable | enterable : readable);
    }
}

/// Makes `folder` writable again, so that it can be removed.
void makeWritable(const std::filesystem::path& folder)
{
    using std::filesystem::perms;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::filesystem::permissions(entry.path(), perms::owner_all);
    }
    std::filesystem::permissions(folder, perms::owner_all);
}

class Fault : public testing::Test
{
protected:
    void startOpen()
    {
        session.start();
        session.awaitOpenThrottle();
    }

    ProgramSession session;
};

TEST_F(Fault, StoreWithoutATableIsReportedAtEachCheckAndNothingElse)
{
    session.startWriter();
    ASSERT_EQ(session.writer().ask("sql DROP TABLE message"), "ok");
    session.startProgram();
    ASSERT_TRUE(session.program().awaitLine("file access allowed"));
    ProgramSession::waitForThrottle();

    ASSERT_EQ(session.writer().ask("sql CREATE TABLE other (x)"), "ok");
    ASSERT_TRUE(session.program().awaitLine("ready to access disk"));
    EXPECT_EQ(
        session.program().readLine(), "error preparing fetch limit : v1no such table: message");
    EXPECT_TRUE(session.program().isRunning());
}

TEST_F(Fault, FileThatIsNoDatabaseIsReportedAndLeftAlone)
{
    const std::string noDatabase = "This is a letter and not a database. " + std::string(4096, '.');
    writeFile(session.store(), noDatabase);
    writeFile(session.log(), "");
    session.startProgram();
    ASSERT_TRUE(session.program().awaitLine("file access allowed"));
    ProgramSession::waitForThrottle();

    appendToFile(session.log(), "growth");
    ASSERT_TRUE(session.program().awaitLine("ready to access disk"));
    EXPECT_EQ(
        session.program().readLine(), "error preparing fetch limit : v1file is not a database");
    EXPECT_TRUE(session.program().isRunning());
    EXPECT_EQ(contentOf(session.store()), noDatabase);
}

TEST_F(Fault, LockedStoreIsReportedAndReadAgainWhenItIsFree)
{
    session.startWriter();
    // From its next change on the writer keeps the store to itself, and its lock for good.
    ASSERT_EQ(session.writer().ask("sql PRAGMA locking_mode=EXCLUSIVE"), "ok");
    session.deliver("text Code 111111");
    session.startProgram();
    ASSERT_TRUE(session.program().awaitLine("file access allowed"));
    ProgramSession::waitForThrottle();

    session.deliver("text Code 222222");
    ASSERT_EQ(session.program().readLine(), "ready to access disk");
    EXPECT_EQ(session.program().readLine(), "error preparing fetch limit : v1database is locked");
    ASSERT_EQ(
        session.writer().ask("sql PRAGMA locking_mode=NORMAL; SELECT count(*) FROM message"), "ok");
    ProgramSession::waitForThrottle();

    session.deliver("text Code 333333");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Code 333333", "333333")));
}

TEST_F(Fault, LogLockedDuringAReadIsReadOnAndCanBeEmptied)
{
    startOpen();
    session.deliver("text Code 111111");
    EXPECT_EQ(session.readReaction().size(), 4U);
    session.awaitOpenThrottle();
    {
        const StoreLock lock(session.home() / "Library", StoreWriter::Journal::writeAheadLog);
        appendToFile(session.log(), "growth");
        ASSERT_EQ(session.program().readLine(), "ready to access disk");
        ProgramSession::waitForThrottle();
    }
    for (const std::string code : {"222222", "333333"}) {
        session.deliver("text Code " + code);
        EXPECT_THAT(
            session.readReaction(),
            ElementsAreArray(ProgramSession::reactionTo("Code " + code, code)));
        EXPECT_EQ(session.writer().ask("truncate"), "ok");
        session.awaitOpenThrottle();
    }
}

TEST_F(Fault, RowWithNeitherTextNorBodyStopsTheProgram)
{
    startOpen();
    // The hexadecimal text of no body is empty, and an empty body holds no string.
    ASSERT_EQ(
        session.writer().ask(
            "sql INSERT INTO message (guid, date) VALUES ('none', 9000000000000000000)"),
        "ok");

    EXPECT_EQ(session.program().awaitEnd().signal, SIGABRT);
    auto lines = ProgramSession::startUpLines();
    lines.emplace_back("ready to access disk");
    EXPECT_THAT(linesOf(session.program().output()), ElementsAreArray(lines));
    EXPECT_THAT(session.program().errors(), HasSubstr("capture/BodyDecoding.cpp"));
    EXPECT_THAT(session.program().errors(), HasSubstr("a message body holds no string"));
}

TEST_F(Fault, MalformedLongBodyStopsTheProgramAfterItsLogLine)
{
    startOpen();
    // "NSString", the fixed run, a two-byte length of 2, and two bytes that are not UTF-8.
    ASSERT_EQ(
        session.writer().ask("sql INSERT INTO message (guid, date, attributedBody) VALUES ('bad', "
                             "9000000000000000000, X'4E53537472696E67019584012B810200FFFE')"),
        "ok");

    EXPECT_EQ(session.program().awaitEnd().signal, SIGABRT);
    auto lines = ProgramSession::startUpLines();
    lines.emplace_back("ready to access disk");
    lines.emplace_back("first 129");
    EXPECT_THAT(linesOf(session.program().output()), ElementsAreArray(lines));
}

TEST_F(Fault, HugeTextIsReadToItsEnd)
{
    startOpen();
    // Sixteen million letters with the code behind them.
    ASSERT_EQ(
        session.writer().ask("sql INSERT INTO message (guid, date, text) VALUES ('huge', "
                             "9000000000000000000, replace(hex(zeroblob(8000000)), '00', 'ab') || "
                             "' code 482913')"),
        "ok");

    const auto lines = session.readReaction();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[1].size(), 16'000'000 + std::string(" code 482913").size());
    EXPECT_EQ(lines[3], "file changed!! at message: code? 482913");
}

TEST_F(Fault, TenThousandDigitsAreNoCode)
{
    startOpen();
    session.deliver("text Code 482913");
    EXPECT_EQ(session.readReaction().size(), 4U);
    session.awaitOpenThrottle();

    const std::string digits(10000, '7');
    session.deliver("text " + digits);
    EXPECT_THAT(
        session.readReaction(),
        ElementsAre(
            "ready to access disk",
            digits,
            "Code 482913",
            "Found numbers: [\"482913\"]",
            "file changed!! at message: code? 482913"));
}

TEST_F(Fault, TruncatedLogIsWatchedOn)
{
    startOpen();
    session.deliver("text Code 111111");
    EXPECT_EQ(session.readReaction().size(), 4U);

    ASSERT_EQ(session.writer().ask("truncate"), "ok");
    ASSERT_EQ(std::filesystem::file_size(session.log()), 0U);
    // A log that has its old length again before the program looks has not changed for it.
    session.awaitOpenThrottle();
    session.deliver("text Code 222222");
    EXPECT_THAT(
        session.readReaction(),
        ElementsAreArray(ProgramSession::reactionTo("Code 222222", "222222")));
}

TEST_F(Fault, DeletedLogIsNotHeardOfAgain)
{
    startOpen();
    std::filesystem::remove(session.log());
    writeFile(session.log(), "a new log in the old one's place");
    appendToFile(session.log(), "that grows");
    session.awaitOpenThrottle();
    runEventLoop(std::chrono::milliseconds(300));

    EXPECT_TRUE(session.program().isRunning());
    EXPECT_THAT(
        linesOf(session.program().output()), ElementsAreArray(ProgramSession::startUpLines()));
}

TEST_F(Fault, ReplacedLogIsNotHeardOfAgain)
{
    startOpen();
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
    startOpen();
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
    startOpen();
    session.deliver("text Code 482913");
    ASSERT_TRUE(session.program().awaitLine("ready to access disk"));
    session.program().signal(SIGKILL);
    EXPECT_EQ(session.program().awaitEnd().signal, SIGKILL);

    EXPECT_EQ(integrityOf(session.store()), "ok");
    session.deliver("text Code 59302");
}

/// A home that its owner cannot write to.
class ReadOnlyHome : public testing::Test
{
protected:
    void SetUp() override
    {
        if (::geteuid() == 0 && !canOthersReach(ORLIMO_PROGRAM)) {
            GTEST_SKIP() << "other users may not enter the folder in which the program was built";
        }
    }

    void TearDown() override { makeWritable(session.home()); }

    ProgramSession session{{.beforeStart = becomeOrdinaryUser}};
};

TEST_F(ReadOnlyHome, WithStoredPreferencesStillCaptures)
{
    writeFile(
        session.preferences(),
        "[General]\ncapturingEnabled=true\nfourDigitInclude=true\nloginItemEnabled=true\n");
    session.startWriter();
    session.deliver("text Hello");
    makeReadOnly(session.home());
    session.startProgram();
    ASSERT_TRUE(session.program().awaitLine("file access allowed"));
    ProgramSession::waitForThrottle();

    session.deliver("text Code 482913");
    EXPECT_EQ(session.readReaction().back(), "file changed!! at message: code? 482913");
}

TEST_F(ReadOnlyHome, WithoutPreferencesSaysSoAndCapturesByTheDefaults)
{
    session.startWriter();
    session.deliver("text Hello");
    makeReadOnly(session.home());
    session.startProgram();
    ASSERT_TRUE(session.program().awaitLine("file access allowed"));
    ASSERT_TRUE(await([this] {
        return session.program().errors().find("cannot store preferences") != std::string::npos;
    }));
    ProgramSession::waitForThrottle();

    session.deliver("text Code 4829");
    EXPECT_THAT(session.readReaction(), Contains("file changed!! at message: code? 4829"));
}

TEST(PipeAsPreferencesFile, NeitherHangsTheStartNorStopsCapturing)
{
    ProgramSession session({.arguments = {"--launched-at-login"}});
    std::filesystem::create_directories(session.preferences().parent_path());
    ASSERT_EQ(::mkfifo(session.preferences().c_str(), 0600), 0);
    session.start();
    session.awaitOpenThrottle();

    session.deliver("text Code 482913");
    EXPECT_THAT(session.readReaction(), Contains("file changed!! at message: code? 482913"));
    const std::string place = session.preferences().string() + "\n";
    const std::string refused = "Orlimo cannot store preferences in " + place;
    EXPECT_EQ(
        session.program().errors(),
        "Orlimo cannot read its preferences in " + place + refused + refused + refused);
    EXPECT_TRUE(std::filesystem::is_fifo(session.preferences()));
}

TEST(FullInotifyTable, RefusesAccess)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can use up another user's share of inotify";
    }
    if (!canOthersReach(ORLIMO_PROGRAM)) {
        GTEST_SKIP() << "other users may not enter the folder in which the program was built";
    }
    // Another process of the same user holds every inotify instance that the user may have.
    const ChildProcess holder("/bin/sleep", {.arguments = {"600"}, .beforeStart = [] {
                                                 becomeUserWithoutInotify();
                                                 while (::inotify_init1(0) >= 0) {
                                                 }
                                             }});
    ProgramSession session({.beforeStart = becomeUserWithoutInotify});
    std::filesystem::permissions(session.home().parent_path(), std::filesystem::perms::all);
    std::filesystem::permissions(session.home() / ".config", std::filesystem::perms::all);
    session.startWriter();
    session.startProgram();

    EXPECT_TRUE(session.program().awaitLine("init file monitor"));
    EXPECT_EQ(session.program().readLine(), "file access not allowed");
    EXPECT_TRUE(session.program().isRunning());
}

} // namespace
} // namespace orlimo
