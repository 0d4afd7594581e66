#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/clipboard/linux/ClipboardBackend.h"

#include <memory>

namespace orlimo {

/// The pasteboard that reaches the session's clipboard through `backend`. Main thread, once Qt's
/// application object exists.
[[nodiscard]] std::unique_ptr<Pasteboard> makeGeneralPasteboard(ClipboardBackend backend);

} // namespace orlimo
