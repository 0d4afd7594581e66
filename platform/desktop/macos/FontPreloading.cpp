#include "platform/desktop/FontPreloading.h"

namespace orlimo {

void preloadFonts()
{
    // Core Text keeps the list for every program. On the background queue, whose threads run on the
    // efficiency cores, Qt's font mutex would be held for long, and the first window wait for it.
}

} // namespace orlimo
