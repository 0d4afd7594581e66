#include "controls/Divider.h"
#include "controls/ImageView.h"
#include "controls/Spacer.h"
#include "controls/painting/Colors.h"
#include "resources/Artwork.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(Divider, IsLineOfOnePointInSeparatorColor)
{
    Divider divider;
    divider.resize(200, 1);
    EXPECT_EQ(divider.minimumHeight(), 1);
    EXPECT_EQ(divider.maximumHeight(), 1);
    EXPECT_EQ(divider.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        const Picture picture = Picture::of(divider);
        EXPECT_EQ(picture.ink(), QRectF(0, 0, 200, 1));
        EXPECT_THAT(picture.at(QPointF(100, 0)), isColor(separatorColor(scheme)));
    }
}

TEST(Spacer, ExpandsInItsDirectionOnlyAndPaintsNothing)
{
    for (const auto& [direction, policy] :
         {std::pair(Qt::Vertical, QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding)),
          std::pair(Qt::Horizontal, QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed))})
    {
        Spacer spacer(direction);
        EXPECT_EQ(spacer.sizePolicy(), policy);
        EXPECT_EQ(spacer.sizeHint(), QSize(0, 0));
        EXPECT_EQ(spacer.minimumSizeHint(), QSize(0, 0));
        spacer.resize(20, 20);
        EXPECT_EQ(Picture::of(spacer).ink(), QRectF());
    }
}

TEST(ImageView, StretchesItsImageToItsFrame)
{
    const QSize frame(90, 40);
    ImageView view(QStringLiteral("logo"), frame);
    EXPECT_EQ(view.minimumSize(), frame);
    EXPECT_EQ(view.maximumSize(), frame);
    EXPECT_EQ(view.imageName(), QStringLiteral("logo"));
    const Picture painted = Picture::of(view);
    const auto logo = Artwork(u"images", u"logo").drawn(frame, painted.pixelsPerPoint());
    EXPECT_EQ(painted.differenceFrom(Picture(logo.toImage())), QRectF());
    EXPECT_FALSE(painted.ink().isEmpty());
    ImageView unknown(QStringLiteral("no such image"), frame);
    EXPECT_EQ(Picture::of(unknown).ink(), QRectF());
    EXPECT_EQ(unknown.size(), frame);
}

TEST(ImageView, DrawsTemplateInCurrentTint)
{
    const QSize frame(64, 64);
    ImageView view(QStringLiteral("StatusBarIcon"), frame, textColor);
    for (const QPalette& scheme : {lightPalette(), darkPalette()}) {
        const PaletteChange change(scheme);
        const Picture painted = Picture::of(view);
        const auto tinted = Artwork(u"images", u"StatusBarIcon")
                                .drawn(frame, painted.pixelsPerPoint(), textColor(scheme));
        EXPECT_EQ(painted.differenceFrom(Picture(tinted.toImage())), QRectF());
    }
}

} // namespace
} // namespace orlimo
