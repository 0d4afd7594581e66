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

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/eventfd.h>
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

/// A call that moves `size` bytes by `move`, which is told how many to move at the most.
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

ssize_t read(int descriptor, void* buffer, size_t size)
{
    return orlimo::moved("read", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::read)>("read")(descriptor, buffer, most);
    });
}

ssize_t write(int descriptor, const void* buffer, size_t size)
{
    return orlimo::moved("write", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::write)>("write")(descriptor, buffer, most);
    });
}

ssize_t pread(int descriptor, void* buffer, size_t size, off_t offset)
{
    return orlimo::moved("pread", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::pread)>("pread")(descriptor, buffer, most, offset);
    });
}

ssize_t pread64(int descriptor, void* buffer, size_t size, off64_t offset)
{
    return orlimo::moved("pread", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::pread64)>("pread64")(descriptor, buffer, most, offset);
    });
}

ssize_t pwrite64(int descriptor, const void* buffer, size_t size, off64_t offset)
{
    return orlimo::moved("pwrite", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::pwrite64)>("pwrite64")(
            descriptor, buffer, most, offset);
    });
}

int fstat(int descriptor, struct stat* status)
{
    return orlimo::callUnlessFaulty("fstat", descriptor, [&] {
        return orlimo::original<decltype(&::fstat)>("fstat")(descriptor, status);
    });
}

int fstat64(int descriptor, struct stat64* status)
{
    return orlimo::callUnlessFaulty("fstat", descriptor, [&] {
        return orlimo::original<decltype(&::fstat64)>("fstat64")(descriptor, status);
    });
}

int stat(const char* path, struct stat* status)
{
    return orlimo::callUnlessFaulty(
        "stat", path, [&] { return orlimo::original<decltype(&::stat)>("stat")(path, status); });
}

int stat64(const char* path, struct stat64* status)
{
    return orlimo::callUnlessFaulty("stat", path, [&] {
        return orlimo::original<decltype(&::stat64)>("stat64")(path, status);
    });
}

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

int mkdir(const char* path, mode_t mode)
{
    return orlimo::callUnlessFaulty(
        "mkdir", path, [&] { return orlimo::original<decltype(&::mkdir)>("mkdir")(path, mode); });
}

int rename(const char* from, const char* to)
{
    return orlimo::callUnlessFaulty(
        "rename", to, [&] { return orlimo::original<decltype(&::rename)>("rename")(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags)
{
    return orlimo::callUnlessFaulty("rename", to, [&] {
        return orlimo::original<decltype(&::renameat2)>("renameat2")(
            fromFolder, from, toFolder, to, flags);
    });
}

int link(const char* from, const char* to)
{
    return orlimo::callUnlessFaulty(
        "link", to, [&] { return orlimo::original<decltype(&::link)>("link")(from, to); });
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags)
{
    return orlimo::callUnlessFaulty("link", to, [&] {
        return orlimo::original<decltype(&::linkat)>("linkat")(
            fromFolder, from, toFolder, to, flags);
    });
}

int unlink(const char* path)
{
    return orlimo::callUnlessFaulty(
        "unlink", path, [&] { return orlimo::original<decltype(&::unlink)>("unlink")(path); });
}

int fsync(int descriptor)
{
    return orlimo::callUnlessFaulty("fsync", descriptor, [&] {
        return orlimo::original<decltype(&::fsync)>("fsync")(descriptor);
    });
}

int fdatasync(int descriptor)
{
    return orlimo::callUnlessFaulty("fsync", descriptor, [&] {
        return orlimo::original<decltype(&::fdatasync)>("fdatasync")(descriptor);
    });
}

int inotify_init1(int flags)
{
    return orlimo::callUnlessFaulty("inotify_init", "inotify", [&] {
        return orlimo::original<decltype(&::inotify_init1)>("inotify_init1")(flags);
    });
}

int inotify_add_watch(int descriptor, const char* path, uint32_t mask)
{
    return orlimo::callUnlessFaulty("inotify_add_watch", path, [&] {
        return orlimo::original<decltype(&::inotify_add_watch)>("inotify_add_watch")(
            descriptor, path, mask);
    });
}

int eventfd(unsigned count, int flags)
{
    return orlimo::callUnlessFaulty("eventfd", "eventfd", [&] {
        return orlimo::original<decltype(&::eventfd)>("eventfd")(count, flags);
    });
}

int memfd_create(const char* name, unsigned flags)
{
    return orlimo::callUnlessFaulty("memfd_create", name, [&] {
        return orlimo::original<decltype(&::memfd_create)>("memfd_create")(name, flags);
    });
}

int pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument)
{
    // Answers the error itself. A thread is known by the library or program that starts it.
    Dl_info starter{};
    const bool isKnown = ::dladdr(__builtin_return_address(0), &starter) != 0;
    const orlimo::Fault fault = orlimo::faultOf("pthread_create", isKnown ? starter.dli_fname : "");
    return fault.kind != orlimo::Fault::Kind::none
               ? fault.error
               : orlimo::original<decltype(&::pthread_create)>("pthread_create")(
                     thread, attributes, body, argument);
}

int socket(int domain, int type, int protocol)
{
    return orlimo::callUnlessFaulty("socket", "socket", [&] {
        return orlimo::original<decltype(&::socket)>("socket")(domain, type, protocol);
    });
}

int connect(int descriptor, const struct sockaddr* address, socklen_t length)
{
    return orlimo::callUnlessFaulty("connect", orlimo::nameOf(address, length), [&] {
        return orlimo::original<decltype(&::connect)>("connect")(descriptor, address, length);
    });
}

ssize_t sendmsg(int descriptor, const struct msghdr* message, int flags)
{
    return orlimo::callUnlessFaulty("send", descriptor, [&] {
        return orlimo::original<decltype(&::sendmsg)>("sendmsg")(descriptor, message, flags);
    });
}

ssize_t send(int descriptor, const void* buffer, size_t size, int flags)
{
    return orlimo::moved("send", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::send)>("send")(descriptor, buffer, most, flags);
    });
}

ssize_t writev(int descriptor, const struct iovec* parts, int count)
{
    return orlimo::callUnlessFaulty("send", descriptor, [&] {
        return orlimo::original<decltype(&::writev)>("writev")(descriptor, parts, count);
    });
}

ssize_t recvmsg(int descriptor, struct msghdr* message, int flags)
{
    return orlimo::callUnlessFaulty("receive", descriptor, [&] {
        return orlimo::original<decltype(&::recvmsg)>("recvmsg")(descriptor, message, flags);
    });
}

ssize_t recv(int descriptor, void* buffer, size_t size, int flags)
{
    return orlimo::moved("receive", descriptor, size, [&](size_t most) {
        return orlimo::original<decltype(&::recv)>("recv")(descriptor, buffer, most, flags);
    });
}

DIR* opendir(const char* path)
{
    const orlimo::Fault fault = orlimo::faultOf("opendir", path);
    if (fault.kind != orlimo::Fault::Kind::none) {
        (void)orlimo::failed(fault);
        return nullptr;
    }
    return orlimo::original<decltype(&::opendir)>("opendir")(path);
}

} // extern "C"
// NOLINTEND
