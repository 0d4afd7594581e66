#include "resources/ImageIcon.h"

#include "tests/support/widgets/PixelReading.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(ImageIcon, IsSquareInTheMiddleOfAnyArea)
{
    const QIcon icon = templateIcon(QStringLiteral("StatusBarIcon"));
    EXPECT_TRUE(icon.isMask());
    EXPECT_FALSE(imageIcon(QStringLiteral("logo")).isMask());
    EXPECT_TRUE(icon.availableSizes().contains(QSize(128, 128)));
    for (const QSize& size : {QSize(22, 38), QSize(44, 22)}) {
        EXPECT_EQ(icon.actualSize(size), QSize(22, 22));
        EXPECT_EQ(icon.pixmap(size, 1.0).size(), QSize(22, 22));
        QImage area(size, QImage::Format_ARGB32);
        area.fill(Qt::transparent);
        QPainter painter(&area);
        icon.paint(&painter, area.rect());
        painter.end();
        const QRect ink = inkOf(area);
        EXPECT_EQ(ink.width(), 22);
        EXPECT_EQ(ink.x(), (size.width() - 22) / 2);
        EXPECT_NEAR(ink.center().y(), size.height() / 2.0, 1);
        EXPECT_NEAR(ink.height(), 21, 1);
    }
}

} // namespace
} // namespace orlimo
