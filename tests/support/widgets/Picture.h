#pragma once

#include "tests/support/widgets/QtPrinting.h"

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <gmock/gmock.h>

#include <cstdlib>
#include <functional>

class QPainter;
class QWidget;

namespace orlimo {

/// What was painted, addressed in points at whatever scale the test runs.
class Picture
{
public:
    /// What `widget` and everything in it paint by themselves, on a transparent ground.
    [[nodiscard]] static Picture of(QWidget& widget);

    /// A window as it is seen, with its ground.
    [[nodiscard]] static Picture ofWindow(QWidget& window);

    /// The same as it is seen with `scale` pixels a point, whatever the test runs at.
    [[nodiscard]] static Picture ofWindow(QWidget& window, double scale);

    /// What `draw` paints on a transparent ground of `size` points, with `scale` pixels a point.
    [[nodiscard]] static Picture
    drawn(QSize size, double scale, const std::function<void(QPainter&)>& draw);

    explicit Picture(const QImage& painted);

    /// The color of the pixel that `point` lies in.
    [[nodiscard]] QColor at(QPointF point) const;

    /// The smallest area that holds everything at least as opaque as that.
    [[nodiscard]] QRectF ink(int leastAlpha = 1) const;

    /// The smallest area that holds everything in which a channel of the two differs by at least
    /// that; the whole when their sizes do.
    [[nodiscard]] QRectF differenceFrom(const Picture& other, int leastDifference = 1) const;

    [[nodiscard]] QSizeF size() const { return image.size() / scale; }
    [[nodiscard]] double pixelsPerPoint() const { return scale; }

private:
    [[nodiscard]] QRectF areaOf(const std::function<bool(int x, int y)>& belongs) const;

    QImage image;
    double scale;
};

/// Each channel of a color, opacity included, at most `tolerance` away from that of `expected`.
MATCHER_P2(IsColorWithin, expected, tolerance, "")
{
    return std::abs(arg.red() - expected.red()) <= tolerance &&
           std::abs(arg.green() - expected.green()) <= tolerance &&
           std::abs(arg.blue() - expected.blue()) <= tolerance &&
           std::abs(arg.alpha() - expected.alpha()) <= tolerance;
}

/// The color up to the rounding of what is blended.
inline auto isColor(const QColor& expected)
{
    return IsColorWithin(expected, 2);
}

} // namespace orlimo
