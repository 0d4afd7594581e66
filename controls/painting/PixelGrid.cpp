#include "controls/painting/PixelGrid.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orlimo {

PixelGrid::PixelGrid(const QPainter& painter)
    : pixelTransform(painter.deviceTransform())
    , isAlignable(
          pixelTransform.type() <= QTransform::TxScale && pixelTransform.m11() > 0 &&
          pixelTransform.m22() > 0)
{}

bool PixelGrid::hasPointSizedPixels() const
{
    return pixelSize() == QSizeF(1, 1);
}

QRectF PixelGrid::snapped(const QRectF& area) const
{
    if (!isAlignable) {
        return area;
    }
    const QRectF pixels = pixelTransform.mapRect(area);
    const auto edge = [](double coordinate) { return std::floor(coordinate + 0.5); };
    const QPointF topLeft(edge(pixels.left()), edge(pixels.top()));
    const QPointF bottomRight(edge(pixels.right()), edge(pixels.bottom()));
    return pixelTransform.inverted().mapRect(QRectF(topLeft, bottomRight));
}

double PixelGrid::lineWidth() const
{
    const double pixel = pixelSize().height();
    return std::max(1.0, std::floor(1 / pixel)) * pixel;
}

QSizeF PixelGrid::pixelSize() const
{
    return isAlignable ? QSizeF(1 / pixelTransform.m11(), 1 / pixelTransform.m22()) : QSizeF(1, 1);
}

} // namespace orlimo
