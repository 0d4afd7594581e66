#include "resources/ImageAsset.h"

#include "resources/Artwork.h"

namespace orlimo {

namespace {

Artwork imageAsset(QStringView name)
{
    return {u"images", name};
}

} // namespace

QPixmap imageNamed(QStringView name, QSize size, qreal devicePixelRatio)
{
    return imageAsset(name).drawn(size, devicePixelRatio);
}

QPixmap templateImageNamed(QStringView name, QSize size, qreal devicePixelRatio, const QColor& tint)
{
    return imageAsset(name).drawn(size, devicePixelRatio, tint);
}

} // namespace orlimo
