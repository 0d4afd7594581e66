#include "app/MenuBarIcon.h"

#include "controls/ImageView.h"
#include "controls/painting/Colors.h"
#include "resources/ImageAsset.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(MenuBarIcon, IsOneImageInAFrameOf16By16)
{
    MenuBarIcon icon;
    layOut(icon);
    EXPECT_EQ(icon.size(), QSize(16, 16));
    EXPECT_EQ(icon.sizeHint(), QSize(16, 16));
    EXPECT_EQ(icon.minimumSize(), QSize(16, 16));
    EXPECT_EQ(icon.maximumSize(), QSize(16, 16));
    const auto children = icon.findChildren<QWidget*>();
    ASSERT_EQ(children.size(), 1);
    const auto* image = qobject_cast<ImageView*>(children.first());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->imageName(), QStringLiteral("StatusBarIcon"));
    EXPECT_EQ(areaIn(icon, *image), QRect(0, 0, 16, 16));
}

TEST(MenuBarIcon, FollowsTheSchemesTextColor)
{
    const PaletteChange light(lightPalette());
    MenuBarIcon icon;
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        const Picture painted = Picture::of(icon);
        const Picture asset(templateImageNamed(
                                QStringLiteral("StatusBarIcon"),
                                QSize(16, 16),
                                painted.pixelsPerPoint(),
                                textColor(scheme))
                                .toImage());
        EXPECT_EQ(painted.differenceFrom(asset), QRectF());
        EXPECT_FALSE(painted.ink().isEmpty());
    }
}

TEST(MenuBarIcon, IsATemplateOfTheSameShapeForAHostThatDrawsItItself)
{
    MenuBarIcon icon;
    const Picture own = Picture::of(icon);
    const QIcon hosts = MenuBarIcon::icon();
    EXPECT_TRUE(hosts.isMask());
    const Picture shape(hosts.pixmap(QSize(16, 16), own.pixelsPerPoint()).toImage());
    ASSERT_EQ(shape.size(), own.size());
    const double pixel = 1 / own.pixelsPerPoint();
    for (double y = pixel / 2; y < 16; y += pixel) {
        for (double x = pixel / 2; x < 16; x += pixel) {
            ASSERT_NEAR(shape.at({x, y}).alpha(), own.at({x, y}).alpha(), 1) << x << ", " << y;
        }
    }
}

} // namespace
} // namespace orlimo
