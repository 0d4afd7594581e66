#include "platform/clipboard/linux/GeneralPasteboard.h"

#include "platform/clipboard/linux/ClipboardPasteboard.h"
#include "platform/clipboard/linux/DataControlPasteboard.h"

namespace orlimo {

std::unique_ptr<Pasteboard> makeGeneralPasteboard(ClipboardBackend backend)
{
    if (backend == ClipboardBackend::dataControl ||
        backend == ClipboardBackend::dataControlOrXServer) {
        return std::make_unique<DataControlPasteboard>();
    }
    return std::make_unique<ClipboardPasteboard>();
}

} // namespace orlimo
