#pragma once

#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/WaylandClipboard.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// A Wayland desktop of the KWin compositor, without a display and without a panel: what Plasma
/// gives to programs as far as windows and the clipboard go.
class KWinSession : public CompositorSession
{
public:
    /// Why this machine cannot start such a desktop; empty where it can.
    [[nodiscard]] static std::string skipReason();

    /// Starts everything and waits until it serves; what does not start is a test failure.
    KWinSession();

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    [[nodiscard]] WaylandClipboard& clipboard() { return *ownClipboard; }

private:
    std::unique_ptr<WaylandClipboard> ownClipboard;
};

} // namespace orlimo
