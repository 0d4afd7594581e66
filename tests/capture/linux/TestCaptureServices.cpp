#include "tests/capture/TestCaptureServices.h"

#include "platform/clipboard/linux/ClipboardPasteboard.h"

namespace orlimo {

UserDefaults& captureUserDefaults()
{
    return standardUserDefaults();
}

Pasteboard& capturePasteboard()
{
    static ClipboardPasteboard pasteboard;
    return pasteboard;
}

} // namespace orlimo
