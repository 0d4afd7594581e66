#pragma once

#include "platform/UptimeClock.h"

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
    /// The same where the host has no place for the icon, once that is known; nothing where it has
    /// one. For a start by the user, who would see nothing of the program otherwise. A window that
    /// opens so stays open while the program's other windows are still being given the focus.
    virtual void openWhereThereIsNoIcon() = 0;

    virtual void close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Makes the content, which becomes the window; called once, when the window first opens.
    using ContentBuilder = std::function<std::unique_ptr<QWidget>()>;

    /// Shows `label` as the icon: at once, or when the host first has a place for it. `clock` tells
    /// which clicks belong together, and how long other windows are still being given the focus.
    [[nodiscard]] static std::unique_ptr<MenuBarExtra>
    create(ContentBuilder makeContent, const QIcon& label, UptimeClock clock = currentUptime);
};

} // namespace orlimo
