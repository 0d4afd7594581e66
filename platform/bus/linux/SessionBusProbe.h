#pragma once

#include "platform/threads/UptimeClock.h"

namespace orlimo {

/// Disables the session bus for this process and its children, with a line on standard error, if
/// the bus accepts a connection but has sent nothing by `deadline`: every later connection to it,
/// Qt's included, would wait without a limit. A bus that responds, that refuses the connection, or
/// that has no local socket is left alone.
///
/// Main thread, before anything in the process uses the session bus. Costs one round trip; a bus
/// that has responded once is not probed again.
void disableUnresponsiveSessionBus(Uptime deadline);

} // namespace orlimo
