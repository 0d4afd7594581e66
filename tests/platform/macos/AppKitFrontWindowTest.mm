#include "platform/macos/AppKitFrontWindow.h"

#include "tests/platform/macos/standins/ScriptedAppKit.h"

#include <QWidget>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

class AppKitFrontWindowTest : public testing::Test
{
protected:
    AppKitFrontWindowTest() { scriptedAppKit() = {}; }

    QWidget window;
};

TEST_F(AppKitFrontWindowTest, IsTheSystemsOwnWindow)
{
    const QWidget* asked = nullptr;
    orderFrontRegardless(
        window, {.isThere = true, .viewOf = [&asked](const QWidget& shown) -> NSView* {
                     asked = &shown;
                     return [[[NSView alloc] init] autorelease];
                 }});
    EXPECT_EQ(asked, &window);
    EXPECT_EQ(scriptedAppKit().windowsOrderedFront, 1);
}

TEST_F(AppKitFrontWindowTest, IsTheToolkitsWhereTheSystemHasNone)
{
    orderFrontRegardless(window);
    EXPECT_EQ(scriptedAppKit().windowsOrderedFront, 0);
}

} // namespace
} // namespace orlimo
