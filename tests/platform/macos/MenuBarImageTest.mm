#include "platform/macos/MenuBarImage.h"

#include "platform/macos/BitmapImage.h"
#include "resources/ImageAsset.h"
#include "resources/ImageIcon.h"
#include "tests/support/PixelReading.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

NSBitmapImageRep* representation(const Retained<NSImage*>& image, NSUInteger index)
{
    return static_cast<NSBitmapImageRep*>([[image.get() representations] objectAtIndex:index]);
}

TEST(MenuBarImage, IsSixteenPointsAtOneAndTwoPixels)
{
    @autoreleasepool {
        const auto image = menuBarImage(templateIcon(QStringLiteral("StatusBarIcon")));
        EXPECT_TRUE(NSEqualSizes([image.get() size], NSMakeSize(16, 16)));
        ASSERT_EQ([[image.get() representations] count], 2U);
        for (const NSUInteger index : {0U, 1U}) {
            NSBitmapImageRep* const bitmap = representation(image, index);
            EXPECT_TRUE(NSEqualSizes([bitmap size], NSMakeSize(16, 16)));
            EXPECT_EQ([bitmap pixelsWide], index == 0 ? 16 : 32);
            EXPECT_EQ([bitmap pixelsHigh], index == 0 ? 16 : 32);
        }
    }
}

TEST(MenuBarImage, IsTheIconSharpAtEachScale)
{
    @autoreleasepool {
        const auto image = menuBarImage(templateIcon(QStringLiteral("StatusBarIcon")));
        for (const int scale : {1, 2}) {
            const QImage shown = toImage(representation(image, static_cast<NSUInteger>(scale - 1)));
            EXPECT_TRUE(looksTheSame(
                shown.convertToFormat(QImage::Format_ARGB32_Premultiplied),
                pixelsOf(imageNamed(u"StatusBarIcon", QSize(16, 16), scale))));
            EXPECT_FALSE(inkOf(pixelsOf(QPixmap::fromImage(shown))).isEmpty());
        }
    }
}

TEST(MenuBarImage, KeepsColoursAndTheWayUp)
{
    @autoreleasepool {
        QPixmap pixmap(32, 32);
        pixmap.fill(Qt::transparent);
        QPainter(&pixmap).fillRect(0, 0, 16, 8, QColor(255, 128, 0));
        const auto image = menuBarImage(QIcon(pixmap));
        const QImage shown = toImage(representation(image, 1));
        EXPECT_EQ(shown.pixelColor(2, 2), QColor(255, 128, 0));
        EXPECT_EQ(shown.pixelColor(2, 20).alpha(), 0);
        EXPECT_EQ(shown.pixelColor(20, 2).alpha(), 0);
    }
}

TEST(MenuBarImage, IsATemplateWhereTheIconIsAMask)
{
    @autoreleasepool {
        EXPECT_TRUE([menuBarImage(templateIcon(QStringLiteral("StatusBarIcon"))).get() isTemplate]);
        EXPECT_FALSE([menuBarImage(imageIcon(QStringLiteral("logo"))).get() isTemplate]);
    }
}

} // namespace
} // namespace orlimo
