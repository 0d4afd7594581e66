#include "controls/Divider.h"

#include "controls/painting/Colors.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(Divider, IsALineOfOnePoint)
{
    const PaletteChange palette(lightPalette());
    Divider divider;
    divider.resize(200, 1);
    EXPECT_EQ(divider.minimumHeight(), 1);
    EXPECT_EQ(divider.maximumHeight(), 1);
    EXPECT_EQ(divider.sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    const Picture picture = Picture::of(divider);
    EXPECT_EQ(picture.ink(), QRectF(0, 0, 200, 1));
    EXPECT_THAT(picture.at(QPointF(100, 0)), isColor(separatorColor(divider.palette())));
}

TEST(Divider, FollowsAChangeOfPalette)
{
    Divider divider;
    divider.resize(200, 1);
    const PaletteChange dark(darkPalette());
    EXPECT_THAT(Picture::of(divider).at(QPointF(100, 0)), isColor(separatorColor(darkPalette())));
}

} // namespace
} // namespace orlimo
