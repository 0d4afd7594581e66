#include "app/guidance/DrawnView.h"

#include "controls/painting/RoundedRectangle.h"

#include <QPainter>
#include <QPixmap>

#include <utility>

namespace orlimo {

DrawnView clippedToRoundedRectangle(DrawnView view, double cornerRadius)
{
    const QSize size = view.size;
    // Drawn apart and then masked: a painter's own clip leaves stairs along a curve.
    auto draw = [view = std::move(view), cornerRadius](QPainter& painter) {
        const double scale = painter.device()->devicePixelRatioF();
        QPixmap picture((QSizeF(view.size) * scale).toSize());
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::transparent);

        QPainter layerPainter(&picture);
        layerPainter.setRenderHints(painter.renderHints());
        layerPainter.setPen(painter.pen());
        view.draw(layerPainter);
        QPixmap mask(picture.size());
        mask.setDevicePixelRatio(scale);
        mask.fill(Qt::transparent);
        QPainter maskPainter(&mask);
        maskPainter.setRenderHint(QPainter::Antialiasing);
        maskPainter.fillPath(
            continuousRoundedRectangle(QRectF(QPointF(), view.size), cornerRadius), Qt::black);
        maskPainter.end();
        layerPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        layerPainter.drawPixmap(0, 0, mask);
        layerPainter.end();

        painter.drawPixmap(0, 0, picture);
    };
    return {.size = size, .draw = std::move(draw)};
}

} // namespace orlimo
