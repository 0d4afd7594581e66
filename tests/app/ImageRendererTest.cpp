#include "app/ImageRenderer.h"

#include "app/MenuBarIcon.h"
#include "tests/support/widgets/Picture.h"

#include <gtest/gtest.h>

#include <memory>

namespace orlimo {
namespace {

TEST(ImageRenderer, DrawsAnIconOf16By16Points)
{
    const ImageRenderer<MenuBarIcon> renderer(std::make_unique<MenuBarIcon>());
    for (const double scale : {1.0, 2.0, 3.0}) {
        const QPixmap image = renderer.image(scale);
        EXPECT_EQ(image.deviceIndependentSize(), QSizeF(16, 16));
        EXPECT_EQ(image.devicePixelRatio(), scale);
        EXPECT_EQ(image.width(), 16 * scale);
        const Picture picture(image.toImage());
        EXPECT_FALSE(picture.ink().isEmpty());
        EXPECT_EQ(picture.at(QPointF(0.1, 0.1)).alpha(), 0);
    }
    EXPECT_EQ(renderer.view().sizeHint(), QSize(16, 16));
}

} // namespace
} // namespace orlimo
