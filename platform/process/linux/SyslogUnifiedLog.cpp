#include "platform/process/Formatted.h"
#include "platform/process/UnifiedLog.h"

#include <utility>

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

/// Entries in the system's journal, under the program's own name. The connection is libc's, opened
/// at the first entry.
class SyslogUnifiedLog final : public UnifiedLog
{
public:
    SyslogUnifiedLog(std::string subsystem, std::string category)
        : origin("[" + std::move(subsystem) + ":" + std::move(category) + "] ")
    {}

    void error(std::string_view format, std::string_view first, std::string_view second) override
    {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): only asks for the mask
        if ((::setlogmask(0) & LOG_MASK(LOG_ERR)) == 0) {
            return;
        }
        std::string entry = origin + formatted(format, {first, second});
        blankOutControlCharacters(entry);
        ::syslog(LOG_USER | LOG_ERR, "%s", entry.c_str());
    }

private:
    const std::string origin;
};

} // namespace

std::unique_ptr<UnifiedLog> UnifiedLog::create(std::string subsystem, std::string category)
{
    return std::make_unique<SyslogUnifiedLog>(std::move(subsystem), std::move(category));
}

} // namespace orlimo
