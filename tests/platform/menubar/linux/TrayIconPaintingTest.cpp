#include "tests/platform/desktop/linux/DesktopProbeTest.h"
#include "tests/support/widgets/PixelReading.h"

#include <QImage>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The icon as the screen shows it in a tray with its own options.
class TrayIconPaintingTest : public DesktopProbeTest
{
protected:
    TrayIconPaintingTest()
        : DesktopProbeTest(DesktopSession::WithoutTray{})
    {}

    void start(const std::vector<std::string>& options, const std::string& scale = "1")
    {
        desktop.startTrayWith(options);
        desktop.awaitTray();
        startProgram({{"QT_SCALE_FACTOR", scale}});
        ASSERT_TRUE(awaitIcon());
    }

    /// What the icon has painted of its place; everything that is not as the corner is.
    [[nodiscard]] QRect ink() const
    {
        const QImage shown = desktop.windows().picture(icon);
        QRect painted;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                if (contrastOf(shown.pixelColor(x, y), shown.pixelColor(0, 0)) >= 3) {
                    painted |= QRect(x, y, 1, 1);
                }
            }
        }
        return painted;
    }

    /// Waits until the icon has that color, looked at between its asterisk and its caret.
    [[nodiscard]] bool awaitColor(const QColor& color) const
    {
        return awaitWithPolling([&] {
            const QImage shown = desktop.windows().picture(icon);
            const QPoint inTheShape = shown.rect().center() + QPoint(3, 0);
            return shown.pixelColor(inTheShape) == color;
        });
    }

    const std::vector<std::string> dark{
        "--height",
        "24",
        "--heighttype",
        "pixel",
        "--transparent",
        "true",
        "--alpha",
        "0",
        "--tint",
        "0x202020"};
    const std::vector<std::string> light{"--height", "24", "--heighttype", "pixel"};
};

/// A tray, a scale, and the edge that the icon is to have, in pixels.
struct Painting
{
    std::string height;
    std::string scale;
    int edge;
};

class TrayIconAlignment : public TrayIconPaintingTest, public testing::WithParamInterface<Painting>
{};

TEST_P(TrayIconAlignment, IsASquareOfAtMostSixteenPointsInTheMiddle)
{
    const int edge = GetParam().edge;
    ASSERT_NO_FATAL_FAILURE(
        start({"--height", GetParam().height, "--heighttype", "pixel"}, GetParam().scale));
    // The drawing is as wide as its square and a sixteenth lower.
    EXPECT_TRUE(awaitWithPolling([&] { return ink().width() == edge; })) << ink().width();
    EXPECT_NEAR(ink().height(), edge * 15 / 16.0, 1);
    EXPECT_NEAR(ink().center().x(), icon.width() / 2.0, 2);
    EXPECT_NEAR(ink().center().y(), icon.height() / 2.0, 2);
}

INSTANTIATE_TEST_SUITE_P(
    Trays,
    TrayIconAlignment,
    testing::Values(
        Painting{"24", "1", 16},
        Painting{"40", "1", 16},
        Painting{"24", "2", 22},
        Painting{"40", "2", 32}),
    [](const auto& instance) {
        return "Height" + instance.param.height + "Scale" + instance.param.scale;
    });

TEST_F(TrayIconPaintingTest, IsBlackInALightTray)
{
    ASSERT_NO_FATAL_FAILURE(start(light));
    EXPECT_TRUE(awaitColor(Qt::black));
}

TEST_F(TrayIconPaintingTest, IsWhiteInADarkTrayThatPublishesNoColors)
{
    ASSERT_NO_FATAL_FAILURE(start(dark));
    EXPECT_TRUE(awaitColor(Qt::white));
}

TEST_F(TrayIconPaintingTest, FollowsTheColorThatTheTrayPublishes)
{
    const QColor first(230, 220, 40);
    const QColor second(40, 220, 230);
    desktop.startTrayWith(dark);
    desktop.awaitTray();
    desktop.windows().publishTrayColor(first);
    startProgram();
    ASSERT_TRUE(awaitIcon());
    EXPECT_TRUE(awaitColor(first));
    desktop.windows().publishTrayColor(second);
    EXPECT_TRUE(awaitColor(second));
}

} // namespace
} // namespace orlimo
