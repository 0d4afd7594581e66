#include "controls/painting/RoundedRectangle.h"

#include "tests/support/widgets/Picture.h"

#include <QPainter>
#include <QPainterPath>
#include <gtest/gtest.h>

#include <cmath>

namespace orlimo {
namespace {

/// How far the edge of the shape is from the corner, along the diagonal.
double cornerDepth(const QPainterPath& path)
{
    for (double way = 0; way < 100; way += 0.01) {
        if (path.contains(QPointF(way, way))) {
            return way * std::sqrt(2);
        }
    }
    return -1;
}

TEST(RoundedRectangle, TouchesAllFourEdges)
{
    const QRectF rectangle(3, 5, 140, 90);
    EXPECT_EQ(continuousRoundedRectangle(rectangle, 20).boundingRect(), rectangle);
}

TEST(RoundedRectangle, CutsEachCornerAsDeepAsACircleOfItsRadius)
{
    for (const double radius : {7.0, 8.0, 10.0, 20.0}) {
        const QPainterPath path = continuousRoundedRectangle(QRectF(0, 0, 200, 200), radius);
        EXPECT_NEAR(cornerDepth(path), radius * (std::sqrt(2) - 1), 0.05) << radius;
    }
}

TEST(RoundedRectangle, IsTheSameAtEveryCorner)
{
    const QPainterPath path = continuousRoundedRectangle(QRectF(0, 0, 60, 60), 10);
    for (double x = 0.25; x < 15; x += 0.5) {
        for (double y = 0.25; y < 15; y += 0.5) {
            const bool inside = path.contains(QPointF(x, y));
            EXPECT_EQ(path.contains(QPointF(60 - x, y)), inside) << x << "," << y;
            EXPECT_EQ(path.contains(QPointF(x, 60 - y)), inside) << x << "," << y;
            EXPECT_EQ(path.contains(QPointF(60 - x, 60 - y)), inside) << x << "," << y;
        }
    }
}

TEST(RoundedRectangle, BeginsItsCurveFurtherOutThanACircle)
{
    QPainterPath circle;
    circle.addRoundedRect(QRectF(0, 0, 200, 200), 20, 20);
    const QPainterPath continuous = continuousRoundedRectangle(QRectF(0, 0, 200, 200), 20);
    const QPointF whereTheCircleIsStraight(22, 0.05);
    EXPECT_TRUE(circle.contains(whereTheCircleIsStraight));
    EXPECT_FALSE(continuous.contains(whereTheCircleIsStraight));
}

TEST(RoundedRectangle, HasRoundEndsWhereTheRadiusIsHalfTheHeight)
{
    const QPainterPath path = continuousRoundedRectangle(QRectF(0, 0, 140, 40), 20);
    for (int degrees = 0; degrees <= 90; degrees += 5) {
        const double angle = degrees * std::acos(-1.0) / 180;
        const QPointF direction(-std::cos(angle), -std::sin(angle));
        const QPointF centre(20, 20);
        EXPECT_TRUE(path.contains(centre + direction * 19.7)) << degrees;
        EXPECT_FALSE(path.contains(centre + direction * 20.3)) << degrees;
    }
}

TEST(RoundedRectangle, BoundsTheRadiusByTheRectangle)
{
    const QRectF rectangle(0, 0, 40, 20);
    EXPECT_EQ(
        continuousRoundedRectangle(rectangle, 500), continuousRoundedRectangle(rectangle, 10));
}

TEST(RoundedRectangle, WithoutARadiusIsPlain)
{
    QPainterPath plain;
    plain.addRect(QRectF(1, 2, 30, 40));
    EXPECT_EQ(continuousRoundedRectangle(QRectF(1, 2, 30, 40), 0), plain);
}

} // namespace
} // namespace orlimo
