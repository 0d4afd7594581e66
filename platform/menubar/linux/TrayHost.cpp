#include "platform/menubar/linux/TrayHost.h"

#include <utility>

namespace orlimo {

TrayHost::TrayHost(std::function<void()> changed)
    : didChange(std::move(changed))
    , hosts([this] { update(); })
    , selection([this] { update(); })
{
    settle();
}

std::optional<bool> TrayHost::hasPlace() const
{
    if (kind == Kind::systemTray) {
        return selection.hasOwner();
    }
    return hosts.exist();
}

std::optional<QColor> TrayHost::textColor() const
{
    return kind == Kind::systemTray ? selection.textColor() : std::nullopt;
}

void TrayHost::update()
{
    settle();
    didChange();
}

void TrayHost::settle()
{
    if (kind || !hosts.exist()) {
        return;
    }
    if (*hosts.exist()) {
        kind = Kind::statusNotifier;
    } else if (selection.hasOwner()) {
        kind = Kind::systemTray;
    }
}

} // namespace orlimo
