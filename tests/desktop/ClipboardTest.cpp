#include "platform/files/UniqueFd.h"
#include "tests/desktop/sessions/x11/SelectionOwnerChanges.h"
#include "tests/desktop/sessions/x11/XServer.h"
#include "tests/program/ProgramSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orlimo {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The program on a real X server, its clipboard looked at by another program.
class Clipboard : public testing::Test
{
protected:
    void SetUp() override
    {
        session.start();
        session.awaitOpenThrottle();
    }

    /// Waits until `expected` is what a program pastes; says what is there instead when it is not.
    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& expected)
    {
        if (await([&] { return server.paste("clipboard") == expected; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << "the clipboard holds \"" << server.paste("clipboard")
               << "\"; the program printed\n"
               << session.program().output() << session.program().errors();
    }

    XServer server;
    ProgramSession session{
        {// No window opens by itself then, for want of a tray.
         .arguments = {"--launched-at-login"},
         .environment = {{"DISPLAY", server.display()}, {"QT_QPA_PLATFORM", "xcb"}}}};
};

TEST_F(Clipboard, HoldsTheCodeInThePlaceOfItsOldContents)
{
    server.copy("clipboard", "something that the user copied");
    ASSERT_TRUE(awaitPaste("something that the user copied\n"));

    session.deliver("text Your code is 482913.");
    EXPECT_TRUE(awaitPaste("482913"));
}

/// One of a pair of sockets for a program's standard output, and the other to read from.
struct OutputSocket
{
    OutputSocket()
    {
        std::array<int, 2> sockets{-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()), 0);
        reader = UniqueFd(sockets[0]);
        writer = UniqueFd(sockets[1]);
    }

    /// Its name in the variable JOURNAL_STREAM, with `offset` added to its inode.
    [[nodiscard]] std::string name(ino_t offset) const
    {
        struct stat status
        {};
        EXPECT_EQ(::fstat(writer.get(), &status), 0);
        return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino + offset);
    }

    /// Everything that was written. Waits for the end of the programs that write.
    [[nodiscard]] std::string text()
    {
        writer = UniqueFd();
        std::string all;
        std::array<char, 4096> part{};
        for (ssize_t got = 0; (got = ::read(reader.get(), part.data(), part.size())) > 0;) {
            all.append(part.data(), static_cast<std::size_t>(got));
        }
        return all;
    }

    UniqueFd reader;
    UniqueFd writer;
};

TEST_F(Clipboard, HoldsTheCodeOfAProgramWhoseLinesWouldEndInTheJournal)
{
    for (const bool isJournal : {true, false}) {
        server.copy("clipboard", "something that the user copied");
        ASSERT_TRUE(awaitPaste("something that the user copied\n"));
        OutputSocket output;
        ProgramSession other(
            {.arguments = {"--launched-at-login", "--side-by-side"},
             .environment =
                 {{"DISPLAY", server.display()},
                  {"JOURNAL_STREAM", output.name(isJournal ? 0 : 1)},
                  {"QT_QPA_PLATFORM", "xcb"}},
             .beforeStart = [&output] { ::dup2(output.writer.get(), STDOUT_FILENO); }});
        other.startWriter();
        other.startProgram();
        // It watches the store by then.
        ASSERT_TRUE(await([&other] { return std::filesystem::exists(other.autostartEntry()); }));
        ProgramSession::waitForThrottle();
        other.deliver("text Your code is 482913.");
        EXPECT_TRUE(awaitPaste("482913"));
        EXPECT_EQ(other.program().errors(), "");
        other.program().terminate();
        if (isJournal) {
            EXPECT_THAT(output.text(), IsEmpty());
        } else {
            EXPECT_THAT(output.text(), HasSubstr("Your code is 482913."));
        }
    }
}

