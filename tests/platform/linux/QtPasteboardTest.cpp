#include "platform/Pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(QtPasteboard, LeavesTheSelectionAlone)
{
    // Not every platform has one; where it has, it is not ours.
    generalPasteboard().declareTypes({PasteboardType::string});
    generalPasteboard().setString("123456", PasteboardType::string);
    EXPECT_FALSE(QGuiApplication::clipboard()->ownsSelection());
    EXPECT_TRUE(QGuiApplication::clipboard()->text(QClipboard::Selection).isEmpty());
    QGuiApplication::clipboard()->clear();
}

} // namespace
} // namespace orlimo
