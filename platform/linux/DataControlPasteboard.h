#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/ClipboardPasteboard.h"
#include "platform/linux/DataControlClipboard.h"

namespace orlimo {

/// The clipboard of a Wayland session whose compositor offers data control: no window needs the
/// focus. While the compositor cannot be reached, the toolkit's clipboard stands in, and a line on
/// standard error says so. Main thread.
class DataControlPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> types) override;
    void setString(std::string_view text, PasteboardType type) override;

private:
    /// Whether the text is on its way to the compositor.
    bool take(std::string_view text);

    DataControlClipboard clipboard;
    ClipboardPasteboard standIn;
    bool isOutOfReach = false;
};

} // namespace orlimo
