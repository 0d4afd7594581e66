#pragma once

#include "tests/desktop/sessions/x11/OpenboxConfiguration.h"

namespace orlimo {

/// Has window managers that start from now on give the focus to the window under the pointer, as
/// long as it lives.
class SloppyFocusWindowManager : private OpenboxConfiguration
{
public:
    SloppyFocusWindowManager()
        : OpenboxConfiguration("<followMouse>yes</followMouse>")
    {}
};

} // namespace orlimo
