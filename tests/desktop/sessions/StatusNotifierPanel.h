#pragma once

#include "tests/desktop/sessions/DesktopSession.h"
#include "tests/support/process/ChildProcess.h"

#include <string>

namespace orlimo {

/// A panel with status notifier items on a desktop's session bus, a process of its own, and the
/// user of its one item. Gone, as after a crash, when the object goes.
class StatusNotifierPanel
{
public:
    enum class Host {
        /// The panel is there.
        present,
        /// Only the watcher is there that panels and items register with.
        absent,
    };

    /// Starts it and waits until its name is on the bus.
    explicit StatusNotifierPanel(const DesktopSession& desktop, Host host = Host::present);

    void registerHost();
    void unregisterHost();

    /// How many items it shows.
    [[nodiscard]] int items();

    /// Waits until it shows one item, and no other.
    [[nodiscard]] bool awaitItem();

    /// Clicks the item; a failure of that is a test failure.
    void click();

    /// The name of the item's icon, empty where it has none.
    [[nodiscard]] std::string iconName();
    /// The edges of its pixmaps in pixels, a comma after each.
    [[nodiscard]] std::string iconSizes();

    /// The texts of the item's menu, a comma after each.
    [[nodiscard]] std::string menu();
    void choose(const std::string& text);

    /// It answers nobody from now on.
    void freeze() const;
    void thaw() const;

private:
    void command(const std::string& line);

    ChildProcess process;
};

} // namespace orlimo
