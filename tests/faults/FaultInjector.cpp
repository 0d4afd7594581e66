// Preloaded into a program (LD_PRELOAD), it makes chosen system calls fail, as the rules in
// FaultRules.h say. A rule meets a call at the boundary to the C library: the kernel is not asked,
// and the program sees the error that the kernel would have given.
//
// Built without sanitizers and free of static objects with destructors: calls come before the
// program's first line and after its last.
#include "tests/faults/FaultRules.h"

#include <cstdarg>
#include <cstdint>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace orlimo {
namespace {

/// The function of this name that the program would have called.
template <typename Function> Function original(const char* name)
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): what dlsym is for
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

/// What `carryOut` returns, a call on `target` that moves at most the `size` bytes that it is
/// given, unless a rule has the call fail.
template <typename Target, typename CarryOut>
auto callUnlessFaulty(
    const char* call, const Target& target, CarryOut carryOut, std::size_t size = 0)
    -> decltype(carryOut(size))
{
    const Fault fault = faultOf(call, targetOf(target));
    switch (fault.kind) {
    case Fault::Kind::none:
        return carryOut(size);
    case Fault::Kind::part:
        return carryOut(size > 1 ? size / 2 : size);
    case Fault::Kind::nothing:
        return 0;
    case Fault::Kind::error:
        break;
    }
    errno = fault.error;
    return -1;
}

const char* fcntlCallName(int command)
{
    switch (command) {
    case F_SETLK:
    case F_SETLKW:
        return "lock";
    case F_GETLK:
        return "asklock";
    default:
        return "fcntl";
    }
}

} // namespace
} // namespace orlimo

