#include "login/LoginHost.h"

#include "login/LaunchAtLogin.h"

namespace orlimo {

LoginHost LoginHost::native()
{
    return {
        .service = mainAppService(),
        .logger = LaunchAtLogin::logger,
        .currentLaunchEvent = orlimo::currentLaunchEvent,
    };
}

} // namespace orlimo
