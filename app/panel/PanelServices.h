#pragma once

#include "login/LaunchAtLogin.h"
#include "platform/clipboard/Pasteboard.h"
#include "platform/preferences/UserDefaults.h"

#include <functional>

namespace orlimo {

/// What the code panel works on. Handed in whole, so that tests give it preferences and a
/// pasteboard of their own.
struct PanelServices
{
    UserDefaults& userDefaults;
    Pasteboard& pasteboard;
    std::function<void(bool)> setLaunchAtLogin;

    /// The running program's own. Needs the application object.
    [[nodiscard]] static PanelServices native()
    {
        return {
            .userDefaults = standardUserDefaults(),
            .pasteboard = generalPasteboard(),
            .setLaunchAtLogin = [](bool enabled) { LaunchAtLogin::setEnabled(enabled); },
        };
    }
};

} // namespace orlimo
