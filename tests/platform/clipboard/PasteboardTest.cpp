#include "platform/clipboard/linux/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

std::string clipboardText()
{
    return QGuiApplication::clipboard()->text().toStdString();
}

TEST(PasteboardTest, AnyTextReplacesEverythingInOneChange)
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    auto* const old = new QMimeData; // the clipboard takes it
    old->setText(QStringLiteral("old text"));
    old->setHtml(QStringLiteral("<b>old text</b>"));
    clipboard.setMimeData(old);
    int changes = 0;
    const QObject context;
    QObject::connect(&clipboard, &QClipboard::dataChanged, &context, [&] { ++changes; });
    ClipboardPasteboard pasteboard;
    pasteboard.declareTypes({PasteboardType::string});
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(clipboardText(), "old text");
    pasteboard.setString("123456", PasteboardType::string);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(clipboardText(), "123456");
    const auto hint = QStringLiteral("x-kde-passwordManagerHint");
    EXPECT_EQ(clipboard.mimeData()->formats(), (QStringList{QStringLiteral("text/plain"), hint}));
    EXPECT_EQ(clipboard.mimeData()->data(hint), "secret");
    EXPECT_FALSE(clipboard.ownsSelection());
    EXPECT_TRUE(clipboard.text(QClipboard::Selection).isEmpty());
    // Eastern Arabic digits, a letter with a combining mark and one beyond the basic plane; a NUL;
    // nothing; and a part of a longer text.
    for (const auto& given :
         {"\u0661\u0662\u0663\u0664 e\u0301 \U0001F511"sv,
          "12\0 34"sv,
          ""sv,
          "Your code is 123456."sv.substr(13, 6)})
    {
        pasteboard.setString(given, PasteboardType::string);
        EXPECT_EQ(clipboardText(), given);
        EXPECT_TRUE(clipboard.mimeData()->hasText()) << "also an empty text";
    }
}

} // namespace
} // namespace orlimo
