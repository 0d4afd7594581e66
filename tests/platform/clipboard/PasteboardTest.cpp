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

/// The pasteboard on Qt's clipboard, which holds something of several types at first.
class PasteboardTest : public testing::Test
{
protected:
    void SetUp() override
    {
        auto* const old = new QMimeData; // the clipboard takes it
        old->setText(QStringLiteral("old text"));
        old->setHtml(QStringLiteral("<b>old text</b>"));
        QGuiApplication::clipboard()->setMimeData(old);
    }

    ClipboardPasteboard pasteboard;

    static std::string text() { return QGuiApplication::clipboard()->text().toStdString(); }
};

TEST_F(PasteboardTest, TextReplacesEverythingInOneChange)
{
    int changes = 0;
    const QObject context;
    QObject::connect(
        QGuiApplication::clipboard(), &QClipboard::dataChanged, &context, [&] { ++changes; });
    pasteboard.declareTypes({PasteboardType::string});
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(text(), "old text");
    pasteboard.setString("123456", PasteboardType::string);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(text(), "123456");
    const QMimeData& data = *QGuiApplication::clipboard()->mimeData();
    const auto hint = QStringLiteral("x-kde-passwordManagerHint");
    EXPECT_EQ(data.formats(), (QStringList{QStringLiteral("text/plain"), hint}));
    EXPECT_EQ(data.data(hint), "secret");
    EXPECT_FALSE(QGuiApplication::clipboard()->ownsSelection());
    EXPECT_TRUE(QGuiApplication::clipboard()->text(QClipboard::Selection).isEmpty());
}

TEST_F(PasteboardTest, AnyTextIsKeptAsItIs)
{
    const std::string message = "Your code is 123456.";
    // Eastern Arabic digits, a letter with a combining mark and one beyond the basic plane; a NUL;
    // nothing; and a part of a longer text.
    for (const auto& given :
         {"\u0661\u0662\u0663\u0664 e\u0301 \U0001F511"sv,
          "12\0 34"sv,
          ""sv,
          std::string_view(message).substr(13, 6)})
    {
        pasteboard.declareTypes({PasteboardType::string});
        pasteboard.setString(given, PasteboardType::string);
        EXPECT_EQ(text(), given);
    }
}

} // namespace
} // namespace orlimo
