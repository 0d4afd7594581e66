#pragma once

#include <QRectF>
#include <QSizeF>
#include <QTransform>

class QPainter;

namespace orlimo {

/// The device pixels that a painter paints on, in the painter's coordinates, to align lines and
/// text to them at scales where a point is no whole number of pixels. Under a rotation or shear
/// nothing is aligned, and a pixel counts as a point.
class PixelGrid
{
public:
    /// Of the painter's transformation at this moment.
    explicit PixelGrid(const QPainter& painter);

    /// `area`, in points, with each edge moved to the nearest edge of a pixel. Qt clips widgets at
    /// these edges.
    [[nodiscard]] QRectF snapped(const QRectF& area) const;

    /// The width of a line of one point: as many whole pixels as there are in it, and at least one.
    /// In points.
    [[nodiscard]] double lineWidth() const;

    /// Whether a pixel has the size of a point.
    [[nodiscard]] bool hasPointSizedPixels() const;

    /// The size of a pixel, in points.
    [[nodiscard]] QSizeF pixelSize() const;

private:
    QTransform pixelTransform;
    bool isAlignable;
};

} // namespace orlimo
