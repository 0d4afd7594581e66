#include "app/MenuBarScene.h"
#include "app/ModuleServices.h"
#include "app/OrlimoApp.h"
#include "login/LaunchAtLogin.h"
#include "tests/app/FakeServices.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace orlimo {
namespace {

using testing::ElementsAre;

// This program is linked without any system's implementation of a service.

TEST(Modules, RunOnFakesOfEveryService)
{
    const TemporaryFolder library;
    StoreWriter store(library.path());
    store.appendText("Your code is 482913.");
    FakeServices fakes(library.path());
    const OutputCapture output;

    LaunchAtLogin::install(loginServices(fakes.services));
    OrlimoApp app(fakes.services);
    EXPECT_NE(app.message(), nullptr);
    EXPECT_EQ(app.appDelegate().message, app.message());
    EXPECT_TRUE(app.message()->ready());
    EXPECT_FALSE(app.appIconRenderer().isBuilt());
    const auto* const renderer = &app.appIconRenderer().wrappedValue();
    EXPECT_TRUE(app.appIconRenderer().isBuilt());
    EXPECT_EQ(&app.appIconRenderer().wrappedValue(), renderer);

    const auto scene = app.body();
    EXPECT_FALSE(scene->menuBarExtra().isOpen());
    app.appDelegate().applicationWillFinishLaunching();
    app.appDelegate().applicationDidFinishLaunching();
    EXPECT_THAT(fakes.loginItemCalls, ElementsAre("status", "register"));
    EXPECT_EQ(app.appDelegate().window, nullptr);
    EXPECT_EQ(app.appDelegate().secondaryWindow, nullptr);

    fakes.clock.advance(std::chrono::seconds(2));
    fakes.source->fire(vnodeExtend);
    fakes.decisions.run();
    fakes.mainQueue.run();
    EXPECT_THAT(fakes.pasteboard.calls, ElementsAre("declare string", "set 482913 as string"));

    scene->menuBarExtra().open();
    EXPECT_TRUE(scene->menuBarExtra().isOpen());
    EXPECT_THAT(
        output.lines(),
        ElementsAre(
            "Database init",
            "database connected!!",
            "OrlimoApp init",
            "registFileObserver",
            "init file monitor",
            "file access allowed",
            "ready to access disk",
            "Your code is 482913.",
            R"(Found numbers: ["482913"])",
            "file changed!! at message: code? 482913",
            "Opened PopupWindow : APPEAR",
            "ready to access disk",
            "Your code is 482913.",
            R"(Found numbers: ["482913"])"));
}

} // namespace
} // namespace orlimo
