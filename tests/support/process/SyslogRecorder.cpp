// Preloaded into a program (LD_PRELOAD), it replaces syslog(3): each entry becomes one
// line of the file that the variable ORLIMO_RECORDED_SYSLOG names, and none reaches the system's
// log. A line is the priority with its facility as a decimal number (11 for an error of a user's
// program), a blank, and the text; a control character in the text stands there as \x and two
// hexadecimal digits. What the log mask excludes is not recorded, as libc would not send it.
// Without the variable, entries are lost.
//
// Built without sanitizers. A program built with the address sanitizer runs with it when
// ASAN_OPTIONS contains verify_asan_link_order=0.
#include "tests/support/process/SyslogReplacement.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

namespace orlimo {
namespace {

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

void record(int priority, const std::string& text)
{
    const char* const file = std::getenv("ORLIMO_RECORDED_SYSLOG");
    if (file == nullptr || (::setlogmask(0) & LOG_MASK(LOG_PRI(priority))) == 0) {
        return;
    }
    const std::string line = std::to_string(priority) + " " + onOneLine(text) + "\n";
    const int descriptor = ::open(file, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0 || ::write(descriptor, line.data(), line.size()) < 0) {
        std::perror(file);
    }
    (void)::close(descriptor);
}

/// Recording begins when the library is loaded.
[[maybe_unused]] const bool isRecording = (setSyslogHandler(record), true);

} // namespace
} // namespace orlimo
