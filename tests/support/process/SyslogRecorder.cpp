// Replaces syslog(3), in a test program that captures its entries and, preloaded (LD_PRELOAD), in a
// program under test: each entry becomes one line of the file that the variable
// ORLIMO_RECORDED_SYSLOG names, and none reaches the system's log. A line is the priority with its
// facility as a decimal number (11 for an error of a user's program), a blank, and the text; a
// control character in the text stands there as \x and two hexadecimal digits. Without the
// variable, entries are lost.
//
// Preloaded it is built without sanitizers. A program built with the address sanitizer runs with it
// when ASAN_OPTIONS contains verify_asan_link_order=0.
#include "tests/support/process/CapturedSyslog.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

namespace orlimo {

namespace {

constexpr const char* fileVariable = "ORLIMO_RECORDED_SYSLOG";

std::string onOneLine(const std::string& text)
{
    std::string line;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte != 0x7F) {
            line += character;
        } else {
            std::array<char, 5> escaped{};
            (void)std::snprintf(escaped.data(), escaped.size(), "\\x%02X", byte);
            line += escaped.data();
        }
    }
    return line;
}

void record(int priority, const char* format, std::va_list arguments)
{
    const int errorBefore = errno;
    const char* const file = std::getenv(fileVariable);
    char* text = nullptr;
    if (file != nullptr && ::vasprintf(&text, format, arguments) >= 0) {
        const int whole = (priority & LOG_FACMASK) == 0 ? priority | LOG_USER : priority;
        const std::string line = std::to_string(whole) + " " + onOneLine(text) + "\n";
        std::free(text);
        const int descriptor = ::open(file, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
        if (descriptor < 0 || ::write(descriptor, line.data(), line.size()) < 0) {
            std::perror(file);
        }
        (void)::close(descriptor);
    }
    errno = errorBefore;
}

} // namespace

CapturedSyslog::CapturedSyslog()
    : file(std::tmpfile())
{
    ::setenv(fileVariable, ("/proc/self/fd/" + std::to_string(::fileno(file))).c_str(), 1);
}

CapturedSyslog::~CapturedSyslog()
{
    ::unsetenv(fileVariable);
    (void)std::fclose(file);
}

std::vector<CapturedSyslog::Entry> CapturedSyslog::entries()
{
    std::vector<Entry> all;
    std::ifstream stream(std::getenv(fileVariable));
    for (Entry entry; stream >> entry.priority && std::getline(stream.ignore(), entry.text);) {
        all.push_back(entry);
    }
    return all;
}

} // namespace orlimo

// Found before libc's own, in a program as in a library that is preloaded into one.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp)
extern "C" {

void syslog(int priority, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    orlimo::record(priority, format, arguments);
    va_end(arguments);
}

// What the call becomes in a program that is compiled with _FORTIFY_SOURCE.
void __syslog_chk(int priority, int /*flag*/, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    orlimo::record(priority, format, arguments);
    va_end(arguments);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp)
