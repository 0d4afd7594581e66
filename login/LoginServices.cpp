#include "login/LoginServices.h"

#include "platform/process/LoginItemLog.h"

namespace orlimo {

LoginServices LoginServices::native()
{
    return {
        .service = mainAppService(),
        .logError = logLoginItemError,
        .currentLaunchEvent = orlimo::currentLaunchEvent,
    };
}

} // namespace orlimo
