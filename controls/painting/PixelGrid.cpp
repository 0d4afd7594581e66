#include "controls/painting/PixelGrid.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orlimo {

PixelGrid::PixelGrid(const QPainter& painter)
    : toPixels(painter.deviceTransform())
    , hasPixels(toPixels.type() <= QTransform::TxScale && toPixels.m11() > 0 && toPixels.m22() > 0)
{}

bool PixelGrid::isOfPoints() const
{
    return pixelSize() == QSizeF(1, 1);
}

QRectF PixelGrid::snapped(const QRectF& area) const
{
    if (!hasPixels) {
        return area;
    }
    const QRectF pixels = toPixels.mapRect(area);
    const auto edge = [](double place) { return std::floor(place + 0.5); };
    const QPointF topLeft(edge(pixels.left()), edge(pixels.top()));
    const QPointF bottomRight(edge(pixels.right()), edge(pixels.bottom()));
    return toPixels.inverted().mapRect(QRectF(topLeft, bottomRight));
}

double PixelGrid::lineWidth() const
{
    const double pixel = pixelSize().height();
    return std::max(1.0, std::floor(1 / pixel)) * pixel;
}

QSizeF PixelGrid::pixelSize() const
{
    return hasPixels ? QSizeF(1 / toPixels.m11(), 1 / toPixels.m22()) : QSizeF(1, 1);
}

} // namespace orlimo
