#include "controls/ImageView.h"

#include <QPainter>

#include <utility>

namespace orlimo {

ImageView::ImageView(QString imageName, QSize frame, PaletteColor tint)
    : name(std::move(imageName))
    , image(u"images", name)
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
        tintOf == nullptr ? image.drawn(size(), scale)
                          : image.drawn(size(), scale, tintOf(palette())));
}

} // namespace orlimo
