#include "tests/desktop/sessions/DesktopProgram.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include <unistd.h>

namespace orlimo {
namespace {

/// Has the program after it see no network at all, not even the machine's own.
std::vector<std::string> withoutNetwork()
{
    std::vector<std::string> command{"/usr/bin/unshare", "--net"};
    if (::geteuid() != 0) {
        command.insert(command.end(), {"--user", "--map-current-user"});
    }
    return command;
}

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

std::filesystem::path networkOf(const std::string& process)
{
    return std::filesystem::read_symlink("/proc/" + process + "/ns/net");
}

/// Everything that the program does, from its start to its end.
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

TEST(Network, IsNotNeededForAnything)
{
    if (endOf(withoutNetwork(), {"/usr/bin/true"}).status != 0) {
        GTEST_SKIP() << "the kernel gives this user no network namespace";
    }
    DesktopProgram program({.launcher = withoutNetwork()});
    program.start();
    EXPECT_NE(networkOf(std::to_string(program.process().processId())), networkOf("self"));
    useWholeProgram(program);
}

TEST(Network, IsNeverAskedFor)
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
