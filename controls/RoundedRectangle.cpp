#include "controls/RoundedRectangle.h"

#include <QPointF>

#include <algorithm>

namespace orlimo {

namespace {

/// How far from the corner its curve begins, in radii, where the edges are long enough.
constexpr double reachOfCurve = 1.5;
/// How far from the edges the middle of a quarter circle is, in radii.
constexpr double middleOfCircle = 1 - 0.70710678118654752;

/// One of the two handles of the corner's curve, as the distance from the corner. The further out
/// the curve begins, the nearer the handles: its middle stays where a circle's would be.
double handleOf(double reach, double radius)
{
    return (8 * middleOfCircle * radius - reach) / 3;
}

} // namespace

QPainterPath continuousRoundedRectangle(const QRectF& rectangle, double radius)
{
    QPainterPath path;
    const double width = rectangle.width();
    const double height = rectangle.height();
    const double bounded = std::min({radius, width / 2, height / 2});
    if (bounded <= 0) {
        path.addRect(rectangle);
        return path;
    }
    const double across = std::min(bounded * reachOfCurve, width / 2);
    const double down = std::min(bounded * reachOfCurve, height / 2);
    const double handleAcross = handleOf(across, bounded);
    const double handleDown = handleOf(down, bounded);

    const auto point = [&rectangle](double x, double y) {
        return rectangle.topLeft() + QPointF(x, y);
    };
    path.moveTo(point(across, 0));
    path.lineTo(point(width - across, 0));
    path.cubicTo(point(width - handleAcross, 0), point(width, handleDown), point(width, down));
    path.lineTo(point(width, height - down));
    path.cubicTo(
        point(width, height - handleDown),
        point(width - handleAcross, height),
        point(width - across, height));
    path.lineTo(point(across, height));
    path.cubicTo(
        point(handleAcross, height), point(0, height - handleDown), point(0, height - down));
    path.lineTo(point(0, down));
    path.cubicTo(point(0, handleDown), point(handleAcross, 0), point(across, 0));
    path.closeSubpath();
    return path;
}

} // namespace orlimo
