#include "platform/desktop/FontPreloading.h"

#include "platform/threads/Queue.h"

#include <QFontDatabase>
#include <QStringList>

namespace orlimo {

void preloadFonts()
{
    // Loading fontconfig's configuration takes a third of the time until the first window is shown.
    backgroundQueue().async([] { (void)QFontDatabase::families(); });
}

} // namespace orlimo
