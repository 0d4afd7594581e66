#include "tests/desktop/sessions/DesktopProgram.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <iterator>
#include <string>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orlimo {
namespace {

#if defined(__x86_64__)
constexpr unsigned architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned architecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned architecture = 0;
#endif

constexpr int notPossible = 77;

/// Has the kernel kill this process, the program that it becomes, and whatever that starts, the
/// moment it asks for a socket that is not local to the machine, or for one that goes around that.
/// Ends the process with status 77 where the kernel does not do that.
void allowUnixSocketsOnly()
{
    // The calls of x32, which have numbers of their own from here on.
    constexpr unsigned otherNumbers = 0x40000000;
    constexpr auto load = static_cast<unsigned short>(BPF_LD | BPF_W | BPF_ABS);
    constexpr auto ifEqual = static_cast<unsigned short>(BPF_JMP | BPF_JEQ | BPF_K);
    constexpr auto ifAtLeast = static_cast<unsigned short>(BPF_JMP | BPF_JGE | BPF_K);
    constexpr auto result = static_cast<unsigned short>(BPF_RET | BPF_K);
    // The lower half of the first argument; both machines have it first.
    constexpr unsigned family = offsetof(seccomp_data, args);
    sock_filter program[] = {
        BPF_STMT(load, offsetof(seccomp_data, arch)),
        BPF_JUMP(ifEqual, architecture, 0, 7),
        BPF_STMT(load, offsetof(seccomp_data, nr)),
        BPF_JUMP(ifAtLeast, otherNumbers, 5, 0),
        BPF_JUMP(ifEqual, SYS_io_uring_setup, 4, 0),
        BPF_JUMP(ifEqual, SYS_socket, 0, 2),
        BPF_STMT(load, family),
        BPF_JUMP(ifEqual, AF_UNIX, 0, 1),
        BPF_STMT(result, SECCOMP_RET_ALLOW),
        BPF_STMT(result, SECCOMP_RET_KILL_PROCESS),
    };
    const sock_fprog filter{
        .len = static_cast<unsigned short>(std::size(program)), .filter = program};
    if (architecture == 0 || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
    {
        ::_exit(notPossible);
    }
}

/// How a program ends that may use local sockets only and asks for one of `family`.
ChildProcess::End endOfSocket(const std::string& family)
{
    const std::string ask = "import socket; socket.socket(socket." + family + ")";
    return ChildProcess(
               "/usr/bin/python3", {.arguments = {"-c", ask}, .beforeStart = allowUnixSocketsOnly})
        .awaitEnd();
}

TEST(Network, IsNeverUsed)
{
    const auto end = endOfSocket("AF_UNIX");
    if (end.status == notPossible) {
        GTEST_SKIP() << "the kernel does not filter system calls";
    }
    EXPECT_EQ(end.status, 0);
    for (const char* family : {"AF_INET", "AF_INET6", "AF_NETLINK"}) {
        EXPECT_EQ(endOfSocket(family).signal, SIGSYS) << family;
    }

    // Everything that the program does until it quits.
    DesktopProgram program({.beforeStart = allowUnixSocketsOnly});
    program.start();
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

} // namespace
} // namespace orlimo
