// Runs the command on its command line in such a way that the kernel kills it, and whatever it
// starts, the moment it asks for a socket that is not local to the machine, or for one that goes
// around that. Ends with status 77 where the kernel does not do that.
#include <cstddef>
#include <cstdio>
#include <iterator>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int notPossible = 77;

#if defined(__x86_64__)
constexpr unsigned architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned architecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned architecture = 0;
#endif

/// The calls of x32, which have numbers of their own from here on.
constexpr unsigned otherNumbers = 0x40000000;

bool allowUnixSocketsOnly()
{
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
    return architecture != 0 && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        (void)std::fputs("a command is needed\n", stderr);
        return 2;
    }
    if (!allowUnixSocketsOnly()) {
        std::perror("no filter of system calls");
        return notPossible;
    }
    ::execvp(argv[1], argv + 1);
    std::perror(argv[1]);
    return 1;
}