TEST_F(Clipboard, ChangesHandsOnceForEachCode)
{
    SelectionOwnerChanges changes(server.display());
    for (const std::size_t codes : {1U, 2U}) {
        const std::string code = "48291" + std::to_string(codes);
        session.awaitOpenThrottle();
        session.deliver("text Your code is " + code + ".");
        EXPECT_EQ(session.readReaction().size(), 4U);
        ASSERT_TRUE(awaitPaste(code));
        EXPECT_EQ(changes.count(), codes);
    }
}

TEST_F(Clipboard, OffersPlainTextAloneAndMarksItAsSecret)
{
    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste("482913"));

    const auto targets = server.targets("clipboard");
    EXPECT_THAT(targets, Contains("UTF8_STRING"));
    EXPECT_THAT(
        targets,
        Each(AnyOf(
            "TARGETS",
            "MULTIPLE",
            "TIMESTAMP",
            "SAVE_TARGETS",
            "UTF8_STRING",
            "STRING",
            "TEXT",
            "COMPOUND_TEXT",
            "x-kde-passwordManagerHint",
            StartsWith("text/plain"))));
    EXPECT_EQ(server.paste("clipboard", "x-kde-passwordManagerHint"), "secret");
}

TEST_F(Clipboard, LeavesThePrimarySelectionAlone)
{
    server.copy("primary", "selected with the mouse");
    ASSERT_EQ(server.paste("primary"), "selected with the mouse\n");

    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste("482913"));
    EXPECT_EQ(server.paste("primary"), "selected with the mouse\n");
}

TEST_F(Clipboard, IsTakenAgainFromWhoeverHasTakenIt)
{
    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste("482913"));
    EXPECT_EQ(session.readReaction().size(), 4U);
    server.copy("clipboard", "mine now");
    ASSERT_TRUE(awaitPaste("mine now\n"));
    session.awaitOpenThrottle();

    session.deliver("body Your code is 59302.");
    EXPECT_TRUE(awaitPaste("59302"));
}

TEST_F(Clipboard, IsLeftAloneByMessagesWithoutACode)
{
    server.copy("clipboard", "something that the user copied");
    session.deliver("text Lunch at noon?");
    ASSERT_TRUE(session.program().awaitLine("Lunch at noon?"));
    runEventLoop(std::chrono::milliseconds(200));
    EXPECT_EQ(server.paste("clipboard"), "something that the user copied\n");
}

TEST_F(Clipboard, IsLeftAloneWhileCapturingIsOff)
{
    server.copy("clipboard", "something that the user copied");
    writeFile(session.preferences(), "[General]\ncapturingEnabled=false\n");
    session.deliver("text Your code is 482913.");
    runEventLoop(std::chrono::milliseconds(500));
    EXPECT_EQ(server.paste("clipboard"), "something that the user copied\n");
}

TEST_F(Clipboard, HoldsDigitsOfAnotherScriptAsTheyCame)
{
    const std::string code = "\xD9\xA4\xD9\xA8\xD9\xA2\xD9\xA9\xD9\xA1\xD9\xA3"; // Arabic-Indic
    session.deliver("text " + code);
    EXPECT_TRUE(awaitPaste(code));
}

/// Makes standard output a pipe that nobody reads any more.
void closeOutputReader()
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0) {
        ::_exit(1);
    }
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(ClipboardWithClosedOutputPipe, HoldsTheCodeAllTheSame)
{
    const XServer server;
    ProgramSession session(
        {.arguments = {"--launched-at-login"},
         .environment = {{"DISPLAY", server.display()}, {"QT_QPA_PLATFORM", "xcb"}},
         .beforeStart = closeOutputReader});
    session.startWriter();
    session.startProgram();
    ASSERT_TRUE(await([&session] { return std::filesystem::exists(session.preferences()); }));
    ProgramSession::waitForThrottle();

    session.deliver("text Your code is 482913.");
    EXPECT_TRUE(await([&server] { return server.paste("clipboard") == "482913"; }));
    EXPECT_TRUE(session.program().isRunning());
}

} // namespace
} // namespace orlimo
