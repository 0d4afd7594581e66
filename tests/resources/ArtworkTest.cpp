#include "resources/Artwork.h"

#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

struct Drawing
{
    const char16_t* folder;
    const char16_t* name;
    QSize size;
};

/// Every drawing that the program shows.
class ArtworkTest : public testing::TestWithParam<Drawing>
{
protected:
    const Artwork artwork{GetParam().folder, GetParam().name};
    const QSize size = GetParam().size;
};

TEST_P(ArtworkTest, HasEveryPixelOfItsSizeAtEachScale)
{
    ASSERT_TRUE(artwork.exists());
    for (const double ratio : {1.0, 1.25, 2.0, 3.0}) {
        const QSize pixels = (QSizeF(size) * ratio).toSize();
        const QPixmap image = artwork.drawn(size, ratio);
        EXPECT_EQ(image.size(), pixels);
        EXPECT_EQ(image.devicePixelRatio(), ratio);
        EXPECT_FALSE(inkOf(pixelsOf(image)).isEmpty());
        EXPECT_EQ(pixelsOf(image), pixelsOf(artwork.drawn(pixels, 1)));
    }
}

TEST_P(ArtworkTest, IsStretchedToItsSize)
{
    const QRect ink = inkOf(pixelsOf(artwork.drawn(size, 1)));
    const QRect stretched = inkOf(pixelsOf(artwork.drawn({3 * size.width(), size.height()}, 1)));
    EXPECT_NEAR(stretched.left(), 3 * ink.left(), 3);
    EXPECT_NEAR(stretched.width(), 3 * ink.width(), 6);
    EXPECT_NEAR(stretched.top(), ink.top(), 1);
    EXPECT_NEAR(stretched.height(), ink.height(), 1);
}

TEST_P(ArtworkTest, KeepsItsShapeAsTemplate)
{
    const QImage shape = pixelsOf(artwork.drawn(size, 1.5));
    for (const QColor& tint : {QColor(20, 120, 220), QColor(0, 200, 90, 77)}) {
        const QPixmap tinted = artwork.drawn(size, 1.5, tint);
        EXPECT_EQ(tinted.devicePixelRatio(), 1.5);
        EXPECT_TRUE(isVisuallyEqual(pixelsOf(tinted), tintedShape(shape, tint)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Drawings,
    ArtworkTest,
    testing::Values(
        Drawing{u"images", u"StatusBarIcon", {16, 16}},
        Drawing{u"images", u"logo", {100, 100}},
        Drawing{u"images", u"helper", {200, 131}},
        Drawing{u"symbols", u"slider.horizontal.2.square", {18, 18}},
        Drawing{u"symbols", u"ellipsis.bubble.fill", {18, 18}},
        Drawing{u"symbols", u"hand.raised.fill", {18, 18}}));

TEST(Artwork, WithUnknownNameOrWithoutPixelsIsNull)
{
    for (const QStringView name :
         {u"", u"nothing", u"Logo", u"logo.svg", u"hand.raised.fill", u"../symbols"})
    {
        EXPECT_TRUE(Artwork(u"images", name).drawn({16, 16}, 1).isNull()) << name.toUtf8().data();
        EXPECT_TRUE(Artwork(u"images", name).drawn({16, 16}, 1, Qt::black).isNull());
    }
    for (const QSize& empty : {QSize(0, 16), QSize(-4, 16), QSize(16, 0)}) {
        EXPECT_TRUE(Artwork(u"images", u"logo").drawn(empty, 2).isNull());
        EXPECT_TRUE(Artwork(u"images", u"logo").drawn(empty, 2, Qt::black).isNull());
    }
}

} // namespace
} // namespace orlimo
