#pragma once

#include "platform/clipboard/Pasteboard.h"

#include <memory>

namespace orlimo {

/// The system's general pasteboard. Main thread.
[[nodiscard]] std::unique_ptr<Pasteboard> makeGeneralPasteboard();

} // namespace orlimo
