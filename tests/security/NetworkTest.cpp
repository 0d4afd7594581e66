#include "tests/desktop/sessions/DesktopProgram.h"

#include <gtest/gtest.h>

#include <csignal>
namespace orlimo {
namespace {

std::vector<std::string> withUnixSocketsOnly()
{
    return {ORLIMO_UNIX_SOCKETS_ONLY};
}

ChildProcess::End endOf(std::vector<std::string> command, const std::vector<std::string>& last)
{
    command.insert(command.end(), last.begin(), last.end());
    return ChildProcess(command.front(), {.arguments = {command.begin() + 1, command.end()}})
        .awaitEnd();
}

/// Everything that the program does until it quits.
void useWholeProgram(DesktopProgram& program)
{
    ProgramSession::waitForThrottle();
    program.session().deliver("text Your code is 482913.");
    EXPECT_TRUE(program.awaitPaste("482913"));
    program.open();
    EXPECT_TRUE(program.awaitShown("label", "482913"));
    program.click("push button", "About");
    EXPECT_TRUE(program.awaitClosed());
    program.open();
    program.click("push button", "Quit");
    EXPECT_EQ(program.process().awaitEnd().status, 0);
}

TEST(Network, IsNeverUsed)
{
    constexpr int notPossible = 77;
    if (endOf(withUnixSocketsOnly(), {"/usr/bin/true"}).status == notPossible) {
        GTEST_SKIP() << "the kernel does not filter system calls";
    }
    // Who asks is killed.
    const std::string ask = "import socket; socket.socket(socket.AF_UNIX); socket.socket(";
    for (const char* family : {"socket.AF_INET", "socket.AF_INET6", "socket.AF_NETLINK"}) {
        EXPECT_EQ(
            endOf(withUnixSocketsOnly(), {"/usr/bin/python3", "-c", ask + family + ")"}).signal,
            SIGSYS)
            << family;
    }
    EXPECT_EQ(
        endOf(withUnixSocketsOnly(), {"/usr/bin/python3", "-c", ask + "socket.AF_UNIX)"}).status,
        0);

    DesktopProgram program({.launcher = withUnixSocketsOnly()});
    program.start();
    useWholeProgram(program);
}

} // namespace
} // namespace orlimo
