#pragma once

#include "login/LoginServices.h"
#include "platform/process/LoginItemLog.h"

namespace orlimo {

/// The system's own login item and log.
[[nodiscard]] inline LoginServices systemLoginServices()
{
    return {
        .service = mainAppService(),
        .logError = logLoginItemError,
        .currentLaunchEvent = currentLaunchEvent};
}

} // namespace orlimo
