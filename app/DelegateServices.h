#pragma once

#include "platform/desktop/SystemSymbol.h"
#include "platform/preferences/UserDefaults.h"

#include <QRect>
#include <QRectF>
#include <QUrl>
#include <QWidget>

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
    std::function<void(QWidget&)> orderFrontRegardless;
    std::function<bool(const QUrl&)> openUrl;
    SystemSymbols symbols;
};

} // namespace orlimo
