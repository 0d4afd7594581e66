// Functions of the macOS C library that are missing here.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include <fcntl.h>
#include <pthread.h>
#include <sys/param.h>
#include <unistd.h>

#undef fcntl

unsigned long long clock_gettime_nsec_np(clockid_t clock)
{
    timespec time{};
    if (clock != CLOCK_UPTIME_RAW || ::clock_gettime(CLOCK_MONOTONIC, &time) != 0) {
        return 0;
    }
    return static_cast<unsigned long long>(time.tv_sec) * 1'000'000'000 +
           static_cast<unsigned long long>(time.tv_nsec);
}

int fcntl_with_path(int descriptor, int command, ...)
{
    // Every command takes at most one argument, at most as wide as a pointer.
    va_list arguments;
    va_start(arguments, command);
    auto* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (command != F_GETPATH) {
        return ::fcntl(descriptor, command, argument);
    }
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    // The buffer was empty before.
    return ::readlink(link.c_str(), static_cast<char*>(argument), MAXPATHLEN - 1) < 0 ? -1 : 0;
}

// Replaces this system's own, which has no such folder; it is taken from the environment.
std::size_t confstr(int name, char* buffer, std::size_t size) noexcept
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): set only on the tests' main thread
    const char* const folder = std::getenv("ORLIMO_USER_CACHE_FOLDER");
    if (name != _CS_DARWIN_USER_CACHE_DIR || folder == nullptr) {
        errno = EINVAL;
        return 0;
    }
    return static_cast<std::size_t>(std::snprintf(buffer, size, "%s", folder)) + 1;
}

// What GNUstep and its runtime keep until exit, mainly tables of classes and selectors, is not a
// leak of the program. Read by the leak sanitizer. NOLINTBEGIN(bugprone-reserved-identifier): the
// names are the sanitizer's
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libobjc.so\nleak:libgnustep-base.so\nleak:libgnustep-gui.so\n";
}
extern "C" const char* __lsan_default_options()
{
    return "print_suppressions=0";
}
// NOLINTEND(bugprone-reserved-identifier)
