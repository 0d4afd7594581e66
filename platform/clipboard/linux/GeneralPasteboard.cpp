#include "platform/clipboard/Pasteboard.h"
#include "platform/clipboard/linux/ClipboardBackend.h"
#include "platform/clipboard/linux/ClipboardPasteboard.h"
#include "platform/clipboard/linux/DataControlPasteboard.h"

#include <memory>

namespace orlimo {

namespace {

std::unique_ptr<Pasteboard> makePasteboard()
{
    const ClipboardBackend backend = selectedClipboardBackend();
    if (backend == ClipboardBackend::dataControl ||
        backend == ClipboardBackend::dataControlOrXServer) {
        return std::make_unique<DataControlPasteboard>();
    }
    return std::make_unique<ClipboardPasteboard>();
}

} // namespace

Pasteboard& generalPasteboard()
{
    // Never destroyed: it is used until exit, after Qt's objects are gone.
    static Pasteboard& pasteboard = *makePasteboard().release();
    return pasteboard;
}

} // namespace orlimo
