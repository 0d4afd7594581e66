#include "resources/TemplateIcon.h"

#include "resources/ImageAsset.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include <utility>

namespace orlimo {

namespace {

class TemplateIconEngine final : public QIconEngine
{
public:
    explicit TemplateIconEngine(QString name)
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

    QPixmap
    scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/, qreal scale) override
    {
        // The size is in pixels here, while the image is asked for in points.
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QPixmap pixmap = templateImageNamed(
            imageName, size, 1, QGuiApplication::palette().color(group, QPalette::WindowText));
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        QList<QSize> sizes;
        for (const int edge : {16, 22, 24, 32, 44, 48, 64}) {
            sizes.append({edge, edge});
        }
        return sizes;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new TemplateIconEngine(*this); }

    QString key() const override { return QStringLiteral("TemplateIconEngine"); }

private:
    QString imageName;
};

} // namespace

QIcon templateIcon(const QString& imageName)
{
    return QIcon(new TemplateIconEngine(imageName));
}

} // namespace orlimo
