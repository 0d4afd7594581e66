#include "resources/SquareIconEngine.h"

#include <QPainter>
#include <QRect>

#include <algorithm>
#include <utility>

namespace orlimo {

namespace {

/// The size of the largest square that fits into `size`.
QSize squareIn(const QSize& size)
{
    const int edge = std::min(size.width(), size.height());
    return {edge, edge};
}

} // namespace

SquareIconEngine::SquareIconEngine(Options engineOptions)
    : options(std::move(engineOptions))
{}

void SquareIconEngine::paint(
    QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state)
{
    const double scale = painter->device()->devicePixelRatioF();
    // QIcon has already centered the actual size.
    painter->drawPixmap(area, scaledPixmap(area.size() * scale, mode, state, scale));
}

QSize SquareIconEngine::actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/)
{
    return squareIn(size.boundedTo(options.maxSize.value_or(size)));
}

QPixmap SquareIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1);
}

QPixmap SquareIconEngine::scaledPixmap(
    const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/, qreal scale)
{
    // The size counts pixels here.
    QPixmap picture = options.draw(squareIn(size));
    if (options.tint && !picture.isNull()) {
        QPainter painter(&picture);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), *options.tint);
    }
    picture.setDevicePixelRatio(scale);
    return picture;
}

QList<QSize> SquareIconEngine::availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/)
{
    return options.availableSizes;
}

} // namespace orlimo
