#pragma once

namespace orlimo {

/// Whether the caller runs on the process's first thread, the one that runs the event loop.
[[nodiscard]] bool isMainThread();

} // namespace orlimo
