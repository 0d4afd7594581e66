#include "resources/ImageIcon.h"

#include "resources/Artwork.h"
#include "resources/SquareIconEngine.h"

#include <map>
#include <utility>

namespace orlimo {

QIcon imageIcon(const QString& imageName)
{
    QList<QSize> sizes;
    for (const int edge : {16, 22, 24, 32, 44, 48, 64, 128}) {
        sizes.append({edge, edge});
    }
    // Whoever takes an icon takes all its sizes, and often more than once.
    auto draw = [image = Artwork(u"images", imageName),
                 drawn = std::map<int, QPixmap>()](const QSize& square) mutable {
        auto cached = drawn.find(square.width());
        if (cached == drawn.end()) {
            cached = drawn.insert({square.width(), image.drawn(square, 1)}).first;
        }
        return cached->second;
    };
    return QIcon(new SquareIconEngine({.draw = std::move(draw), .availableSizes = sizes}));
}

QIcon templateIcon(const QString& imageName)
{
    QIcon icon = imageIcon(imageName);
    icon.setIsMask(true);
    return icon;
}

} // namespace orlimo
