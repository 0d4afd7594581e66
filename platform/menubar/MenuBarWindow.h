#pragma once

#include "platform/menubar/FocusLoss.h"
#include "platform/threads/UptimeClock.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QShortcut>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace orlimo {

/// The window of a menu bar extra: opens at the icon and closes by itself when it loses the focus
/// and on Escape. Independent of how the icon gets onto the screen. Main thread.
///
/// If the focus follows the pointer, moving from the icon to the window takes the focus away, so
/// that losing it does not mean that the user is done: see `FocusLoss`. The window then stays open
/// until a click elsewhere or, if the system does not report clicks, until the pointer has been
/// inside, has left, and has not returned for a while.
class MenuBarWindow final : public QObject
{
public:
    /// The icon's rectangle on the screen, in points; none if the system does not report it.
    using IconGeometry = std::function<std::optional<QRect>()>;

    /// What differs between systems.
    struct Options
    {
        Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint;
        /// Called with the window, already positioned, each time before it comes to the front.
        std::function<void(QWidget& window)> willComeToFront = [](QWidget& /*window*/) {};
        /// Returns why the window has just lost the focus.
        std::function<FocusLoss()> focusLoss = [] { return FocusLoss::deliberate; };
        /// How long the pointer may be outside before a window that lost the focus closes.
        std::chrono::milliseconds pointerReturnTimeout{1000};
    };

    /// `window` is not owned and must outlive this object. It keeps the size with which it first
    /// opens; on a screen with less available space it is shrunk to that each time.
    MenuBarWindow(QWidget& window, IconGeometry geometry, UptimeClock uptimeClock);
    MenuBarWindow(
        QWidget& window, IconGeometry geometry, UptimeClock uptimeClock, Options windowOptions);
    MenuBarWindow(const MenuBarWindow&) = delete;
    MenuBarWindow& operator=(const MenuBarWindow&) = delete;
    ~MenuBarWindow() override;

    /// Opens the window at the icon, or brings the open one to the front, and gives it the focus.
    void open();

    /// The same while other windows of the program have only just been opened. For two seconds the
    /// focus is taken back from those instead of closing the window, because the system focuses new
    /// windows with a delay and possibly more than once. A window opened later keeps the focus.
    void openOnRequest();

    void close();
    [[nodiscard]] bool isOpen() const;

    /// Handles a click on the icon: closes the open window, opens the closed one. A click that has
    /// just closed the window by taking its focus does not open it again.
    void toggle();

    /// Handles a press of a mouse button at `position`, in screen points. Outside the window it
    /// closes a window that no longer has the focus; a press on the icon is left to `toggle`.
    void pointerWasPressed(const QPoint& position);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void moveToIcon();
    void fit(QSize available);
    void didLoseFocus();
    void didLoseFocusForUnknownReason();
    void pointerDidEnter();
    void pointerDidLeave();
    void closeOnFocusLoss();
    void resetPointerState();
    [[nodiscard]] bool hasEarlierWindowTakenFocus() const;
    [[nodiscard]] bool hasJustLostFocus() const;

    QWidget& content;
    IconGeometry iconGeometry;
    UptimeClock clock;
    Options options;
    QShortcut escape;
    /// The content's size on a screen with enough space.
    std::optional<QSize> fullSize;
    std::optional<Uptime> closedOnFocusLossAt;
    std::optional<Uptime> openedOnRequestAt;
    std::vector<QPointer<QWidget>> earlierWindows;
    QTimer closeTimer;
    bool hasLostFocusForUnknownReason = false;
    bool isPointerInside = false;
    bool hasPointerBeenInside = false;
    std::optional<Uptime> pointerLeftAt;
};

} // namespace orlimo
