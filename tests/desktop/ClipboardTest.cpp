#include "platform/files/UniqueFd.h"
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

    [[nodiscard]] testing::AssertionResult awaitPaste(const std::string& expected)
    {
        testing::AssertionResult result = server.awaitPaste(expected);
        return result ? result
                      : result << "; the program printed\n"
                               << session.program().output() << session.program().errors();
    }

    XServer server;
    ProgramSession session{
        {// No window opens by itself then, for want of a tray.
         .arguments = {"--launched-at-login"},
         .environment = {{"DISPLAY", server.display()}, {"QT_QPA_PLATFORM", "xcb"}}}};
};

TEST_F(Clipboard, HoldsTheCodeAloneAsPlainTextMarkedAsSecret)
{
    server.copy("clipboard", "something that the user copied");
    server.copy("primary", "selected with the mouse");
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
    EXPECT_EQ(server.paste("primary"), "selected with the mouse\n");
}

TEST_F(Clipboard, IsLeftAloneByMessagesWithoutACodeAndTakenAgainFromWhoeverHasTakenIt)
{
    server.copy("clipboard", "something that the user copied");
    session.deliver("text Lunch at noon?");
    ASSERT_TRUE(session.program().awaitLine("Lunch at noon?"));
    runEventLoop(std::chrono::milliseconds(200));
    EXPECT_EQ(server.paste("clipboard"), "something that the user copied\n");

    ProgramSession::waitForThrottle();
    session.deliver("text Your code is 482913.");
    ASSERT_TRUE(awaitPaste("482913"));
    server.copy("clipboard", "mine now");
    ProgramSession::waitForThrottle();
    session.deliver("body Your code is 59302.");
    EXPECT_TRUE(awaitPaste("59302"));
}

TEST(ClipboardOfService, HoldsTheCodeThatIsNotPrintedToTheJournal)
{
    std::array<int, 2> sockets{-1, -1};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets.data()), 0);
    const UniqueFd reader(sockets[0]);
    UniqueFd writer(sockets[1]);
    struct stat status
    {};
    ASSERT_EQ(::fstat(writer.get(), &status), 0);
    const XServer server;
    {
        ProgramSession session(
            {.arguments = {"--launched-at-login"},
             .environment =
                 {{"DISPLAY", server.display()},
                  {"JOURNAL_STREAM",
                   std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino)},
                  {"QT_QPA_PLATFORM", "xcb"}},
             .beforeStart = [&writer] { ::dup2(writer.get(), STDOUT_FILENO); }});
        session.startWriter();
        session.startProgram();
        // It watches the store by then.
        ASSERT_TRUE(await([&] { return std::filesystem::exists(session.autostartEntry()); }));
        ProgramSession::waitForThrottle();
        session.deliver("text Your code is 482913.");
        EXPECT_TRUE(server.awaitPaste("482913"));
        EXPECT_EQ(session.program().errors(), "");
    }
    writer = UniqueFd();
    char byte = 0;
    EXPECT_EQ(::read(reader.get(), &byte, 1), 0) << "something was printed";
}

} // namespace
} // namespace orlimo
