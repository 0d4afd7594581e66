#include "login/LoginServices.h"

#include "login/LaunchAtLogin.h"

namespace orlimo {

LoginServices LoginServices::native()
{
    return {
        .service = mainAppService(),
        .logger = LaunchAtLogin::logger,
        .currentLaunchEvent = orlimo::currentLaunchEvent,
    };
}

} // namespace orlimo
