#include "tests/support/widgets/Picture.h"

#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace orlimo {

Picture Picture::of(QWidget& widget)
{
    const double scale = widget.devicePixelRatioF();
    QPixmap pixmap((QSizeF(widget.size()) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    widget.render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
    return Picture(pixmap.toImage());
}

Picture Picture::ofWindow(QWidget& window)
{
    return Picture(window.grab().toImage());
}

Picture Picture::ofWindow(QWidget& window, double scale)
{
    QPixmap pixmap((QSizeF(window.size()) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    window.render(&pixmap);
    return Picture(pixmap.toImage());
}

Picture Picture::drawn(QSize size, double scale, const std::function<void(QPainter&)>& draw)
{
    QPixmap pixmap((QSizeF(size) * scale).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    painter.end();
    return Picture(pixmap.toImage());
}

Picture::Picture(const QImage& painted)
    : image(painted.convertToFormat(QImage::Format_ARGB32))
    , scale(painted.devicePixelRatio())
{}

QColor Picture::at(QPointF point) const
{
    return image.pixelColor(
        static_cast<int>(std::floor(point.x() * scale)),
        static_cast<int>(std::floor(point.y() * scale)));
}

QRectF Picture::ink(int leastAlpha) const
{
    return areaOf(
        [this, leastAlpha](int x, int y) { return qAlpha(image.pixel(x, y)) >= leastAlpha; });
}

QRectF Picture::differenceFrom(const Picture& other, int leastDifference) const
{
    if (image.size() != other.image.size()) {
        return {QPointF(), size()};
    }
    return areaOf([&](int x, int y) {
        const QRgb one = image.pixel(x, y);
        const QRgb two = other.image.pixel(x, y);
        return std::max(
                   {std::abs(qRed(one) - qRed(two)),
                    std::abs(qGreen(one) - qGreen(two)),
                    std::abs(qBlue(one) - qBlue(two)),
                    std::abs(qAlpha(one) - qAlpha(two))}) >= leastDifference;
    });
}

QRectF Picture::areaOf(const std::function<bool(int, int)>& belongs) const
{
    int left = image.width();
    int top = image.height();
    int right = 0;
    int bottom = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (belongs(x, y)) {
                left = std::min(left, x);
                top = std::min(top, y);
                right = std::max(right, x + 1);
                bottom = std::max(bottom, y + 1);
            }
        }
    }
    if (right <= left) {
        return {};
    }
    return {left / scale, top / scale, (right - left) / scale, (bottom - top) / scale};
}

} // namespace orlimo
