#pragma once

#include "app/panel/PanelServices.h"
#include "platform/desktop/SharedApplication.h"

#include <QUrl>

#include <functional>
#include <string>

namespace orlimo {

/// What the menu-bar window's commands work on. Handed in whole, so that tests see what they do.
struct MenuServices
{
    PanelServices panel;
    /// The one application. Asked for at each command; a fatal stop when there is none.
    std::function<SharedApplication&()> application;
    std::function<bool(const QUrl&)> openUrl;
    /// The product's web page.
    std::string website;
};

} // namespace orlimo
