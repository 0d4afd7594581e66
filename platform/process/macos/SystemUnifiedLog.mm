#include "platform/process/Formatted.h"
#include "platform/process/UnifiedLog.h"
#include "platform/process/macos/Retained.h"

#import <Foundation/Foundation.h>
#import <os/log.h>

namespace orlimo {

namespace {

/// Entries in the system's unified log, with the arguments as private as the log keeps every text
/// that is not part of the program.
class SystemUnifiedLog final : public UnifiedLog
{
public:
    SystemUnifiedLog(const std::string& subsystem, const std::string& category)
        : log(Retained<os_log_t>::adopt(os_log_create(subsystem.c_str(), category.c_str())))
    {}

    void error(std::string_view format, std::string_view first, std::string_view second) override
    {
        if (!os_log_type_enabled(log.get(), OS_LOG_TYPE_ERROR)) {
            return;
        }
        // The log takes a format from the program's file only and stores it once: each one in use
        // stands here a second time.
        if (format == "Failed to %s launch at login: %s") {
            const std::string operation(first);
            const std::string reason(second);
            os_log_error(
                log.get(), "Failed to %s launch at login: %s", operation.c_str(), reason.c_str());
        } else {
            const std::string entry = formatted(format, {first, second});
            os_log_error(log.get(), "%s", entry.c_str());
        }
    }

private:
    const Retained<os_log_t> log;
};

} // namespace

std::unique_ptr<UnifiedLog> UnifiedLog::create(std::string subsystem, std::string category)
{
    @autoreleasepool {
        return std::make_unique<SystemUnifiedLog>(subsystem, category);
    }
}

} // namespace orlimo
