#pragma once

namespace orlimo {

/// Whether the main thread's event loop runs what is on the main dispatch queue. Only the toolkit's
/// own platform for this system does: its platforms without a display, and an application object
/// without any platform, wait for descriptors alone. Told once and for all at the first call, which
/// must come after the application object was built.
[[nodiscard]] bool isMainDispatchQueueDrained();

} // namespace orlimo
