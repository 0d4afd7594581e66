#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/desktop/SystemSymbol.h"
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
    SystemSymbols symbols;
};

} // namespace orlimo
