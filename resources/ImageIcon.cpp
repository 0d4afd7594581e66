#include "resources/ImageIcon.h"

#include "resources/ImageAsset.h"

#include <QIconEngine>
#include <QPainter>

#include <utility>

namespace orlimo {

namespace {

class ImageIconEngine final : public QIconEngine
{
public:
    explicit ImageIconEngine(QString name)
        : imageName(std::move(name))
    {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(area, scaledPixmap(area.size() * scale, mode, state, scale));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(
        const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/, qreal scale) override
    {
        // The size counts pixels here, and points where the image is asked for.
        QPixmap pixmap = imageNamed(imageName, size, 1);
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        QList<QSize> sizes;
        for (const int edge : {16, 22, 24, 32, 44, 48, 64, 128, 256}) {
            sizes.append({edge, edge});
        }
        return sizes;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new ImageIconEngine(*this); }

    QString key() const override { return QStringLiteral("ImageIconEngine"); }

private:
    QString imageName;
};

} // namespace

QIcon imageIcon(const QString& imageName)
{
    return QIcon(new ImageIconEngine(imageName));
}

QIcon templateIcon(const QString& imageName)
{
    QIcon icon = imageIcon(imageName);
    icon.setIsMask(true);
    return icon;
}

} // namespace orlimo
