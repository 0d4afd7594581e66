#include "controls/painting/RoundedRectangle.h"

#include <QPointF>

#include <algorithm>

namespace orlimo {

namespace {

/// How far from the corner its curve begins, in radii, where the edges are long enough.
constexpr double curveExtent = 1.5;
/// How far from the edges the middle of a quarter circle is, in radii.
constexpr double circleMidpoint = 1 - 0.70710678118654752;

/// One of the two handles of the corner's curve, as the distance from the corner. The further out
/// the curve begins, the nearer the handles: its middle stays where a circle's would be.
double bezierHandle(double extent, double radius)
{
    return (8 * circleMidpoint * radius - extent) / 3;
}

} // namespace

QPainterPath continuousRoundedRectangle(const QRectF& rectangle, double radius)
{
    QPainterPath path;
    const double width = rectangle.width();
    const double height = rectangle.height();
    const double clampedRadius = std::min({radius, width / 2, height / 2});
    if (clampedRadius <= 0) {
        path.addRect(rectangle);
        return path;
    }
    // The same on both edges: round ends stay round.
    const double extent = std::min({clampedRadius * curveExtent, width / 2, height / 2});
    const double handle = bezierHandle(extent, clampedRadius);

    const auto point = [&rectangle](double x, double y) {
        return rectangle.topLeft() + QPointF(x, y);
    };
    path.moveTo(point(extent, 0));
    path.lineTo(point(width - extent, 0));
    path.cubicTo(point(width - handle, 0), point(width, handle), point(width, extent));
    path.lineTo(point(width, height - extent));
    path.cubicTo(
        point(width, height - handle),
        point(width - handle, height),
        point(width - extent, height));
    path.lineTo(point(extent, height));
    path.cubicTo(point(handle, height), point(0, height - handle), point(0, height - extent));
    path.lineTo(point(0, extent));
    path.cubicTo(point(0, handle), point(handle, 0), point(extent, 0));
    path.closeSubpath();
    return path;
}

} // namespace orlimo
