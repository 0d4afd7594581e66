#include "login/LoginHost.h"

#include "login/LaunchAtLogin.h"

namespace orlimo {

LoginHost LoginHost::native()
{
    LoginHost host{
        .service = mainAppService(),
        .logger = LaunchAtLogin::logger,
        .currentLaunchEvent = orlimo::currentLaunchEvent,
    };
    [[maybe_unused]] static const bool isFollowed = (LaunchAtLogin::followAnswers(host), true);
    return host;
}

} // namespace orlimo
