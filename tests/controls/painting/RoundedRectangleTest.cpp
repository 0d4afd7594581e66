#include "controls/painting/RoundedRectangle.h"

#include <QPainterPath>
#include <QTransform>
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace orlimo {
namespace {

/// How far the edge of the shape is from the corner, along the diagonal.
double cornerDepth(const QPainterPath& path)
{
    for (double inward = 0; inward < 100; inward += 0.01) {
        if (path.contains(QPointF(inward, inward))) {
            return inward * std::sqrt(2);
        }
    }
    return -1;
}

TEST(RoundedRectangle, CutsEachCornerAsDeepAsCircleOfItsRadius)
{
    for (const double radius : {7.0, 8.0, 10.0, 20.0}) {
        const QRectF rectangle(0, 0, 200, 200);
        const QPainterPath path = continuousRoundedRectangle(rectangle, radius);
        EXPECT_EQ(path.boundingRect(), rectangle);
        for (const auto& [across, down] :
             {std::pair(1, 1), std::pair(-1, 1), std::pair(1, -1), std::pair(-1, -1)})
        {
            const QTransform toCorner =
                QTransform::fromTranslate(100, 100).scale(across, down).translate(-100, -100);
            EXPECT_NEAR(cornerDepth(toCorner.map(path)), radius * (std::sqrt(2) - 1), 0.05);
        }
    }
}

TEST(RoundedRectangle, BeginsItsCurveFurtherOutThanCircle)
{
    QPainterPath circle;
    circle.addRoundedRect(QRectF(0, 0, 200, 200), 20, 20);
    const QPointF whereTheCircleIsStraight(22, 0.05);
    EXPECT_TRUE(circle.contains(whereTheCircleIsStraight));
    EXPECT_FALSE(
        continuousRoundedRectangle(QRectF(0, 0, 200, 200), 20).contains(whereTheCircleIsStraight));
}

TEST(RoundedRectangle, HasRoundEndsWhereRadiusIsHalfTheHeight)
{
    const QPainterPath path = continuousRoundedRectangle(QRectF(0, 0, 140, 40), 20);
    for (int degrees = 0; degrees <= 90; degrees += 5) {
        const double angle = degrees * std::acos(-1.0) / 180;
        const QPointF direction(-std::cos(angle), -std::sin(angle));
        EXPECT_TRUE(path.contains(QPointF(20, 20) + direction * 19.7)) << degrees;
        EXPECT_FALSE(path.contains(QPointF(20, 20) + direction * 20.3)) << degrees;
    }
}

TEST(RoundedRectangle, LimitsRadiusToRectangle)
{
    const QRectF rectangle(1, 2, 40, 20);
    EXPECT_EQ(
        continuousRoundedRectangle(rectangle, 500), continuousRoundedRectangle(rectangle, 10));
    QPainterPath plain;
    plain.addRect(rectangle);
    EXPECT_EQ(continuousRoundedRectangle(rectangle, 0), plain);
}

} // namespace
} // namespace orlimo
