#include "platform/clipboard/linux/ClipboardPasteboard.h"
#include "tests/platform/clipboard/PasteboardContents.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(QtPasteboard, LeavesTheSelectionAlone)
{
    // Not every platform has one; where it has, it is not ours.
    ClipboardPasteboard pasteboard;
    pasteboard.declareTypes({PasteboardType::string});
    pasteboard.setString("123456", PasteboardType::string);
    EXPECT_FALSE(QGuiApplication::clipboard()->ownsSelection());
    EXPECT_TRUE(QGuiApplication::clipboard()->text(QClipboard::Selection).isEmpty());
    QGuiApplication::clipboard()->clear();
}

TEST(QtPasteboard, ChangesOnceForEachTextAndNotBeforeItIsThere)
{
    contents::fill();
    int changes = 0;
    const QObject context;
    QObject::connect(
        QGuiApplication::clipboard(), &QClipboard::dataChanged, &context, [&] { ++changes; });
    ClipboardPasteboard pasteboard;
    pasteboard.declareTypes({PasteboardType::string});
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(contents::text(), "old text");
    pasteboard.setString("123456", PasteboardType::string);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(contents::text(), "123456");
}

TEST(QtPasteboard, MarksItsTextAsSecret)
{
    ClipboardPasteboard pasteboard;
    pasteboard.declareTypes({PasteboardType::string});
    pasteboard.setString("123456", PasteboardType::string);
    EXPECT_EQ(
        QGuiApplication::clipboard()->mimeData()->data(QStringLiteral("x-kde-passwordManagerHint")),
        "secret");
}

} // namespace
} // namespace orlimo
