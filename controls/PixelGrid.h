#pragma once

#include <QRectF>
#include <QSizeF>
#include <QTransform>

class QPainter;

namespace orlimo {

/// The pixels of what a painter paints on, seen from the painter's coordinates. Where a point is no
/// whole number of pixels, what is to look crisp and even is placed by it. A painter that turns
/// what it paints has none: nothing is moved there, and a pixel counts as a point.
class PixelGrid
{
public:
    /// As the painter stands now.
    explicit PixelGrid(const QPainter& painter);

    /// `area`, in points, with each edge moved to the nearest edge of a pixel. The toolkit cuts a
    /// widget off at these edges.
    [[nodiscard]] QRectF snapped(const QRectF& area) const;

    /// The width of a line of one point: as many whole pixels as there are in it, and at least one.
    /// In points.
    [[nodiscard]] double lineWidth() const;

    /// Whether a pixel is a point and lies where one does, or nothing is known of the pixels.
    [[nodiscard]] bool isOfPoints() const;

    /// The size of a pixel, in points.
    [[nodiscard]] QSizeF pixelSize() const;

private:
    QTransform toPixels;
    bool hasPixels;
};

} // namespace orlimo
