#include "platform/menubar/linux/WaylandFocus.h"

#include "platform/process/EnvironmentVariable.h"
#include "platform/process/ToQString.h"

#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace orlimo {

namespace {

/// KWin's setting, where the user has changed it.
bool followsPointerInPlasma()
{
    const QString clickToFocus = QStringLiteral("ClickToFocus");
    const QSettings settings(
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kwinrc")),
        QSettings::IniFormat);
    return settings.value(QStringLiteral("Windows/FocusPolicy"), clickToFocus).toString() !=
           clickToFocus;
}

} // namespace

FocusLoss focusLossOnWayland()
{
    const QStringList names = toQString(environmentVariable("XDG_CURRENT_DESKTOP")).split(u':');
    const bool isClickToFocus =
        names.contains(u"GNOME", Qt::CaseInsensitive) ||
        (names.contains(u"KDE", Qt::CaseInsensitive) && !followsPointerInPlasma());
    return isClickToFocus ? FocusLoss::deliberate : FocusLoss::unknown;
}

} // namespace orlimo
