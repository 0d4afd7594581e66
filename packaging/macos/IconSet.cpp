#include "packaging/macos/IconSet.h"

#include "resources/Artwork.h"

#include <QDir>
#include <QPainter>
#include <QPixmap>

#include <array>

namespace orlimo {

namespace {

constexpr std::array sizes{16, 32, 128, 256, 512};
constexpr std::array scales{1, 2};

/// How wide the tile is in an icon 1024 wide on the system's grid, and in the logo's 100.
constexpr qreal gridTileWidth = 824;
constexpr qreal gridWidth = 1024;
constexpr qreal logoTileWidth = 88;
constexpr qreal logoWidth = 100;

/// How much of an icon's width the whole logo, margin and all, takes up. In the smallest icons the
/// grid's margin would be a blur of less than two pixels; there the logo's own is kept.
qreal logoScale(int pixels)
{
    constexpr int smallest = 32;
    return pixels <= smallest ? 1 : gridTileWidth / gridWidth * logoWidth / logoTileWidth;
}

QString fileName(int points, int scale)
{
    const QString name = QStringLiteral("icon_%1x%1").arg(points);
    return name + (scale == 1 ? QStringLiteral(".png") : QStringLiteral("@2x.png"));
}

} // namespace

QImage IconSet::icon(int points, int scale)
{
    const int pixels = points * scale;
    const int drawn = qRound(pixels * logoScale(pixels) / 2) * 2;
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const int margin = (pixels - drawn) / 2;
    painter.drawPixmap(margin, margin, Artwork(u"images", u"logo").drawn({drawn, drawn}, 1));
    return image;
}

bool IconSet::writeTo(const QString& folder)
{
    const QDir target(folder);
    if (!target.mkpath(QStringLiteral("."))) {
        return false;
    }
    for (const int points : sizes) {
        for (const int scale : scales) {
            if (!icon(points, scale).save(target.filePath(fileName(points, scale)), "PNG")) {
                return false;
            }
        }
    }
    return true;
}

} // namespace orlimo
