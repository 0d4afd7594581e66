#pragma once

#include "platform/menubar/linux/StatusNotifierHosts.h"
#include "platform/menubar/linux/SystemTraySelection.h"

#include <functional>
#include <optional>

namespace orlimo {

/// Whether the session has a place for the program's icon, as far as it can be used: a panel that
/// shows status notifier items or, on X11, a tray that takes windows. Nothing waits for an answer
/// here and nothing asks twice. Main thread; needs the toolkit's application object.
///
/// The toolkit asks the bus for such a panel once in the life of a process, when the first icon is
/// made, waits for the answer, and keeps it: after a no it uses the X11 tray, or nothing, for ever.
/// So no icon may be made before there is a place for it, nor while the bus has not answered. Of
/// two places the toolkit takes the panel's. The kind of place found first is the only one that
/// counts from then on, because an icon never changes over: where an X11 tray goes and only a panel
/// of the other kind comes, the icon is gone until the program starts anew.
class SystemTray
{
public:
    /// `changed` is called in the event loop, each time that `isTrayAvailable` or `textColor` may
    /// have changed.
    explicit SystemTray(std::function<void()> changed);

    /// Whether there is a place. None while it is not known: the bus has not answered. After the
    /// first yes an icon can be made, and comes and goes with its place by itself.
    [[nodiscard]] std::optional<bool> isTrayAvailable() const;

    /// The color of text where the icon is, as an X11 tray publishes it; none where nothing is
    /// published.
    [[nodiscard]] std::optional<QColor> textColor() const;

    /// To be called when an icon has been made, for `textColor` to be followed from then on.
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
