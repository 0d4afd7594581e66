#pragma once

namespace orlimo {

/// Has Qt list the fonts in the background before the first window, on systems where that takes
/// long; otherwise does nothing. Returns at once. Main thread, after the application object has
/// been created.
void preloadFonts();

} // namespace orlimo
