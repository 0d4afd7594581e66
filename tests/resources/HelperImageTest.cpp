#include "resources/ImageAsset.h"
#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The illustration of the guidance window, on the window's dark surface.
class HelperImageTest : public testing::TestWithParam<int>
{
protected:
    HelperImageTest()
        : pixels(pixelsOf(imageNamed(u"helper", {200, 131}, GetParam()))
                     .convertToFormat(QImage::Format_ARGB32))
    {}

    /// The colour in the middle of the point.
    [[nodiscard]] QColor at(int x, int y) const
    {
        const int middle = GetParam() / 2;
        return pixels.pixelColor(x * GetParam() + middle, y * GetParam() + middle);
    }

    const QImage pixels;
};

TEST_P(HelperImageTest, RaisesTheProgramsRow)
{
    const QColor row = at(125, 77);
    EXPECT_GE(contrastOf(row, at(125, 43)), 7) << "the row above";
    EXPECT_GE(contrastOf(row, at(128, 112)), 7) << "the row below";
    EXPECT_EQ(at(5, 77), row) << "wider than the window";
    EXPECT_EQ(at(194, 77), row);
}

TEST_P(HelperImageTest, HasTheProgramsSwitchOnAndTheOthersOff)
{
    EXPECT_GT(at(148, 77).hslSaturation(), 100) << "the track of the one that is on";
    EXPECT_LT(at(168, 43).hslSaturation(), 40) << "the track of one that is off";
    EXPECT_EQ(at(164, 72), QColor(Qt::white)) << "the knob at the end";
    EXPECT_GT(at(152, 43).lightness(), at(168, 43).lightness()) << "a knob at the beginning";
}

TEST_P(HelperImageTest, HasEdgesOnWholePixels)
{
    EXPECT_EQ(at(4, 77), QColor(Qt::white));
    EXPECT_NE(at(3, 77), QColor(Qt::white));
    EXPECT_EQ(at(195, 77), QColor(Qt::white));
    EXPECT_EQ(at(100, 59), QColor(Qt::white));
    EXPECT_NE(at(100, 58), QColor(Qt::white));
    EXPECT_EQ(at(100, 94), QColor(Qt::white));
    EXPECT_EQ(at(100, 0).alpha(), 0);
    EXPECT_EQ(at(100, 2).alpha(), 255);
    EXPECT_EQ(at(100, 130).alpha(), 0);
}

TEST_P(HelperImageTest, WritesTheNameInInk)
{
    EXPECT_GE(contrastOf(at(80, 76), at(125, 77)), 7) << "the l of the name";
    EXPECT_GE(contrastOf(at(90, 80), at(125, 77)), 7) << "the m of the name";
}

INSTANTIATE_TEST_SUITE_P(PixelsPerPoint, HelperImageTest, testing::Values(1, 2, 3));

} // namespace
} // namespace orlimo
