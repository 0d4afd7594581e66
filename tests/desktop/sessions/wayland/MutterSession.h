#pragma once

#include "tests/desktop/sessions/AccessibilityTree.h"
#include "tests/desktop/sessions/wayland/CompositorSession.h"
#include "tests/desktop/sessions/wayland/MutterClipboard.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// A Wayland desktop of the mutter compositor, without a display: what GNOME gives to programs as
/// far as windows and the clipboard go. It has an X server for programs that want one, no tray, and
/// gives the clipboard only to the program with the focus.
class MutterSession : public CompositorSession
{
public:
    /// Why this machine cannot start such a desktop; empty where it can.
    [[nodiscard]] static std::string skipReason();

    /// Starts everything and waits until it serves; what does not start is a test failure.
    MutterSession();

    /// What puts a program on this desktop, and its texts into English.
    [[nodiscard]] std::map<std::string, std::optional<std::string>> environment() const;

    /// The clipboard as the compositor knows it.
    [[nodiscard]] const MutterClipboard& clipboard() const { return *ownClipboard; }
    [[nodiscard]] const AccessibilityTree& accessibility() const { return tree; }

    /// Makes another program, one of X, own the clipboard with `text` and a line break, and waits
    /// until the compositor knows.
    void copy(const std::string& text) const;

private:
    AccessibilityTree tree;
    std::string xDisplay;
    std::filesystem::path xAuthority;
    std::unique_ptr<MutterClipboard> ownClipboard;
};

} // namespace orlimo
