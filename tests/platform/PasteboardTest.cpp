#include "platform/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orlimo {
namespace {

using namespace std::string_view_literals;

const QMimeData& contents()
{
    return *QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
}

void putOnPasteboard(std::string_view text)
{
    generalPasteboard().declareTypes({PasteboardType::string});
    generalPasteboard().setString(text, PasteboardType::string);
}

/// Puts something of several types on the clipboard, as another program would.
void fillClipboard()
{
    auto* const data = new QMimeData; // the clipboard takes it
    data->setText(QStringLiteral("old text"));
    data->setHtml(QStringLiteral("<b>old text</b>"));
    data->setData(QStringLiteral("application/x-old"), "old data");
    QGuiApplication::clipboard()->setMimeData(data, QClipboard::Clipboard);
}

class PasteboardTest : public testing::Test
{
protected:
    void SetUp() override { fillClipboard(); }
    void TearDown() override { QGuiApplication::clipboard()->clear(); }
};

TEST_F(PasteboardTest, IsOne)
{
    EXPECT_EQ(&generalPasteboard(), &generalPasteboard());
}

TEST_F(PasteboardTest, IsEmptyAfterTheDeclaration)
{
    generalPasteboard().declareTypes({PasteboardType::string});
    EXPECT_EQ(contents().text(), QString());
    EXPECT_FALSE(contents().hasHtml());
    EXPECT_FALSE(contents().hasFormat(QStringLiteral("application/x-old")));
}

TEST_F(PasteboardTest, HoldsTheTextAndNothingElse)
{
    putOnPasteboard("123456");
    EXPECT_EQ(contents().text(), QStringLiteral("123456"));
    EXPECT_EQ(contents().formats(), QStringList{QStringLiteral("text/plain")});
    EXPECT_EQ(contents().data(QStringLiteral("text/plain")), QByteArray("123456"));
}

TEST_F(PasteboardTest, HoldsTheLatestText)
{
    putOnPasteboard("1111");
    putOnPasteboard("2222");
    EXPECT_EQ(contents().text(), QStringLiteral("2222"));
}

TEST_F(PasteboardTest, TakesTextThatIsNotAscii)
{
    // Eastern Arabic digits, a letter with a combining mark, and one beyond the basic plane.
    const auto text = "\u0661\u0662\u0663\u0664 e\u0301 \U0001F511"sv;
    putOnPasteboard(text);
    EXPECT_EQ(contents().text().toUtf8(), QByteArray(text.data(), static_cast<int>(text.size())));
}

TEST_F(PasteboardTest, TakesANulForACharacterLikeAnyOther)
{
    putOnPasteboard("12\0 34"sv);
    EXPECT_EQ(contents().text(), QString::fromUtf8("12\0 34", 6));
    EXPECT_EQ(contents().text().size(), 6);
}

TEST_F(PasteboardTest, TakesAnEmptyText)
{
    putOnPasteboard("");
    EXPECT_EQ(contents().text(), QString());
}

TEST_F(PasteboardTest, TakesNoMoreThanItIsGiven)
{
    const std::string message = "Your code is 123456.";
    putOnPasteboard(std::string_view(message).substr(13, 6));
    EXPECT_EQ(contents().text(), QStringLiteral("123456"));
}

TEST_F(PasteboardTest, LeavesTheSelectionAlone)
{
    // Not every platform has one; where it has, it is not ours.
    putOnPasteboard("123456");
    EXPECT_FALSE(QGuiApplication::clipboard()->ownsSelection());
    EXPECT_TRUE(QGuiApplication::clipboard()->text(QClipboard::Selection).isEmpty());
}

} // namespace
} // namespace orlimo
