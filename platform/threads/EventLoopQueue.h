#pragma once

#include "platform/threads/Queue.h"

namespace orlimo {

/// The main queue where work is an event of the toolkit's: one for each piece, posted to the thread
/// of the application object. The first call must come after that object was built; what waits when
/// it goes is not run, and what is offered after that is dropped. Lives to the end of the process.
[[nodiscard]] Queue& eventLoopQueue();

} // namespace orlimo
