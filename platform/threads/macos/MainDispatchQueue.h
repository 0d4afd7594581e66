#pragma once

namespace orlimo {

/// Whether the main thread's event loop drains the main dispatch queue. Only Qt's cocoa platform
/// does: its platforms without a display, and QCoreApplication, wait for descriptors alone.
/// Determined at the first call, which must follow the construction of the application object.
[[nodiscard]] bool isMainDispatchQueueDrained();

} // namespace orlimo
