#include "controls/ImageView.h"

#include "resources/ImageAsset.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(ImageView, IsExactlyAsLargeAsItsFrame)
{
    ImageView view(QStringLiteral("logo"), QSize(90, 40));
    EXPECT_EQ(view.minimumSize(), QSize(90, 40));
    EXPECT_EQ(view.maximumSize(), QSize(90, 40));
    EXPECT_EQ(view.imageName(), QStringLiteral("logo"));
}

TEST(ImageView, StretchesItsImageToTheFrame)
{
    ImageView view(QStringLiteral("logo"), QSize(90, 40));
    const Picture painted = Picture::of(view);
    const Picture asset(
        imageNamed(QStringLiteral("logo"), QSize(90, 40), painted.pixelsPerPoint()).toImage());
    EXPECT_EQ(painted.differenceFrom(asset), QRectF());
    EXPECT_FALSE(painted.ink().isEmpty());
}

TEST(ImageView, DrawsATemplateInItsTintOfTheMoment)
{
    const PaletteChange light(lightPalette());
    ImageView view(QStringLiteral("StatusBarIcon"), QSize(64, 64), textColor);
    const auto expectTint = [&view](const QColor& tint) {
        const Picture painted = Picture::of(view);
        const Picture asset(
            templateImageNamed(
                QStringLiteral("StatusBarIcon"), QSize(64, 64), painted.pixelsPerPoint(), tint)
                .toImage());
        EXPECT_EQ(painted.differenceFrom(asset), QRectF());
    };
    expectTint(textColor(lightPalette()));
    const PaletteChange dark(darkPalette());
    expectTint(textColor(darkPalette()));
}

TEST(ImageView, OfAnUnknownImageIsEmpty)
{
    ImageView view(QStringLiteral("no such image"), QSize(30, 30));
    EXPECT_EQ(Picture::of(view).ink(), QRectF());
    EXPECT_EQ(view.size(), QSize(30, 30));
}

} // namespace
} // namespace orlimo
