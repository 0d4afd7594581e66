#include "tests/capture/TestCaptureServices.h"

namespace orlimo {

UserDefaults& captureUserDefaults()
{
    return standardUserDefaults();
}

Pasteboard& capturePasteboard()
{
    return generalPasteboard();
}

} // namespace orlimo
