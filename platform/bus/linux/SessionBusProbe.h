#pragma once

#include "platform/threads/UptimeClock.h"

namespace orlimo {

/// Takes the session bus away from this process and the programs that it starts if the bus accepts
/// a connection but has sent nothing until `deadline`: every later connection to it, those of Qt's
/// own included, would wait without a limit. Writes a line on standard error then. A bus that
/// answers, that cannot be connected to, or that is reached by anything but a local socket is left
/// as it is.
///
/// Main thread, before anything in the process uses the session bus. Costs one round
/// trip; a bus that has responded once is not asked again.
void disableUnresponsiveSessionBus(Uptime deadline);

} // namespace orlimo
