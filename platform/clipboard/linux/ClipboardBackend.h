#pragma once

#include "platform/clipboard/linux/DataControlClipboard.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace orlimo {

/// How a program without a focused window sets the clipboard.
enum class ClipboardBackend {
    /// Qt's clipboard, on the platform that Qt chooses by itself: X11, and platforms with a
    /// clipboard of their own.
    qt,
    /// A data-control client of our own beside Qt, also while the compositor has not responded.
    /// Falls back to Qt's clipboard if the compositor turns out not to offer data control.
    dataControl,
    /// The same with Qt on the X server of this Wayland session, for a compositor that has not
    /// responded yet: if it lacks data control, that server's clipboard works in the background.
    dataControlOrXServer,
    /// Qt's clipboard, on the X server of this Wayland session.
    xServer,
    /// None. Qt's clipboard works only while a window of the program has the focus.
    focusedOnly,
};

/// What the choice of the backend depends on. The session is queried only for what matters.
struct SessionCapabilities
{
    /// Qt's platform as the user chose it; absent if the choice is left to the program.
    std::optional<std::string> chosenPlatform;
    /// Whether a Wayland compositor serves the session.
    bool isWaylandSession = false;
    /// Queries the compositor, waiting for at most `limit`.
    std::function<DataControlAvailability(std::chrono::milliseconds limit)> dataControl;
    std::function<bool()> hasXServer;
};

/// The capabilities of this process's session. `platformArgument` is the platform named on the
/// command line, which overrides the environment.
[[nodiscard]] SessionCapabilities
sessionCapabilities(const std::optional<std::string>& platformArgument);

/// The best backend available. A platform that the user chose is kept; the compositor then has two
/// seconds to respond. If the platform is left to the program and depends on the response, the
/// compositor has thirty seconds, because a wrong platform would last for the whole run.
[[nodiscard]] ClipboardBackend bestClipboardBackend(const SessionCapabilities& capabilities);

/// Reports on standard error that this session does not let the clipboard be set in the background.
void warnThatClipboardNeedsFocus();

} // namespace orlimo
