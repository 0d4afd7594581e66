#include "resources/ImageIcon.h"

#include "resources/Artwork.h"
#include "resources/IconSquare.h"

#include <QIconEngine>
#include <QPainter>

#include <map>

namespace orlimo {

namespace {

class ImageIconEngine final : public QIconEngine
{
public:
    explicit ImageIconEngine(const QString& name)
        : image(u"images", name)
    {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        const QRect square = centeredSquare(area);
        painter->drawPixmap(square, scaledPixmap(square.size() * scale, mode, state, scale));
    }

    QSize actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        return squareIn(size);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(
        const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/, qreal scale) override
    {
        // Whoever takes an icon takes all its sizes, and often more than once.
        const QSize square = squareIn(size);
        auto cached = drawn.find(square.width());
        if (cached == drawn.end()) {
            // The size counts pixels here, and points where the image is asked for.
            cached = drawn.insert({square.width(), image.drawn(square, 1)}).first;
        }
        QPixmap pixmap = cached->second;
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        QList<QSize> sizes;
        for (const int edge : {16, 22, 24, 32, 44, 48, 64, 128}) {
            sizes.append({edge, edge});
        }
        return sizes;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new ImageIconEngine(*this); }

    QString key() const override { return QStringLiteral("ImageIconEngine"); }

private:
    Artwork image;
    /// By the length of an edge.
    std::map<int, QPixmap> drawn;
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
