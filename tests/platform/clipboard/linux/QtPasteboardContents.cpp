#include "tests/platform/clipboard/PasteboardContents.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace orlimo::contents {

namespace {

const QMimeData& data()
{
    return *QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
}

} // namespace

std::string text()
{
    return data().text().toStdString();
}

std::vector<std::string> types()
{
    std::vector<std::string> names;
    for (const QString& format : data().formats()) {
        names.push_back(format.toStdString());
    }
    return names;
}

std::vector<std::string> typesOfText()
{
    return {"text/plain", "x-kde-passwordManagerHint"};
}

void fill()
{
    auto* const old = new QMimeData; // the clipboard takes it
    old->setText(QStringLiteral("old text"));
    old->setHtml(QStringLiteral("<b>old text</b>"));
    old->setData(QStringLiteral("application/x-old"), "old data");
    QGuiApplication::clipboard()->setMimeData(old, QClipboard::Clipboard);
}

} // namespace orlimo::contents
