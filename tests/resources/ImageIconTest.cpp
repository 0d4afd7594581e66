#include "resources/ImageIcon.h"

#include "tests/support/widgets/PixelReading.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

constexpr QSize upright(22, 38);
constexpr QSize flat(44, 22);

TEST(ImageIconTest, IsSquareInAnySize)
{
    const QIcon icon = imageIcon(QStringLiteral("logo"));
    for (const auto& [size, edge] : {std::pair(upright, 22), std::pair(flat, 22)}) {
        EXPECT_EQ(icon.actualSize(size), QSize(edge, edge));
        EXPECT_EQ(icon.pixmap(size, 1.0).size(), QSize(edge, edge));
    }
}

TEST(ImageIconTest, IsPaintedAsASquareInTheMiddle)
{
    const QIcon icon = templateIcon(QStringLiteral("StatusBarIcon"));
    for (const QSize& size : {upright, flat}) {
        QImage place(size, QImage::Format_ARGB32);
        place.fill(Qt::transparent);
        QPainter painter(&place);
        icon.paint(&painter, place.rect());
        painter.end();
        const QRect ink = inkOf(place);
        EXPECT_EQ(ink.width(), 22);
        EXPECT_EQ(ink.x(), (size.width() - 22) / 2);
        EXPECT_NEAR(ink.center().y(), size.height() / 2.0, 1);
        EXPECT_NEAR(ink.height(), 21, 1);
    }
}

} // namespace
} // namespace orlimo
