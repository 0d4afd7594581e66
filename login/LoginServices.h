#pragma once

#include "platform/loginitem/LaunchEvent.h"
#include "platform/loginitem/LoginItemService.h"

#include <functional>
#include <optional>
#include <string_view>

namespace orlimo {

/// What starting at login works on. Handed in whole, so that tests give it a service, a log or a
/// launch of their own.
struct LoginServices
{
    LoginItemService& service;
    /// Logs a failure to "enable" or to "disable" launch at login, as logLoginItemError() does.
    std::function<void(std::string_view operation, std::string_view reason)> logError;
    std::function<std::optional<LaunchEvent>()> currentLaunchEvent;
};

} // namespace orlimo
