#pragma once

#include "tests/desktop/sessions/SessionBuses.h"
#include "tests/desktop/sessions/wayland/WaylandClipboard.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// A Wayland desktop of the KWin compositor, without a display and without a panel: what Plasma
/// gives to programs as far as windows and the clipboard go. All of its own and ended with the
/// object.
class KWinSession
{
public:
    /// Why this machine cannot start such a desktop; empty where it can.
    [[nodiscard]] static std::string skipReason();

    /// Starts everything and waits until it serves; what does not start is a test failure.
    KWinSession();
    KWinSession(const KWinSession&) = delete;
    KWinSession& operator=(const KWinSession&) = delete;
    ~KWinSession();

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    [[nodiscard]] WaylandClipboard& clipboard() { return *ownClipboard; }

    /// Kills the compositor, as a crash would.
    void kill();

    /// Has the compositor stand still: programs that ask it for something wait until it goes on.
    void freeze() const;
    void thaw() const;

private:
    TemporaryFolder folder;
    std::filesystem::path runtimeFolder;
    SessionBuses buses;
    std::unique_ptr<ChildProcess> compositor;
    std::unique_ptr<WaylandClipboard> ownClipboard;
};

} // namespace orlimo
