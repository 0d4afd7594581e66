#include "platform/clipboard/linux/ClipboardPasteboard.h"

#include "platform/clipboard/linux/PasswordManagerHint.h"
#include "platform/process/ToQString.h"

#include <QByteArray>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

namespace orlimo {

void ClipboardPasteboard::declareTypes(std::initializer_list<PasteboardType> /*types*/) {}

void ClipboardPasteboard::setString(std::string_view text, PasteboardType /*type*/)
{
    auto data = std::make_unique<QMimeData>();
    data->setText(toQString(text));
    data->setData(
        QString::fromLatin1(passwordManagerHint::type),
        QByteArray(passwordManagerHint::value.data(), passwordManagerHint::value.size()));
    QGuiApplication::clipboard()->setMimeData(data.release(), QClipboard::Clipboard);
}

} // namespace orlimo
