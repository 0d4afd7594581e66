#pragma once

#include "tests/desktop/sessions/x11/OpenboxConfiguration.h"

namespace orlimo {

/// Has window managers that start from now on give the keyboard to no new window by themselves, as
/// long as it lives.
class NonFocusingWindowManager : private OpenboxConfiguration
{
public:
    NonFocusingWindowManager()
        : OpenboxConfiguration("<focusNew>no</focusNew>")
    {}
};

} // namespace orlimo
