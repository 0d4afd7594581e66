// Loaded before libc (LD_PRELOAD), it takes the place of syslog(3): each entry becomes one line of
// the file that the variable ORLIMO_RECORDED_SYSLOG names, and none reaches the system's log. A
// line is the priority with its facility as a decimal number, a blank, and the text; a control
// character in the text stands there as \x and two hexadecimal digits. What the log mask excludes
// is not recorded, as libc would not send it. Without the variable, entries are lost.
//
// Built without sanitizers. A program built with the address sanitizer runs with it when
// ASAN_OPTIONS contains verify_asan_link_order=0.
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

namespace {

std::string onOneLine(const char* text)
{
    std::string line;
    for (; *text != '\0'; ++text) {
        const auto byte = static_cast<unsigned char>(*text);
        if (byte >= 0x20 && byte != 0x7F) {
            line += *text;
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
    const char* const file = std::getenv("ORLIMO_RECORDED_SYSLOG");
    char* text = nullptr;
    if (file != nullptr && (::setlogmask(0) & LOG_MASK(LOG_PRI(priority))) != 0 &&
        ::vasprintf(&text, format, arguments) >= 0)
    {
        const int withFacility = (priority & LOG_FACMASK) == 0 ? priority | LOG_USER : priority;
        const std::string line = std::to_string(withFacility) + " " + onOneLine(text) + "\n";
        const int descriptor = ::open(file, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
        if (descriptor < 0 || ::write(descriptor, line.data(), line.size()) < 0) {
            std::perror(file);
        }
        (void)::close(descriptor);
        std::free(text);
    }
    errno = errorBefore;
}

} // namespace

extern "C" {

void vsyslog(int priority, const char* format, std::va_list arguments)
{
    record(priority, format, arguments);
}

void syslog(int priority, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    record(priority, format, arguments);
    va_end(arguments);
}

// What calls become in programs that are compiled with _FORTIFY_SOURCE.
void __vsyslog_chk(int priority, int /*flag*/, const char* format, std::va_list arguments)
{
    record(priority, format, arguments);
}

void __syslog_chk(int priority, int /*flag*/, const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    record(priority, format, arguments);
    va_end(arguments);
}

} // extern "C"
