#pragma once

#include "platform/threads/UptimeClock.h"

#include <QColor>
#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>

namespace orlimo {

/// The program's icon in the system tray, with a menu for hosts that support nothing else. Appears
/// as soon as there is a tray. Main thread.
class TrayIcon final : public QObject
{
public:
    /// What the user requests.
    struct Handlers
    {
        /// A click on the icon.
        std::function<void()> toggle;
        /// "Open" in the menu.
        std::function<void()> open;
        /// "Quit" in the menu.
        std::function<void()> quit;
    };

    /// A template icon is painted in the color of the panel's text and follows a change of scheme.
    /// Panels that paint symbolic icons themselves receive the name of the installed one.
    TrayIcon(QIcon label, Handlers eventHandlers, UptimeClock uptimeClock);

    /// The icon's rectangle on the screen, in points; none if the tray does not report it.
    [[nodiscard]] std::optional<QRect> geometry() const;

    /// Paints a template icon in `published`, the color that the tray publishes for its text. If it
    /// publishes none, in a color that is legible on the tray's background, if that is visible.
    void setTextColor(const std::optional<QColor>& published);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showImage();
    [[nodiscard]] QColor color() const;
    void updateBackground();
    void wasActivated(QSystemTrayIcon::ActivationReason reason);
    [[nodiscard]] bool hasJustBeenTriggered() const;

    QIcon image;
    Handlers handlers;
    UptimeClock clock;
    QMenu menu;
    QSystemTrayIcon icon;
    std::optional<QColor> textColor;
    std::optional<QColor> background;
    /// Qt's own window in an X11 tray, once it has been painted.
    QPointer<QWidget> window;
    QTimer backgroundTimer;
    std::optional<Uptime> triggered;
};

} // namespace orlimo
