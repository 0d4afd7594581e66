#include "controls/ImageView.h"

#include "resources/ImageAsset.h"

#include <QPainter>

#include <utility>

namespace orlimo {

ImageView::ImageView(QString imageName, QSize frame, PaletteColor tint)
    : name(std::move(imageName))
    , tintOf(tint)
{
    setFixedSize(frame);
}

void ImageView::paintEvent(QPaintEvent* /*event*/)
{
    const double scale = devicePixelRatioF();
    QPainter(this).drawPixmap(
        0,
        0,
        tintOf == nullptr ? imageNamed(name, size(), scale)
                          : templateImageNamed(name, size(), scale, tintOf(palette())));
}

} // namespace orlimo
