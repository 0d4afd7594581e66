#include "platform/ColorScheme.h"

namespace orlimo {

void followColorScheme()
{
    // The toolkit's palette is the system's here.
}

} // namespace orlimo
