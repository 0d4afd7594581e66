#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include <QImage>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// The icon on the screen, in trays with different options.
class TrayIconPaintingTest : public DesktopProbeTest
{
protected:
    TrayIconPaintingTest()
        : DesktopProbeTest(DesktopSession::WithoutTray{})
    {}

    void start(const std::vector<std::string>& options)
    {
        desktop.startTrayWith(options);
        desktop.awaitTray();
        startProgram();
        ASSERT_TRUE(awaitIcon());
    }

    /// Waits until the icon has that color, sampled between its asterisk and its caret.
    [[nodiscard]] bool awaitColor(const QColor& color) const
    {
        return awaitWithPolling([&] {
            const QImage shown = desktop.windows().picture(icon);
            const QPoint inTheShape = shown.rect().center() + QPoint(3, 0);
            return shown.pixelColor(inTheShape) == color;
        });
    }

    // clang-format off
    const std::vector<std::string> dark{
        "--height", "24", "--heighttype", "pixel",
        "--transparent", "true", "--alpha", "0", "--tint", "0x202020"};
    // clang-format on
};

TEST_F(TrayIconPaintingTest, IsLegibleInATrayThatPublishesNoColor)
{
    ASSERT_NO_FATAL_FAILURE(start({"--height", "24", "--heighttype", "pixel"}));
    EXPECT_TRUE(awaitColor(Qt::black));
    program.reset();
    desktop.killTray();
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
