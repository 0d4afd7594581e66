#pragma once

#include "platform/UptimeClock.h"

#include <QObject>
#include <QRect>
#include <QShortcut>
#include <QWidget>

#include <functional>
#include <optional>

namespace orlimo {

/// The window of a menu bar extra: opens at the icon, closes by itself when it loses the focus or
/// on Escape. Knows nothing of how the icon gets onto the screen. Main thread.
class MenuBarWindow final : public QObject
{
public:
    /// Where the icon is on the screen, in points; none where the host does not say.
    using IconGeometry = std::function<std::optional<QRect>()>;

    /// What the host makes of such a window.
    struct Manner
    {
        Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint;
        /// Called with the window each time before it comes to the front, in its place by then.
        std::function<void(QWidget& window)> willComeToFront = [](QWidget& /*window*/) {};
    };

    /// `window` becomes the window; it is not owned and must outlive this object. It keeps the size
    /// that it has when it first opens, but on a screen where less than that is available: there it
    /// is made as small as that each time.
    MenuBarWindow(QWidget& window, IconGeometry geometry, UptimeClock uptimeClock = currentUptime);
    MenuBarWindow(
        QWidget& window, IconGeometry geometry, UptimeClock uptimeClock, Manner hostsManner);
    MenuBarWindow(const MenuBarWindow&) = delete;
    MenuBarWindow& operator=(const MenuBarWindow&) = delete;
    ~MenuBarWindow() override;

    /// Opens the window at its place, or brings the open one to the front; gives it the focus.
    void open();

    /// The same while other windows of the program have only just been opened. For two seconds the
    /// focus that one of those takes is taken back, instead of closing the window: the host hands
    /// the focus to windows in its own time, and not only once to each.
    void openAmongOthers();

    void close();
    [[nodiscard]] bool isOpen() const;

    /// What a click on the icon does: closes the open window, opens the closed one. The click that
    /// took the focus from the window has closed it by that, and does not open it again.
    void toggle();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();
    void fit(QSize available);
    void didLoseFocus();
    [[nodiscard]] bool othersAreStillBeingOpened() const;
    [[nodiscard]] bool hasJustLostFocus() const;

    QWidget& content;
    IconGeometry iconGeometry;
    UptimeClock clock;
    Manner manner;
    QShortcut escape;
    /// What the content measures where there is room for it.
    std::optional<QSize> wholeSize;
    std::optional<Uptime> closedByLosingFocus;
    std::optional<Uptime> openedAmongOthers;
};

} // namespace orlimo
