#pragma once

#include "platform/threads/UptimeClock.h"

#include <QIcon>
#include <QWidget>

#include <functional>
#include <memory>

namespace orlimo {

/// An icon in the host's menu bar or panel, and the window that a click on it opens and closes. The
/// window closes by itself when it loses the focus or on Escape. Main thread.
class MenuBarExtra
{
public:
    MenuBarExtra() = default;
    MenuBarExtra(const MenuBarExtra&) = delete;
    MenuBarExtra& operator=(const MenuBarExtra&) = delete;
    virtual ~MenuBarExtra() = default;

    /// Opens the window at its place, in front and with the focus.
    virtual void open() = 0;
    /// The same for a request that did not come by the icon, and may come while the program is only
    /// just opening its other windows. A window that opens so stays open while those are still
    /// being given the focus.
    virtual void openOnRequest() = 0;
    /// This where the host has no place for the icon, once that is known; nothing where it has
    /// one, or where there is no screen that anybody could look at. For a start by the user, who
    /// would see nothing of the program otherwise.
    virtual void openIfNoTray() = 0;

    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Makes the content, which becomes the window; called once, when the window first opens.
    using ContentBuilder = std::function<std::unique_ptr<QWidget>()>;

    /// Shows `label` as the icon: at once, or when the host first has a place for it. `clock` tells
    /// which clicks belong together, and how long other windows are still being given the focus.
    [[nodiscard]] static std::unique_ptr<MenuBarExtra>
    create(ContentBuilder makeContent, const QIcon& label, UptimeClock clock);
};

} // namespace orlimo
