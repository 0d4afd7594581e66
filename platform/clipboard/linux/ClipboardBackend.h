#pragma once

#include "platform/clipboard/linux/DataControlAvailability.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace orlimo {

/// The ways by which a program without a focused window gets a text onto the clipboard.
enum class ClipboardBackend {
    /// The toolkit's clipboard, on the platform that it takes by itself: X11, and platforms that
    /// have a clipboard of their own.
    qt,
    /// A data-control client of our own beside Qt; also where the compositor has not responded yet.
    /// Where it turns out not to offer data control, Qt's clipboard.
    dataControl,
    /// The same with Qt on the X server that serves this Wayland session, where the compositor has
    /// not responded yet: without data control, that server's clipboard works in the background.
    dataControlOrXServer,
    /// The toolkit's clipboard, on the X server that serves this Wayland session.
    xServer,
    /// None. The toolkit's clipboard works while a window of the program has the focus.
    focusedOnly,
};

/// What the route depends on. The session is asked only for what matters.
struct SessionCapabilities
{
    /// The toolkit's platform as the user chose it; absent when the choice is left to the program.
    std::optional<std::string> chosenPlatform;
    /// Whether a Wayland compositor serves the session.
    bool isWaylandSession = false;
    /// Asks the compositor, and waits for `limit` at most.
    std::function<DataControlAvailability(std::chrono::milliseconds limit)> dataControl;
    std::function<bool()> hasXServer;
};

/// The facts of this process's session. `platformArgument` is the platform named on the command
/// line, which overrides the environment.
[[nodiscard]] SessionCapabilities
sessionCapabilities(const std::optional<std::string>& platformArgument);

/// The best route there is. A platform that the user chose is kept to, and the compositor is then
/// asked for two seconds. Where the platform is left to the program and depends on the response,
/// the compositor has thirty seconds: the wrong platform would be that of the whole run.
[[nodiscard]] ClipboardBackend bestClipboardBackend(const SessionCapabilities& capabilities);

/// Says on standard error that the clipboard cannot be set in the background in this session.
void warnThatClipboardNeedsFocus();

} // namespace orlimo
