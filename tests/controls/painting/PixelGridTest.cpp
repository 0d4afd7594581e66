#include "controls/painting/PixelGrid.h"

#include "tests/support/widgets/QtPrinting.h"

#include <QImage>
#include <QPainter>
#include <QRegion>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A painter on a picture with some pixels a point.
class PixelGridAt : public testing::TestWithParam<double>
{
protected:
    PixelGridAt()
    {
        image.setDevicePixelRatio(GetParam());
        painter.begin(&image);
    }

    [[nodiscard]] PixelGrid grid() const { return PixelGrid(painter); }

    /// How many pixels a length in points is.
    [[nodiscard]] static double pixels(double points) { return points * GetParam(); }

    QImage image{QSize(200, 200), QImage::Format_ARGB32_Premultiplied};
    QPainter painter;
};

TEST_P(PixelGridAt, SnapsToEdgesAtWhichQtClipsWidgets)
{
    const QTransform toPixels = QTransform::fromScale(GetParam(), GetParam());
    for (int start = 0; start < 8; ++start) {
        for (const int length : {1, 13, 16, 17, 18}) {
            const QRect area(start, 2 * start, length, length + 1);
            const QRectF kept = toPixels.map(QRegion(area)).boundingRect();
            EXPECT_EQ(toPixels.mapRect(grid().snapped(area)).toRect(), kept.toRect())
                << testing::PrintToString(area);
        }
    }
}

TEST_P(PixelGridAt, SnapsUnderAnyTranslation)
{
    painter.translate(0.3, 7.1);
    const QRectF snapped = grid().snapped(QRectF(0, 0, 10, 10)).translated(0.3, 7.1);
    EXPECT_NEAR(pixels(snapped.top()), std::round(pixels(7.1)), 1e-9);
    EXPECT_NEAR(pixels(snapped.right()), std::round(pixels(10.3)), 1e-9);
}

TEST_P(PixelGridAt, HasLinesOfWholePixelsNoWiderThanOnePoint)
{
    const double width = grid().lineWidth();
    EXPECT_EQ(pixels(width), std::max(1.0, std::floor(GetParam())));
    EXPECT_EQ(grid().hasPointSizedPixels(), GetParam() == 1);
}

TEST_P(PixelGridAt, KeepsAreasUnderRotation)
{
    painter.rotate(30);
    const QRectF area(1, 2, 3.3, 4.4);
    EXPECT_EQ(grid().snapped(area), area);
    EXPECT_EQ(grid().lineWidth(), 1);
}

INSTANTIATE_TEST_SUITE_P(Scales, PixelGridAt, testing::Values(1, 1.25, 1.5, 1.75, 2, 2.25, 3));

} // namespace
} // namespace orlimo
