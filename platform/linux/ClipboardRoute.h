#pragma once

#include <functional>
#include <optional>
#include <string>

namespace orlimo {

/// The ways by which a program without a focused window gets a text onto the clipboard.
enum class ClipboardRoute {
    /// The toolkit's clipboard, on the platform that it takes by itself: X11, and platforms that
    /// have a clipboard of their own.
    toolkit,
    /// A data-control client of our own beside the toolkit.
    dataControl,
    /// The toolkit's clipboard, on the X server that serves this Wayland session.
    xServer,
    /// None. The toolkit's clipboard works while a window of the program has the focus.
    focusedOnly,
};

/// What the route depends on. The session is asked only for what matters.
struct DesktopFacts
{
    /// The toolkit's platform as the user chose it; absent when the choice is left to the program.
    std::optional<std::string> chosenPlatform;
    /// Whether a Wayland compositor serves the session.
    bool isWaylandSession = false;
    std::function<bool()> offersDataControl;
    std::function<bool()> hasXServer;
};

/// The facts of this process's session. `platformArgument` is the platform named on the command
/// line, which overrides the environment.
[[nodiscard]] DesktopFacts desktopFacts(const std::optional<std::string>& platformArgument);

/// The best route there is. A platform that the user chose is kept to.
[[nodiscard]] ClipboardRoute bestClipboardRoute(const DesktopFacts& facts);

/// Settles the route of this process, once, before the toolkit's application object is made.
void takeClipboardRoute(ClipboardRoute route);

/// The route that was taken; the toolkit's where none was. Main thread.
[[nodiscard]] ClipboardRoute takenClipboardRoute();

} // namespace orlimo
