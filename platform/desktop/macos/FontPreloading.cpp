#include "platform/desktop/FontPreloading.h"

namespace orlimo {

void preloadFonts()
{
    // Core Text keeps the list for all programs. The background queue runs on the efficiency cores
    // and would hold Qt's font mutex for long, delaying the first window.
}

} // namespace orlimo
