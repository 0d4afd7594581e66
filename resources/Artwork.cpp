#include "resources/Artwork.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

/// Takes in the resources, which a static library leaves out until they are asked for.
/// Q_INIT_RESOURCE does not work inside a namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(orlimo);
}

namespace orlimo {

Artwork::Artwork(QStringView folder, QStringView name)
    : file(QStringLiteral(":/%1/%2.svg").arg(folder, name))
    , renderer(std::make_shared<QSvgRenderer>())
{
    registerResources();
}

bool Artwork::exists() const
{
    return QFile::exists(file);
}

QPixmap Artwork::drawn(QSize size, qreal devicePixelRatio) const
{
    QPixmap pixmap((QSizeF(size) * devicePixelRatio).toSize());
    if (pixmap.isNull() || !exists()) {
        return {};
    }
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    if (!renderer->isValid()) {
        renderer->load(file);
    }
    renderer->render(&painter, QRectF(pixmap.rect()));
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QPixmap Artwork::drawn(QSize size, qreal devicePixelRatio, const QColor& tint) const
{
    QPixmap pixmap = drawn(size, devicePixelRatio);
    if (!pixmap.isNull()) {
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(QRectF(QPointF(), pixmap.deviceIndependentSize()), tint);
    }
    return pixmap;
}

} // namespace orlimo
