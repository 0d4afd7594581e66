#include "platform/process/LoginItemLog.h"

#include <string>

#include <syslog.h>

namespace orlimo {

namespace {

/// A line break would look like the beginning of another entry, a NUL like the end of this one.
void blankOutControlCharacters(std::string& text)
{
    for (char& character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            character = ' ';
        }
    }
}

} // namespace

void logLoginItemError(std::string_view operation, std::string_view reason)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): only reads the mask
    if ((::setlogmask(0) & LOG_MASK(LOG_ERR)) == 0) {
        return;
    }
    std::string entry = "[app.orlimo.Orlimo.LaunchAtLogin:main] Failed to ";
    entry.append(operation).append(" launch at login: ").append(reason);
    blankOutControlCharacters(entry);
    ::syslog(LOG_USER | LOG_ERR, "%s", entry.c_str());
}

} // namespace orlimo
