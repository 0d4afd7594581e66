#include "platform/clipboard/Pasteboard.h"
#include "platform/clipboard/linux/ClipboardPasteboard.h"
#include "platform/clipboard/linux/ClipboardRoute.h"
#include "platform/clipboard/linux/DataControlPasteboard.h"

#include <memory>

namespace orlimo {

namespace {

std::unique_ptr<Pasteboard> makePasteboard()
{
    const ClipboardRoute route = takenClipboardRoute();
    if (route == ClipboardRoute::dataControl || route == ClipboardRoute::dataControlOrXServer) {
        return std::make_unique<DataControlPasteboard>();
    }
    return std::make_unique<ClipboardPasteboard>();
}

} // namespace

Pasteboard& generalPasteboard()
{
    // Never destroyed: it serves to the end, beyond that of the toolkit's objects.
    static Pasteboard& pasteboard = *makePasteboard().release();
    return pasteboard;
}

} // namespace orlimo
