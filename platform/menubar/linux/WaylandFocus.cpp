#include "platform/menubar/linux/WaylandFocus.h"

#include "platform/process/EnvironmentVariable.h"
#include "platform/process/ToQString.h"

#include <QSettings>
#include <QStandardPaths>
#include <QStringList>

namespace orlimo {

namespace {

bool followsPointerInPlasma(const QString& kwinSettings)
{
    const QString clickToFocus = QStringLiteral("ClickToFocus");
    const QSettings settings(kwinSettings, QSettings::IniFormat);
    return settings.value(QStringLiteral("Windows/FocusPolicy"), clickToFocus).toString() !=
           clickToFocus;
}

} // namespace

FocusLoss focusLossOnWayland(const QString& desktop, const QString& kwinSettings)
{
    const QStringList names = desktop.split(u':');
    const bool isClickToFocus =
        names.contains(u"GNOME", Qt::CaseInsensitive) ||
        (names.contains(u"KDE", Qt::CaseInsensitive) && !followsPointerInPlasma(kwinSettings));
    return isClickToFocus ? FocusLoss::deliberate : FocusLoss::unknown;
}

FocusLoss focusLossOnWayland()
{
    return focusLossOnWayland(
        toQString(environmentVariable("XDG_CURRENT_DESKTOP")),
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, QStringLiteral("kwinrc")));
}

} // namespace orlimo
