#pragma once

#include "platform/threads/UptimeClock.h"

#include <QIcon>
#include <QWidget>

#include <functional>
#include <memory>

namespace orlimo {

/// An icon in the menu bar or system tray and the window that a click on it opens and closes. The
/// window closes by itself when it loses the focus and on Escape. Main thread.
class MenuBarExtra
{
public:
    MenuBarExtra() = default;
    MenuBarExtra(const MenuBarExtra&) = delete;
    MenuBarExtra& operator=(const MenuBarExtra&) = delete;
    virtual ~MenuBarExtra() = default;

    /// Opens the window next to the icon, in front and with the focus.
    virtual void open() = 0;
    /// The same for a request that did not come from the icon and may come while the program's
    /// other windows are still opening. The window then stays open while those receive the focus.
    virtual void openOnRequest() = 0;
    /// Calls `openOnRequest` once it is known that there is no system tray for the icon; does
    /// nothing if there is one, or if no screen is visible to a user. For a start by the user, who
    /// would otherwise see nothing of the program.
    virtual void openIfNoTray() = 0;

    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Creates the content, which becomes the window; called once, when the window first opens.
    using ContentBuilder = std::function<std::unique_ptr<QWidget>()>;

    /// Shows `label` as the icon, at once or as soon as there is a system tray. `clock` decides
    /// which clicks belong together and how long other windows may still receive the focus.
    [[nodiscard]] static std::unique_ptr<MenuBarExtra>
    create(ContentBuilder makeContent, const QIcon& label, UptimeClock clock);
};

} // namespace orlimo
