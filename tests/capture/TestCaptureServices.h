#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/preferences/UserDefaults.h"

namespace orlimo {

/// The preferences with which capturing is tested: the program's own where those lie in the home of
/// the test program, which is a sandbox; in memory where they belong to the account. Empty at
/// first.
[[nodiscard]] UserDefaults& captureUserDefaults();

/// The pasteboard with which it is tested: the program's own where the toolkit's platform for tests
/// keeps it to the process; else one that leads to the toolkit's clipboard.
[[nodiscard]] Pasteboard& capturePasteboard();

} // namespace orlimo
