#include "tests/support/process/SyslogReplacement.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include <syslog.h>

namespace orlimo {

namespace {

std::atomic<SyslogHandler> currentHandler = nullptr;

void take(int priority, const char* format, std::va_list arguments)
{
    const int errorBefore = errno;
    const SyslogHandler handler = currentHandler;
    char* text = nullptr;
    if (handler != nullptr && ::vasprintf(&text, format, arguments) >= 0) {
        handler((priority & LOG_FACMASK) == 0 ? priority | LOG_USER : priority, text);
        std::free(text);
    }
    errno = errorBefore;
}

} // namespace

void setSyslogHandler(SyslogHandler handler)
{
    currentHandler = handler;
}

} // namespace orlimo

// Found before libc's own, in a program as in a library that is preloaded into one.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp)
extern "C" {

void vsyslog(int priority, const char* format, std::va_list arguments)
{
    orlimo::take(priority, format, arguments);
}

void syslog(int priority, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    orlimo::take(priority, format, arguments);
    va_end(arguments);
}

// What the calls become in a program that is compiled with _FORTIFY_SOURCE.
void __vsyslog_chk(int priority, int /*flag*/, const char* format, std::va_list arguments)
{
    orlimo::take(priority, format, arguments);
}

void __syslog_chk(int priority, int /*flag*/, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    orlimo::take(priority, format, arguments);
    va_end(arguments);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp)
