#include "controls/painting/Colors.h"

#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <QPalette>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace orlimo {
namespace {

using testing::Ge;

std::vector<QColor> accents()
{
    std::vector<QColor> colors{
        Qt::white,
        Qt::black,
        QColor(255, 255, 220),
        QColor(255, 230, 0),
        QColor(0, 255, 255),
        QColor(0, 255, 0),
        QColor(53, 132, 228),
        QColor(255, 45, 85),
        QColor(120, 120, 120),
    };
    for (int hue = 0; hue < 360; hue += 15) {
        colors.push_back(QColor::fromHsv(hue, 255, 255));
        colors.push_back(QColor::fromHsv(hue, 60, 250));
        colors.push_back(QColor::fromHsv(hue, 200, 90));
    }
    return colors;
}

void expectContrast(const QColor& color, const QColor& ground, double minContrast)
{
    EXPECT_THAT(contrastRatio(color, ground), Ge(minContrast))
        << testing::PrintToString(color) << " on " << testing::PrintToString(ground);
}

TEST(LegibleColor, IsLegibleOnEveryBackground)
{
    for (const QColor& color : accents()) {
        for (const QColor& ground : accents()) {
            expectContrast(legibleColor(color, ground), ground, legibleContrast);
        }
    }
}

TEST(LegibleColor, ChangesAsLittleAsNeeded)
{
    EXPECT_EQ(legibleColor(QColor(0, 70, 160), Qt::white), QColor(0, 70, 160));
    EXPECT_EQ(legibleColor(QColor(255, 230, 0), Qt::black), QColor(255, 230, 0));
    const QColor changed = legibleColor(QColor(53, 132, 228), Qt::white);
    EXPECT_NEAR(contrastRatio(changed, Qt::white), legibleContrast, 0.2);
    EXPECT_NEAR(changed.hueF(), QColor(53, 132, 228).hueF(), 0.01);
}

TEST(AccentColors, AreLegibleAndDistinctAndOtherwiseOfUser)
{
    for (const QColor& accent : accents()) {
        for (const QPalette& palette : allPalettes(accent)) {
            expectContrast(accentColor(palette), Qt::white, legibleContrast);
            for (const QColor& beside : {windowColor(palette), surfaceColor(palette)}) {
                expectContrast(focusRingColor(palette), beside, distinctContrast);
            }
        }
    }
    EXPECT_EQ(accentColor(lightPalette(QColor(0, 70, 160))), QColor(0, 70, 160));
    EXPECT_EQ(focusRingColor(lightPalette(QColor(0, 70, 160))), QColor(0, 70, 160));
    EXPECT_EQ(focusRingColor(guidancePalette(QColor(255, 230, 0))), QColor(255, 230, 0));
}

/// An ordinary palette.
QPalette paletteWith(const QColor& text, const QColor& window)
{
    return {text, window, window, window, window, text, window};
}

TEST(HighContrast, IsContrastOfTextAndWindow)
{
    for (const QPalette& palette : highContrastPalettes()) {
        EXPECT_TRUE(isHighContrast(palette)) << testing::PrintToString(windowColor(palette));
    }
    for (const QPalette& palette :
         {lightPalette(),
          darkPalette(),
          guidancePalette(),
          paletteWith(Qt::black, QColor(240, 240, 240)),
          paletteWith(QColor(35, 38, 41), QColor(239, 240, 241)),
          paletteWith(Qt::white, QColor(30, 30, 30))})
    {
        EXPECT_FALSE(isHighContrast(palette)) << testing::PrintToString(windowColor(palette));
    }
}

TEST(HighContrast, MakesEveryOutlineDistinct)
{
    for (const QPalette& palette : highContrastPalettes()) {
        for (const PaletteColor outline : {separatorColor, surfaceBorderColor, controlBorderColor})
        {
            for (const QColor& beside : {windowColor(palette), surfaceColor(palette)}) {
                expectContrast(outline(palette), beside, distinctContrast);
            }
        }
    }
    // Its surface is dark whatever the palette.
    const QPalette guidance = guidancePalette();
    expectContrast(controlBorderColor(guidance), windowColor(guidance), distinctContrast);
}

TEST(Colors, OfSurfacesStandOutFromWindowIncreasingly)
{
    EXPECT_EQ(windowColor(lightPalette()), QColor(246, 246, 248));
    EXPECT_EQ(textColor(lightPalette()), QColor(29, 29, 31));
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        EXPECT_EQ(whiteColor(palette), QColor(Qt::white));
        const QColor window = windowColor(palette);
        const double surface = contrastRatio(surfaceColor(palette), window);
        const double border = contrastRatio(surfaceBorderColor(palette), window);
        const double separator = contrastRatio(separatorColor(palette), window);
        EXPECT_GT(surface, 1.02);
        EXPECT_GT(border, surface);
        EXPECT_GT(separator, border);
        EXPECT_LT(separator, 2);
        EXPECT_GT(contrastRatio(controlBorderColor(palette), window), 2);
        const QColor gray = grayColor(palette);
        expectContrast(gray, window, legibleContrast);
        EXPECT_LT(contrastRatio(gray, window), 7);
        EXPECT_LT(gray.hsvSaturation(), 20);
    }
}

TEST(Blended, LaysColorOverBackground)
{
    EXPECT_THAT(blended(QColor(255, 0, 0, 128), Qt::white), isColor(QColor(255, 127, 127)));
    EXPECT_THAT(blended(QColor(255, 0, 0, 0), Qt::white), isColor(Qt::white));
    EXPECT_THAT(blended(QColor(1, 2, 3), Qt::white), isColor(QColor(1, 2, 3)));
}

} // namespace
} // namespace orlimo
