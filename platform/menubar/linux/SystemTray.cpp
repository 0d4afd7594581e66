#include "platform/menubar/linux/SystemTray.h"

#include <utility>

namespace orlimo {

SystemTray::SystemTray(std::function<void()> changed)
    : didChange(std::move(changed))
    , hosts([this] { update(); })
    , selection([this] { update(); })
{
    determineKind();
}

std::optional<bool> SystemTray::isTrayAvailable() const
{
    if (kind == Kind::xembed) {
        return selection.hasOwner();
    }
    return hosts.isAnyRegistered();
}

std::optional<QColor> SystemTray::textColor() const
{
    return kind == Kind::xembed ? selection.textColor() : std::nullopt;
}

void SystemTray::update()
{
    determineKind();
    didChange();
}

void SystemTray::determineKind()
{
    if (kind || !hosts.isAnyRegistered()) {
        return;
    }
    if (*hosts.isAnyRegistered()) {
        kind = Kind::statusNotifier;
    } else if (selection.hasOwner()) {
        kind = Kind::xembed;
    }
}

} // namespace orlimo
