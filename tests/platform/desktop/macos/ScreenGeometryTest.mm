#include "platform/desktop/macos/ScreenGeometry.h"

#include "platform/desktop/Workspace.h"
#include "tests/platform/macos/fakes/FakeObject.h"
#include "tests/support/widgets/QtPrinting.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#import <AppKit/AppKit.h>

namespace orlimo {
namespace {

class ScreenGeometryTest : public testing::Test
{
protected:
    ScreenGeometryTest()
    {
        // The second one is above the primary one, its upper half to the left.
        setScreens({NSMakeRect(0, 0, 1440, 900), NSMakeRect(-200, 900, 1920, 1080)});
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

    FakeObject& system = FakeObject::named("NSScreen");
};

TEST_F(ScreenGeometryTest, PointsCountDownwardsFromThePrimaryScreensTop)
{
    for (const auto& [system, expected] :
         {std::pair{NSMakeRect(0, 0, 1440, 900), QRect(0, 0, 1440, 900)},
          std::pair{NSMakeRect(1000, 876, 22, 24), QRect(1000, 0, 22, 24)},
          std::pair{NSMakeRect(-1280, -100, 1280, 800), QRect(-1280, 200, 1280, 800)},
          std::pair{NSMakeRect(10.4, 875.6, 22.2, 24), QRect(10, 0, 22, 24)}})
    {
        EXPECT_EQ(toQtGeometry(system), expected);
    }
    EXPECT_EQ(fromSystemCoordinates({710, 290.5, 500, 500}), QRectF(710, 109.5, 500, 500));
}

TEST_F(ScreenGeometryTest, MainScreenIsTheWholeOneWithTheFocus)
{
    EXPECT_EQ(mainScreenFrame(), std::nullopt);
    system.returns("mainScreen", FakeObject::named("screen 1").object());
    EXPECT_EQ(mainScreenFrame(), QRect(-200, -1080, 1920, 1080));
    // While the screens are being removed.
    setScreens({});
    EXPECT_EQ(mainScreenFrame(), QRect(-200, -1980, 1920, 1080));
}

} // namespace
} // namespace orlimo
