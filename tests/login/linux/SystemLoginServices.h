#pragma once

#include "login/LoginServices.h"

namespace orlimo {

/// The system's own login item and log.
[[nodiscard]] inline LoginServices systemLoginServices()
{
    return {
        .service = mainAppService(),
        .logger = []() -> UnifiedLog& {
            static const auto log = UnifiedLog::create("app.orlimo.Orlimo.LaunchAtLogin", "main");
            return *log;
        },
        .currentLaunchEvent = currentLaunchEvent};
}

} // namespace orlimo
