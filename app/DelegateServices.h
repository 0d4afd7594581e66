#pragma once

#include "app/guidance/DiskAccess.h"
#include "login/LaunchAtLogin.h"
#include "platform/desktop/Workspace.h"
#include "platform/preferences/UserDefaults.h"

#include <QRect>
#include <QRectF>

#include <functional>
#include <optional>

namespace orlimo {

/// What the application's start works on. Handed in whole, so that tests give it a user, a screen
/// and preferences of their own.
struct DelegateServices
{
    UserDefaults& userDefaults;
    std::function<void(bool)> setLaunchAtLogin;
    std::function<bool()> hasFullDiskAccess;
    std::function<std::optional<QRect>()> mainScreenFrame;
    std::function<QRectF(const QRectF&)> fromSystemCoordinates;

    /// The running program's own. Needs the application object.
    [[nodiscard]] static DelegateServices native()
    {
        return {
            .userDefaults = standardUserDefaults(),
            .setLaunchAtLogin = [](bool enabled) { LaunchAtLogin::setEnabled(enabled); },
            .hasFullDiskAccess = [] { return orlimo::hasFullDiskAccess(); },
            .mainScreenFrame = orlimo::mainScreenFrame,
            .fromSystemCoordinates = orlimo::fromSystemCoordinates,
        };
    }
};

} // namespace orlimo
