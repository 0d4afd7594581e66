#pragma once

namespace orlimo {

/// Whether the caller runs on the process's first thread, the one that runs the event loop.
[[nodiscard]] bool isMainThread();

/// Stops the process when the caller runs on another thread. `file` and `line` are the caller's
/// location.
void requireMainThread(const char* file = __builtin_FILE(), int line = __builtin_LINE());

} // namespace orlimo
