#include "platform/menubar/linux/TrayIcon.h"

#include "platform/ApplicationIdentity.h"
#include "platform/menubar/linux/PanelIcon.h"
#include "platform/menubar/linux/TrayBackground.h"
#include "platform/process/EnvironmentVariable.h"
#include "platform/process/ToQString.h"

#include <QApplication>
#include <QEvent>

#include <chrono>
#include <utility>

namespace orlimo {

namespace {

/// How long painted content may take to reach the screen.
constexpr std::chrono::milliseconds repaintDelay{100};

QString currentDesktop()
{
    return toQString(environmentVariable("XDG_CURRENT_DESKTOP"));
}

} // namespace

TrayIcon::TrayIcon(QIcon label, Handlers eventHandlers, UptimeClock uptimeClock)
    : image(std::move(label))
    , handlers(std::move(eventHandlers))
    , clock(std::move(uptimeClock))
    , icon(this)
{
    backgroundTimer.setSingleShot(true);
    backgroundTimer.setInterval(repaintDelay);
    QObject::connect(&backgroundTimer, &QTimer::timeout, this, &TrayIcon::updateBackground);
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
    } else if (event->type() == QEvent::Paint && watched->inherits("QSystemTrayIconSys")) {
        window = qobject_cast<QWidget*>(watched);
        backgroundTimer.start();
    }
    return QObject::eventFilter(watched, event);
}

void TrayIcon::showImage()
{
    icon.setIcon(panelIcon(image, color(), panelIconName(currentDesktop())));
}

QColor TrayIcon::color() const
{
    if (textColor) {
        return *textColor;
    }
    const QColor text = panelTextColor(currentDesktop(), QApplication::palette());
    return background ? colorOnPanel(text, *background) : text;
}

void TrayIcon::updateBackground()
{
    const auto sampled =
        window ? trayBackground(static_cast<xcb_window_t>(window->internalWinId())) : std::nullopt;
    const QColor before = color();
    // Keep the last known background while it is not visible.
    background = sampled ? sampled : background;
    if (color() != before) {
        showImage();
    }
}

void TrayIcon::setTextColor(const std::optional<QColor>& published)
{
    if (textColor != published) {
        textColor = published;
        showImage();
    }
}

std::optional<QRect> TrayIcon::geometry() const
{
    const QRect iconRect = icon.geometry();
    return iconRect.isEmpty() ? std::nullopt : std::optional(iconRect);
}

void TrayIcon::wasActivated(QSystemTrayIcon::ActivationReason reason)
{
    switch (reason) {
    case QSystemTrayIcon::Trigger:
        // StatusNotifier hosts report a double click as two clicks.
        if (hasJustBeenTriggered()) {
            triggered.reset();
        } else {
            handlers.toggle();
            // Only now: a second press may have waited until the first was handled.
            triggered = clock();
        }
        break;
    case QSystemTrayIcon::DoubleClick:
        // Some hosts report the first press of a double click as a click of its own.
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