/// A function of the C library that fails as `call` on `target` does where a rule says so.
#define ORLIMO_FAULTY(result, name, call, target, parameters, arguments)                           \
    result name parameters                                                                         \
    {                                                                                              \
        return orlimo::callUnlessFaulty(call, target, [&](size_t) {                                \
            return orlimo::original<decltype(&::name)>(#name) arguments;                           \
        });                                                                                        \
    }

/// The same for one that moves `size` bytes and may move fewer.
#define ORLIMO_FAULTY_MOVE(name, call, parameters, arguments)                                      \
    ssize_t name parameters                                                                        \
    {                                                                                              \
        const auto move = [&](size_t most) {                                                       \
            return orlimo::original<decltype(&::name)>(#name) arguments;                           \
        };                                                                                         \
        return orlimo::callUnlessFaulty(call, descriptor, move, size);                             \
    }

// NOLINTBEGIN: the C library's own names and signatures
extern "C" {

// Where a long has 64 bits, as here, files are large anyway: one function for each two names.
static_assert(sizeof(long) == 8);

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    const mode_t mode = creates ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return orlimo::callUnlessFaulty("open", path, [&](size_t) {
        return orlimo::original<decltype(&::open)>("open")(path, flags, mode);
    });
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

ORLIMO_FAULTY_MOVE(read, "read", (int descriptor, void* to, size_t size), (descriptor, to, most))
ORLIMO_FAULTY_MOVE(
    write, "write", (int descriptor, const void* from, size_t size), (descriptor, from, most))
ORLIMO_FAULTY_MOVE(
    pread, "pread", (int descriptor, void* to, size_t size, off_t at), (descriptor, to, most, at))
ssize_t pread64(int descriptor, void* to, size_t size, off64_t at) __attribute__((alias("pread")));
ORLIMO_FAULTY_MOVE(
    send,
    "send",
    (int descriptor, const void* from, size_t size, int flags),
    (descriptor, from, most, flags))
ORLIMO_FAULTY_MOVE(
    recv,
    "receive",
    (int descriptor, void* to, size_t size, int flags),
    (descriptor, to, most, flags))

ORLIMO_FAULTY(int, fstat, "fstat", descriptor, (int descriptor, struct stat* to), (descriptor, to))
ORLIMO_FAULTY(
    int, fstat64, "fstat", descriptor, (int descriptor, struct stat64* to), (descriptor, to))
ORLIMO_FAULTY(int, stat, "stat", path, (const char* path, struct stat* to), (path, to))
ORLIMO_FAULTY(int, stat64, "stat", path, (const char* path, struct stat64* to), (path, to))
ORLIMO_FAULTY(int, mkdir, "mkdir", path, (const char* path, mode_t mode), (path, mode))
ORLIMO_FAULTY(int, rename, "rename", to, (const char* from, const char* to), (from, to))
ORLIMO_FAULTY(
    int,
    renameat2,
    "rename",
    to,
    (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags),
    (fromFolder, from, toFolder, to, flags))
ORLIMO_FAULTY(int, link, "link", to, (const char* from, const char* to), (from, to))
ORLIMO_FAULTY(
    int,
    linkat,
    "link",
    to,
    (int fromFolder, const char* from, int toFolder, const char* to, int flags),
    (fromFolder, from, toFolder, to, flags))
ORLIMO_FAULTY(int, unlink, "unlink", path, (const char* path), (path))
ORLIMO_FAULTY(int, fsync, "fsync", descriptor, (int descriptor), (descriptor))
ORLIMO_FAULTY(int, fdatasync, "fsync", descriptor, (int descriptor), (descriptor))
ORLIMO_FAULTY(int, inotify_init1, "inotify_init", "inotify", (int flags), (flags))
ORLIMO_FAULTY(
    int,
    inotify_add_watch,
    "inotify_add_watch",
    path,
    (int descriptor, const char* path, uint32_t mask),
    (descriptor, path, mask))
ORLIMO_FAULTY(
    int,
    connect,
    "connect",
    orlimo::nameOf(address, length),
    (int descriptor, const struct sockaddr* address, socklen_t length),
    (descriptor, address, length))
ORLIMO_FAULTY(
    ssize_t,
    sendmsg,
    "send",
    descriptor,
    (int descriptor, const struct msghdr* message, int flags),
    (descriptor, message, flags))
ORLIMO_FAULTY(
    ssize_t,
    writev,
    "send",
    descriptor,
    (int descriptor, const struct iovec* parts, int count),
    (descriptor, parts, count))
ORLIMO_FAULTY(
    ssize_t,
    recvmsg,
    "receive",
    descriptor,
    (int descriptor, struct msghdr* message, int flags),
    (descriptor, message, flags))

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status)
{
    const auto carryOut = [&](size_t) {
        return orlimo::original<decltype(&::statx)>("statx")(folder, path, flags, mask, status);
    };
    const bool asksDescriptor = path == nullptr || *path == '\0';
    return asksDescriptor ? orlimo::callUnlessFaulty("fstat", folder, carryOut)
                          : orlimo::callUnlessFaulty("stat", path, carryOut);
}

int fcntl(int descriptor, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return orlimo::callUnlessFaulty(orlimo::fcntlCallName(command), descriptor, [&](size_t) {
        return orlimo::original<decltype(&::fcntl)>("fcntl")(descriptor, command, argument);
    });
}
int fcntl64(int descriptor, int command, ...) __attribute__((alias("fcntl")));

void* mmap(void* address, size_t length, int protection, int flags, int descriptor, off_t offset)
{
    const auto map = [&](size_t) {
        return reinterpret_cast<intptr_t>(orlimo::original<decltype(&::mmap)>("mmap")(
            address, length, protection, flags, descriptor, offset));
    };
    return reinterpret_cast<void*>(
        descriptor < 0 ? map(0) : orlimo::callUnlessFaulty("mmap", descriptor, map));
}
void* mmap64(void*, size_t, int, int, int, off64_t) __attribute__((alias("mmap")));

int pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument)
{
    // Returns the error itself. A thread is known by the library or program that starts it.
    Dl_info starter{};
    const bool isKnown = ::dladdr(__builtin_return_address(0), &starter) != 0;
    const orlimo::Fault fault = orlimo::faultOf("pthread_create", isKnown ? starter.dli_fname : "");
    return fault.kind != orlimo::Fault::Kind::none
               ? fault.error
               : orlimo::original<decltype(&::pthread_create)>("pthread_create")(
                     thread, attributes, body, argument);
}

} // extern "C"
// NOLINTEND
