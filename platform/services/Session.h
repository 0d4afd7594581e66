#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/services/QtArguments.h"

#include <functional>
#include <memory>

namespace orlimo {

/// What the desktop session that the program runs in has to offer, and what follows from it.
struct Session
{
    /// The program's own arguments, and behind them those that the session calls for.
    QtArguments arguments;
    /// Makes the pasteboard that the user's paste command reads, once Qt's application object
    /// exists.
    std::function<std::unique_ptr<Pasteboard>()> makePasteboard;
};

/// Examines the session of this process, before Qt's application object is made; the arguments are
/// those of main(). On Linux this asks the session bus and the compositor, and may wait for them:
/// see `bestClipboardBackend`. Main thread.
[[nodiscard]] Session detectSession(int argc, const char* const* argv);

} // namespace orlimo
