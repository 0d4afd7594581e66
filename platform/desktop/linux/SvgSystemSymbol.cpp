#include "platform/desktop/SystemSymbol.h"
#include "resources/Artwork.h"

#include <QtMath>

namespace orlimo {

namespace {

/// A symbol's box beside a pixel of text: the symbols leave a margin in it and so come out a little
/// taller than capitals, as a mark beside a line of text should.
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
