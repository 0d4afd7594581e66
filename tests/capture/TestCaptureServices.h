#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/preferences/UserDefaults.h"

namespace orlimo {

/// The preferences with which capturing is tested: the program's own if they are in the sandboxed
/// home; in memory if they belong to the account. Empty at first.
[[nodiscard]] UserDefaults& captureUserDefaults();

/// The pasteboard with which it is tested: the program's own if Qt's test platform keeps it inside
/// the process; otherwise one that writes to Qt's clipboard.
[[nodiscard]] Pasteboard& capturePasteboard();

} // namespace orlimo
