#pragma once

#include "platform/clipboard/Pasteboard.h"

namespace orlimo {

/// Qt's clipboard of the desktop session; the primary selection is left alone. On Wayland it works
/// only while a window of the program has the focus. Main thread.
class ClipboardPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> types) override;
    void setString(std::string_view text, PasteboardType type) override;
};

} // namespace orlimo
