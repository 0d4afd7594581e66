#include "platform/process/LoginItemLog.h"

#include "platform/process/macos/Retained.h"

#include <string>

#import <Foundation/Foundation.h>
#import <os/log.h>

namespace orlimo {

void logLoginItemError(std::string_view operation, std::string_view reason)
{
    @autoreleasepool {
        const auto log =
            Retained<os_log_t>::adopt(os_log_create("app.orlimo.Orlimo.LaunchAtLogin", "main"));
        if (os_log_type_enabled(log.get(), OS_LOG_TYPE_ERROR)) {
            // The arguments keep the log's default privacy for dynamic strings.
            os_log_error(
                log.get(),
                "Failed to %s launch at login: %s",
                std::string(operation).c_str(),
                std::string(reason).c_str());
        }
    }
}

} // namespace orlimo
