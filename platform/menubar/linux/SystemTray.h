#pragma once

#include "platform/menubar/linux/StatusNotifierHosts.h"
#include "platform/menubar/linux/SystemTraySelection.h"

#include <functional>
#include <optional>

namespace orlimo {

/// Whether the session has a system tray that can show the program's icon: a panel that shows
/// status notifier items or, on X11, a tray that embeds windows. Never blocks and does not poll.
/// Main thread; requires Qt's application object.
///
/// Qt queries the bus for such a panel once in a process, when the first icon is created, blocks
/// for the reply and keeps it: without a panel it uses the X11 tray, or nothing, for the rest of
/// the run. So no icon may be created before a tray is available, nor before the bus has replied.
/// If both kinds exist, Qt prefers the panel. The kind found first is the only one considered from
/// then on, because an icon never moves to the other: if an X11 tray goes away and only a panel of
/// the other kind appears, the icon is gone until the program is restarted.
class SystemTray
{
public:
    /// `changed` is called in the event loop each time `isTrayAvailable` or `textColor` may have
    /// changed.
    explicit SystemTray(std::function<void()> changed);

    /// Whether there is a tray. None until the bus has replied. After the first true an icon can be
    /// created, which then appears and disappears with its tray by itself.
    [[nodiscard]] std::optional<bool> isTrayAvailable() const;

    /// The color of text beside the icon, as published by an X11 tray; none if it publishes none.
    [[nodiscard]] std::optional<QColor> textColor() const;

    /// To be called when an icon has been created; `textColor` is followed from then on.
    void iconWasCreated() { selection.iconWasCreated(); }

private:
    enum class Kind {
        statusNotifier,
        xembed,
    };

    void update();
    void determineKind();

    std::function<void()> didChange;
    std::optional<Kind> kind;
    StatusNotifierHosts hosts;
    SystemTraySelection selection;
};

} // namespace orlimo
