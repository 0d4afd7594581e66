#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/clipboard/linux/ClipboardPasteboard.h"
#include "platform/clipboard/linux/DataControlClipboard.h"

#include <QTimer>

#include <string>

namespace orlimo {

/// The clipboard of a Wayland session whose compositor offers data control or has not responded
/// yet; works without a focused window. If the compositor cannot be reached, or does not respond
/// for two seconds, a line on standard error says so. In the first case Qt's clipboard gets the
/// text instead. In the second the compositor gets it as soon as it responds, and Qt's clipboard
/// has it meanwhile unless Qt runs on that compositor. Once the compositor turns out not to offer
/// data control, only Qt's clipboard is used. Main thread.
class DataControlPasteboard final : public Pasteboard
{
public:
    DataControlPasteboard();
    void declareTypes(std::initializer_list<PasteboardType> types) override;
    void setString(std::string_view text, PasteboardType type) override;

private:
    void didComplete(DataControlClipboard::Outcome outcome);
    void useFallback();
    void reportUnreachable();

    DataControlClipboard clipboard;
    ClipboardPasteboard fallback;
    /// The text that is waiting for the compositor.
    std::string latestText;
    bool isFallbackUpToDate = false;
    bool isUnreachable = false;
    bool isUnsupported = false;
    /// Runs only while a text is waiting for the compositor.
    QTimer responseTimer;
};

} // namespace orlimo
