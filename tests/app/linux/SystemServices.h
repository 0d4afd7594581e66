#pragma once

#include "platform/services/Services.h"
#include "platform/services/Session.h"

namespace orlimo {

/// The program's own services, in the session of the test program.
[[nodiscard]] inline Services systemServices()
{
    return makeServices(detectSession(0, nullptr));
}

} // namespace orlimo
