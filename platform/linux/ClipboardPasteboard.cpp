#include "platform/linux/ClipboardPasteboard.h"

#include "platform/ToQString.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QString>

namespace orlimo {

void ClipboardPasteboard::declareTypes(std::initializer_list<PasteboardType> /*types*/)
{
    // Taken over with an empty text and not given up: while nobody owns the clipboard, a clipboard
    // manager may put the old contents back, and win against the text that follows.
    QGuiApplication::clipboard()->setText(QString(), QClipboard::Clipboard);
}

void ClipboardPasteboard::setString(std::string_view text, PasteboardType /*type*/)
{
    QGuiApplication::clipboard()->setText(toQString(text), QClipboard::Clipboard);
}

} // namespace orlimo
