#include "platform/linux/TrayIcon.h"

#include "platform/ApplicationIdentity.h"

#include <QApplication>
#include <QString>

#include <chrono>
#include <utility>

namespace orlimo {

TrayIcon::TrayIcon(const QIcon& image, Handlers whatToDo, UptimeClock uptimeClock)
    : handlers(std::move(whatToDo))
    , clock(std::move(uptimeClock))
    , icon(image, this)
{
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
    icon.setToolTip(QString::fromUtf8(
        identity::applicationName.data(),
        static_cast<qsizetype>(identity::applicationName.size())));
    icon.show();
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
