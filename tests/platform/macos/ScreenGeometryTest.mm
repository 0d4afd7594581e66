#include "platform/macos/ScreenGeometry.h"

#include "platform/Screen.h"
#include "tests/platform/macos/fakes/FakeObject.h"
#include "tests/support/QtPrinting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#import <AppKit/AppKit.h>

namespace orlimo {
namespace {

class ScreenGeometryTest : public testing::Test
{
protected:
    ScreenGeometryTest()
    {
        setScreens({
            NSMakeRect(0, 0, 1440, 900),
            // Above the primary one, its upper half to the left.
            NSMakeRect(-200, 900, 1920, 1080),
            // To the left and lower.
            NSMakeRect(-1280, -100, 1280, 800),
        });
    }
    ~ScreenGeometryTest() override { FakeObject::resetAll(); }

    void setScreens(const std::vector<NSRect>& frames)
    {
        NSMutableArray* const screens = [NSMutableArray array];
        for (const NSRect frame : frames) {
            auto& screen = FakeObject::named("screen " + std::to_string([screens count]));
            screen.returns("frame", frame);
            [screens addObject:screen.object()];
        }
        system.returns<id>("screens", screens);
    }

    void setMainScreen(int number)
    {
        system.returns(
            "mainScreen", FakeObject::named("screen " + std::to_string(number)).object());
    }

    FakeObject& system = FakeObject::named("NSScreen");
};

TEST_F(ScreenGeometryTest, CountsDownwardsFromThePrimaryScreensTop)
{
    EXPECT_EQ(toToolkitGeometry(NSMakeRect(0, 0, 1440, 900)), QRect(0, 0, 1440, 900));
    EXPECT_EQ(toToolkitGeometry(NSMakeRect(1000, 876, 22, 24)), QRect(1000, 0, 22, 24));
    EXPECT_EQ(toToolkitGeometry(NSMakeRect(0, 0, 10, 10)), QRect(0, 890, 10, 10));
}

TEST_F(ScreenGeometryTest, CountsOnAboveAndLeftOfIt)
{
    EXPECT_EQ(toToolkitGeometry(NSMakeRect(-200, 900, 1920, 1080)), QRect(-200, -1080, 1920, 1080));
    EXPECT_EQ(toToolkitGeometry(NSMakeRect(-1280, -100, 1280, 800)), QRect(-1280, 200, 1280, 800));
}

TEST_F(ScreenGeometryTest, RoundsToWholePoints)
{
    EXPECT_EQ(toToolkitGeometry(NSMakeRect(10.4, 875.6, 22.2, 24)), QRect(10, 0, 22, 24));
}

TEST(FlippedRectangle, IsCountedFromTheTopOfThePrimaryScreen)
{
    // In the middle of a screen of 900 points, where that is the primary one and where another of
    // 1080 points is.
    EXPECT_EQ(flipped({470, 200, 500, 500}, 900), QRectF(470, 200, 500, 500));
    EXPECT_EQ(flipped({470, 200, 500, 500}, 1080), QRectF(470, 380, 500, 500));
    EXPECT_EQ(flipped({433.5, 134.5, 500, 500}, 769), QRectF(433.5, 134.5, 500, 500));
}

TEST_F(ScreenGeometryTest, CountsWhatIsPlacedByTheMainScreensSizeFromThePrimaryScreensTop)
{
    const QRectF middleOfTheSecond(710, 290, 500, 500);
    EXPECT_EQ(fromSystemCoordinates(middleOfTheSecond), QRectF(710, 110, 500, 500));
    EXPECT_EQ(
        fromSystemCoordinates(middleOfTheSecond).toRect(),
        toToolkitGeometry(NSMakeRect(710, 290, 500, 500)));
}

TEST_F(ScreenGeometryTest, HasTheWholeFrameOfTheScreenWithTheFocus)
{
    setMainScreen(0);
    EXPECT_EQ(mainScreenFrame(), QRect(0, 0, 1440, 900));
    setMainScreen(1);
    EXPECT_EQ(mainScreenFrame(), QRect(-200, -1080, 1920, 1080));
}

TEST_F(ScreenGeometryTest, HasNoMainScreenWhereThereIsNone)
{
    EXPECT_EQ(mainScreenFrame(), std::nullopt);
    setScreens({});
    EXPECT_EQ(mainScreenFrame(), std::nullopt);
}

} // namespace
} // namespace orlimo
