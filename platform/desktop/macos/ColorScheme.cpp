#include "platform/desktop/ColorScheme.h"

namespace orlimo {

void followColorScheme()
{
    // Qt's palette follows the system here.
}

} // namespace orlimo
