#pragma once

#include "platform/UptimeClock.h"

#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>

#include <functional>
#include <optional>

namespace orlimo {

/// The program's icon in the host's tray, with a menu for hosts that know nothing else. Appears
/// when there is a tray. Main thread.
class TrayIcon final : public QObject
{
public:
    /// What the user asks for.
    struct Handlers
    {
        /// A click on the icon.
        std::function<void()> toggle;
        /// "Open" in the menu.
        std::function<void()> open;
        /// "Quit" in the menu.
        std::function<void()> quit;
    };

    /// A template takes on the colour of the panel's text and follows a change of scheme.
    TrayIcon(QIcon label, Handlers whatToDo, UptimeClock uptimeClock = currentUptime);

    /// Where the icon is on the screen, in points; none where the host does not say.
    [[nodiscard]] std::optional<QRect> geometry() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showImage();
    void wasActivated(QSystemTrayIcon::ActivationReason reason);
    [[nodiscard]] bool hasJustBeenTriggered() const;

    QIcon image;
    Handlers handlers;
    UptimeClock clock;
    QMenu menu;
    QSystemTrayIcon icon;
    std::optional<Uptime> triggered;
};

} // namespace orlimo
