#include "app/MenuBarIcon.h"

#include "app/ImageRenderer.h"
#include "controls/painting/Colors.h"
#include "resources/Artwork.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(MenuBarIcon, IsTemplateInTextColorInFrameOf16By16)
{
    const PaletteChange change(darkPalette());
    MenuBarIcon icon;
    layOut(icon);
    for (const QSize& size : {icon.size(), icon.sizeHint(), icon.minimumSize(), icon.maximumSize()})
    {
        EXPECT_EQ(size, QSize(16, 16));
    }
    const Picture painted = Picture::of(icon);
    const Artwork asset(u"images", u"StatusBarIcon");
    const auto tinted =
        asset.drawn(QSize(16, 16), painted.pixelsPerPoint(), textColor(darkPalette()));
    EXPECT_EQ(painted.differenceFrom(Picture(tinted.toImage())), QRectF());
    EXPECT_TRUE(MenuBarIcon::icon().isMask());
    const Picture shape(MenuBarIcon::icon().pixmap(QSize(16, 16), 1.0).toImage());
    EXPECT_EQ(shape.differenceFrom(Picture(asset.drawn(QSize(16, 16), 1).toImage())), QRectF());
}

TEST(ImageRenderer, DrawsIconOf16By16Points)
{
    const ImageRenderer<MenuBarIcon> renderer(std::make_unique<MenuBarIcon>());
    for (const double scale : {1.0, 2.0, 3.0}) {
        const QPixmap image = renderer.image(scale);
        EXPECT_EQ(image.deviceIndependentSize(), QSizeF(16, 16));
        EXPECT_EQ(image.width(), 16 * scale);
        const Picture picture(image.toImage());
        EXPECT_FALSE(picture.ink().isEmpty());
        EXPECT_EQ(picture.at(QPointF(0.1, 0.1)).alpha(), 0);
    }
    EXPECT_EQ(renderer.view().sizeHint(), QSize(16, 16));
}

} // namespace
} // namespace orlimo
