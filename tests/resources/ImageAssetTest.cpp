#include "resources/ImageAsset.h"

#include "tests/support/widgets/PixelReading.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace orlimo {
namespace {

struct Asset
{
    const char* name;
    QSize size;
};

/// An image and the number of pixels a point has.
class ImageAssetTest : public testing::TestWithParam<std::tuple<Asset, qreal>>
{
protected:
    [[nodiscard]] static QString name()
    {
        return QString::fromLatin1(std::get<Asset>(GetParam()).name);
    }
    [[nodiscard]] static QSize size() { return std::get<Asset>(GetParam()).size; }
    [[nodiscard]] static qreal ratio() { return std::get<qreal>(GetParam()); }
    [[nodiscard]] static QSize pixels() { return (QSizeF(size()) * ratio()).toSize(); }
};

TEST_P(ImageAssetTest, HasEveryPixelOfItsSize)
{
    const QPixmap image = imageNamed(name(), size(), ratio());
    EXPECT_EQ(image.size(), pixels());
    EXPECT_EQ(image.devicePixelRatio(), ratio());
    EXPECT_FALSE(inkOf(pixelsOf(image)).isEmpty());
}

TEST_P(ImageAssetTest, IsDrawnPixelByPixel)
{
    EXPECT_EQ(
        pixelsOf(imageNamed(name(), size(), ratio())), pixelsOf(imageNamed(name(), pixels(), 1)));
}

TEST_P(ImageAssetTest, IsStretchedOverItsSize)
{
    const QSize wide(3 * pixels().width(), pixels().height());
    const QRect ink = inkOf(pixelsOf(imageNamed(name(), pixels(), 1)));
    const QRect stretched = inkOf(pixelsOf(imageNamed(name(), wide, 1)));
    EXPECT_NEAR(stretched.left(), 3 * ink.left(), 3);
    EXPECT_NEAR(stretched.width(), 3 * ink.width(), 6);
    EXPECT_NEAR(stretched.top(), ink.top(), 1);
    EXPECT_NEAR(stretched.height(), ink.height(), 1);
}

TEST_P(ImageAssetTest, KeepsItsShapeAsTemplate)
{
    const QImage shape = pixelsOf(imageNamed(name(), size(), ratio()));
    for (const QColor& tint : {QColor(255, 255, 255), QColor(20, 120, 220), QColor(0, 200, 90, 77)})
    {
        const QPixmap tinted = templateImageNamed(name(), size(), ratio(), tint);
        EXPECT_EQ(tinted.devicePixelRatio(), ratio());
        EXPECT_TRUE(isVisuallyEqual(pixelsOf(tinted), tintedShape(shape, tint)))
            << tint.name().toStdString();
    }
}

std::string caseName(const testing::TestParamInfo<ImageAssetTest::ParamType>& info)
{
    const auto& [asset, ratio] = info.param;
    return asset.name + std::string("At") + std::to_string(qRound(100 * ratio)) + "Percent";
}

INSTANTIATE_TEST_SUITE_P(
    All,
    ImageAssetTest,
    testing::Combine(
        testing::Values(
            Asset{"StatusBarIcon", {16, 16}},
            Asset{"logo", {100, 100}},
            Asset{"helper", {200, 131}}),
        testing::Values(1.0, 1.25, 1.5, 2.0, 3.0)),
    caseName);

TEST(UnknownImageTest, IsNull)
{
    for (const QStringView name :
         {u"", u"nothing", u"Logo", u"logo.svg", u"hand.raised.fill", u"../symbols"})
    {
        EXPECT_TRUE(imageNamed(name, {16, 16}, 1).isNull()) << name.toString().toStdString();
        EXPECT_TRUE(templateImageNamed(name, {16, 16}, 1, Qt::black).isNull())
            << name.toString().toStdString();
    }
}

TEST(ImageWithoutPixelsTest, IsNull)
{
    EXPECT_TRUE(imageNamed(u"logo", {0, 16}, 1).isNull());
    EXPECT_TRUE(imageNamed(u"logo", {-4, 16}, 2).isNull());
    EXPECT_TRUE(templateImageNamed(u"logo", {16, 0}, 1, Qt::black).isNull());
}

} // namespace
} // namespace orlimo
