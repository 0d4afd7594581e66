#pragma once

#include "platform/threads/Queue.h"

namespace orlimo {

/// The main queue on Qt's event loop: each piece of work is an event, posted to the thread of the
/// application object. The first call must follow the construction of that object; when it is
/// destroyed, pending work is not run and later work is dropped. Lives to the end of the process.
[[nodiscard]] Queue& eventLoopQueue();

} // namespace orlimo
