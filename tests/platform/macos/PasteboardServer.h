#pragma once

#include "tests/app/XServer.h"
#include "tests/support/ChildProcess.h"

#include <filesystem>

namespace orlimo {

/// GNUstep's server of pasteboards with an X server of its own, whose clipboard it fills. All that
/// it keeps is in the sandbox; programs of the same sandbox find it. Ended with the object.
class PasteboardServer
{
public:
    PasteboardServer();

    /// What a program of the X server's pastes from its clipboard.
    [[nodiscard]] std::string paste() const { return display.paste("clipboard"); }

private:
    XServer display;
    ChildProcess server;
};

} // namespace orlimo
