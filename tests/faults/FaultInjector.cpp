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

/// The result of a call that fails with the error of `fault`.
int failed(const Fault& fault)
{
    errno = fault.error;
    return -1;
}

/// A part of `size`, for a call that is to carry out a part of its work only.
std::size_t partOf(std::size_t size)
{
    return size > 1 ? size / 2 : size;
}

/// A call that moves `size` bytes by `move`, to which it passes the limit.
template <typename Move>
ssize_t moved(const char* call, int descriptor, std::size_t size, Move move)
{
    const Fault fault = faultOf(call, targetOf(descriptor));
    switch (fault.kind) {
    case Fault::Kind::none:
        return move(size);
    case Fault::Kind::part:
        return move(partOf(size));
    case Fault::Kind::nothing:
        return 0;
    case Fault::Kind::error:
        return failed(fault);
    }
    return failed(fault);
}

/// A call that `carryOut` makes unless it is to fail.
template <typename Target, typename CarryOut>
auto callUnlessFaulty(const char* call, const Target& target, CarryOut carryOut)
{
    const Fault fault = faultOf(call, targetOf(target));
    switch (fault.kind) {
    case Fault::Kind::none:
    case Fault::Kind::part:
        break;
    case Fault::Kind::nothing:
        return decltype(carryOut())(0);
    case Fault::Kind::error:
        return decltype(carryOut())(failed(fault));
    }
    return carryOut();
}

mode_t modeIn(va_list arguments, int flags)
{
    const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return creates ? va_arg(arguments, mode_t) : 0;
}

int opened(const char* name, const char* path, int flags, mode_t mode)
{
    return callUnlessFaulty("open", path, [&] {
        return original<int (*)(const char*, int, ...)>(name)(path, flags, mode);
    });
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

int controlled(const char* name, int descriptor, int command, void* argument)
{
    return callUnlessFaulty(fcntlCallName(command), descriptor, [&] {
        return original<int (*)(int, int, ...)>(name)(descriptor, command, argument);
    });
}

void* mapped(
    const char* name,
    void* address,
    std::size_t length,
    int protection,
    int flags,
    int descriptor,
    std::int64_t offset)
{
    if (descriptor >= 0) {
        const Fault fault = faultOf("mmap", targetOf(descriptor));
        if (fault.kind != Fault::Kind::none) {
            (void)failed(fault);
            return MAP_FAILED;
        }
    }
    using Function = void* (*)(void*, std::size_t, int, int, int, std::int64_t);
    return original<Function>(name)(address, length, protection, flags, descriptor, offset);
}

} // namespace
} // namespace orlimo

/// A function of the C library that fails as `call` on `target` does where a rule says so.
#define ORLIMO_FAULTY(result, name, call, target, parameters, arguments)                           \
    result name parameters                                                                         \
    {                                                                                              \
        return orlimo::callUnlessFaulty(                                                           \
            call, target, [&] { return orlimo::original<decltype(&::name)>(#name) arguments; });   \
    }

/// The same for one that moves `size` bytes and may move fewer.
#define ORLIMO_FAULTY_MOVE(name, call, parameters, arguments)                                      \
    ssize_t name parameters                                                                        \
    {                                                                                              \
        return orlimo::moved(call, descriptor, size, [&](size_t most) {                            \
            return orlimo::original<decltype(&::name)>(#name) arguments;                           \
        });                                                                                        \
    }

// NOLINTBEGIN: the C library's own names and signatures
extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = orlimo::modeIn(arguments, flags);
    va_end(arguments);
    return orlimo::opened("open", path, flags, mode);
}

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = orlimo::modeIn(arguments, flags);
    va_end(arguments);
    return orlimo::opened("open64", path, flags, mode);
}

ORLIMO_FAULTY_MOVE(read, "read", (int descriptor, void* to, size_t size), (descriptor, to, most))
ORLIMO_FAULTY_MOVE(
    write, "write", (int descriptor, const void* from, size_t size), (descriptor, from, most))
ORLIMO_FAULTY_MOVE(
    pread, "pread", (int descriptor, void* to, size_t size, off_t at), (descriptor, to, most, at))
ORLIMO_FAULTY_MOVE(
    pread64,
    "pread",
    (int descriptor, void* to, size_t size, off64_t at),
    (descriptor, to, most, at))
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
    const auto carryOut = [&] {
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
    return orlimo::controlled("fcntl", descriptor, command, argument);
}

int fcntl64(int descriptor, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    return orlimo::controlled("fcntl64", descriptor, command, argument);
}

void* mmap(void* address, size_t length, int protection, int flags, int descriptor, off_t offset)
{
    return orlimo::mapped("mmap", address, length, protection, flags, descriptor, offset);
}

void* mmap64(
    void* address, size_t length, int protection, int flags, int descriptor, off64_t offset)
{
    return orlimo::mapped("mmap64", address, length, protection, flags, descriptor, offset);
}

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
