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

/// The window of a menu bar extra: opens at the icon, closes by itself when it loses the focus or
/// on Escape. Knows nothing of how the icon gets onto the screen. Main thread.
///
/// Where the focus follows the pointer the way from the icon to the window takes the focus away,
/// and a loss of it does not mean that the user is done: see `FocusLoss`. The window then stays
/// open until a click elsewhere; where the system does not report clicks, until the pointer has
/// been inside, has left, and has not come back for a while.
class MenuBarWindow final : public QObject
{
public:
    /// Where the icon is on the screen, in points; none where the host does not say.
    using IconGeometry = std::function<std::optional<QRect>()>;

    /// What the host makes of such a window.
    struct Options
    {
        Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint;
        /// Called with the window each time before it comes to the front, in its place by then.
        std::function<void(QWidget& window)> willComeToFront = [](QWidget& /*window*/) {};
        /// Called when the window has lost the focus: why.
        std::function<FocusLoss()> focusLoss = [] { return FocusLoss::deliberate; };
        /// How long the pointer may be outside before a window closes that lost the focus with it.
        std::chrono::milliseconds pointerReturnTimeout{1000};
    };

    /// `window` becomes the window; it is not owned and must outlive this object. It keeps the size
    /// that it has when it first opens, but on a screen where less than that is available: there it
    /// is made as small as that each time.
    MenuBarWindow(QWidget& window, IconGeometry geometry, UptimeClock uptimeClock);
    MenuBarWindow(
        QWidget& window, IconGeometry geometry, UptimeClock uptimeClock, Options windowOptions);
    MenuBarWindow(const MenuBarWindow&) = delete;
    MenuBarWindow& operator=(const MenuBarWindow&) = delete;
    ~MenuBarWindow() override;

    /// Opens the window at its place, or brings the open one to the front; gives it the focus.
    void open();

    /// The same while other windows of the program have only just been opened. For two seconds the
    /// focus that one of those takes is taken back, instead of closing the window: the host hands
    /// the focus to windows in its own time, and not only once to each. A window that is opened
    /// later takes the focus for good.
    void openOnRequest();

    void close();
    [[nodiscard]] bool isOpen() const;

    /// What a click on the icon does: closes the open window, opens the closed one. The click that
    /// took the focus from the window has closed it by that, and does not open it again.
    void toggle();

    /// A mouse button was pressed at `place`, in points of the screen. Outside the window that
    /// closes it when it no longer has the focus; the icon's own click is left to `toggle`.
    void pointerWasPressed(const QPoint& place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();
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
    /// What the content measures where there is room for it.
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
