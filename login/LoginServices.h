#pragma once

#include "platform/loginitem/LaunchEvent.h"
#include "platform/loginitem/LoginItemService.h"
#include "platform/process/UnifiedLog.h"

#include <functional>
#include <optional>

namespace orlimo {

/// What starting at login works on. Handed in whole, so that tests give it a service, a log or a
/// launch of their own.
struct LoginServices
{
    LoginItemService& service;
    /// The log for failures. Asked for only when there is something to write.
    std::function<UnifiedLog&()> logger;
    std::function<std::optional<LaunchEvent>()> currentLaunchEvent;
};

} // namespace orlimo
