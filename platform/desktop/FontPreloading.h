#pragma once

namespace orlimo {

/// Has Qt list the fonts ahead of the first window where that takes long and holds nothing up
/// meanwhile; otherwise does nothing. Returns at once. Main thread, after the application object
/// has been made.
void preloadFonts();

} // namespace orlimo
