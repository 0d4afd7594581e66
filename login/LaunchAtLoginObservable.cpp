#include "login/LaunchAtLoginObservable.h"

namespace orlimo {

bool LaunchAtLogin::Observable::isEnabled() const
{
    return LaunchAtLogin::isEnabled();
}

void LaunchAtLogin::Observable::setEnabled(bool enabled)
{
    LaunchAtLogin::setEnabled(enabled);
}

} // namespace orlimo
