#include "platform/linux/TrayIcon.h"

#include "platform/ApplicationIdentity.h"
#include "platform/ToQString.h"
#include "platform/linux/PanelIcon.h"

#include <QApplication>
#include <QEvent>

#include <chrono>
#include <utility>

namespace orlimo {

TrayIcon::TrayIcon(QIcon label, Handlers whatToDo, UptimeClock uptimeClock)
    : image(std::move(label))
    , handlers(std::move(whatToDo))
    , clock(std::move(uptimeClock))
    , icon(this)
{
    showImage();
    qApp->installEventFilter(this);
    QObject::connect(
        menu.addAction(QCoreApplication::translate("MenuBarExtra", "Open Orlimo")),
        &QAction::triggered,
        this,
        [this] { handlers.open(); });
    QObject::connect(
        menu.addAction(QCoreApplication::translate("MenuBarExtra", "Quit")),
        &QAction::triggered,
        this,
        [this] { handlers.quit(); });
    QObject::connect(&icon, &QSystemTrayIcon::activated, this, &TrayIcon::wasActivated);
    icon.setContextMenu(&menu);
    icon.setToolTip(toQString(identity::applicationName));
    icon.show();
}

bool TrayIcon::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        showImage();
    }
    return QObject::eventFilter(watched, event);
}

void TrayIcon::showImage()
{
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    icon.setIcon(panelIcon(image, panelTextColor(desktop, QApplication::palette())));
}

std::optional<QRect> TrayIcon::geometry() const
{
    const QRect place = icon.geometry();
    return place.isEmpty() ? std::nullopt : std::optional(place);
}

void TrayIcon::wasActivated(QSystemTrayIcon::ActivationReason reason)
{
    switch (reason) {
    case QSystemTrayIcon::Trigger:
        handlers.toggle();
        // Only now: a second press has waited for the first one's work.
        triggered = clock();
        break;
    case QSystemTrayIcon::DoubleClick:
        // Some hosts tell of the first press of a double click as a click of its own.
        if (!hasJustBeenTriggered()) {
            handlers.toggle();
        }
        triggered.reset();
        break;
    case QSystemTrayIcon::MiddleClick:
        handlers.toggle();
        break;
    case QSystemTrayIcon::Context:
    case QSystemTrayIcon::Unknown:
        break;
    }
}

bool TrayIcon::hasJustBeenTriggered() const
{
    const std::chrono::milliseconds interval(QApplication::doubleClickInterval());
    return triggered && clock() - *triggered <= interval;
}

} // namespace orlimo
