#include "platform/desktop/SystemSymbol.h"
#include "resources/Artwork.h"

#include <QtMath>

namespace orlimo {

namespace {

/// The edge of a symbol's box per pixel of text size. The symbols leave a margin in their box, so
/// that they are slightly taller than capital letters.
constexpr qreal boxPerPixel = 1.2;

Artwork symbolNamed(QStringView name)
{
    return {u"symbols", name};
}

} // namespace

QPixmap systemSymbol(QStringView name, int pixelSize, const QColor& color, qreal devicePixelRatio)
{
    return symbolNamed(name).drawn(systemSymbolSize(name, pixelSize), devicePixelRatio, color);
}

QSize systemSymbolSize(QStringView name, int pixelSize)
{
    if (!symbolNamed(name).exists()) {
        return {0, 0};
    }
    const int side = qRound(boxPerPixel * pixelSize);
    return {side, side};
}

} // namespace orlimo
