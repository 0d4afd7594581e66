#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/ClipboardPasteboard.h"
#include "platform/linux/DataControlClipboard.h"

#include <QTimer>

#include <string>

namespace orlimo {

/// The clipboard of a Wayland session whose compositor offers data control, or has not said yet
/// whether it does: no window needs the focus. Qt's clipboard gets the text too where the
/// compositor cannot be reached or does not respond for two seconds, which a line on standard error
/// says; the compositor gets it all the same as soon as it responds. Where it says only then that
/// it does not offer data control, Qt's clipboard is used from there on. Main thread.
class DataControlPasteboard final : public Pasteboard
{
public:
    DataControlPasteboard();
    void declareTypes(std::initializer_list<PasteboardType> types) override;
    void setString(std::string_view text, PasteboardType type) override;

private:
    void didComplete(DataControlClipboard::Outcome outcome);
    void useStandIn();
    void reportOutOfReach();

    DataControlClipboard clipboard;
    ClipboardPasteboard standIn;
    /// The text that is waiting for the compositor.
    std::string newest;
    bool hasStandInNewest = false;
    bool isOutOfReach = false;
    bool isUnsupported = false;
    /// Runs only while a text is waiting for the compositor.
    QTimer responseLimit;
};

} // namespace orlimo
