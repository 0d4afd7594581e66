#include "platform/Pasteboard.h"
#include "platform/ToQString.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

namespace orlimo {

namespace {

/// The clipboard of the desktop session; the selection that a mouse button pastes is left alone.
class ClipboardPasteboard final : public Pasteboard
{
public:
    void declareTypes(std::initializer_list<PasteboardType> /*types*/) override
    {
        // Taken over with an empty text and not given up: while nobody owns the clipboard, a
        // clipboard manager may put the old contents back, and win against the text that follows.
        QGuiApplication::clipboard()->setText(QString(), QClipboard::Clipboard);
    }

    void setString(std::string_view text, PasteboardType /*type*/) override
    {
        QGuiApplication::clipboard()->setText(toQString(text), QClipboard::Clipboard);
    }
};

} // namespace

Pasteboard& generalPasteboard()
{
    static ClipboardPasteboard pasteboard;
    return pasteboard;
}

} // namespace orlimo
