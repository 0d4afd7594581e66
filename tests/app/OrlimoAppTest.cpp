#include "app/OrlimoApp.h"

#include "app/MenuBarScene.h"
#include "platform/process/LogLine.h"
#include "tests/app/linux/SystemServices.h"
#include "tests/capture/PrivateHome.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OutputCapture.h"

#include <QString>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <thread>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// Logs whether something is true of the application.
void log(const char* subject, bool isTrue)
{
    writeLogLine(std::string(subject) + (isTrue ? " yes" : " no"));
}

/// The lines that `work` logs in a process and a home of its own, on a store with one code.
std::vector<std::string> linesOfRun(const std::function<void()>& work)
{
    const ForkedRun run = runForked([&work] {
        switchToPrivateHome();
        StoreWriter store(
            std::filesystem::path(qEnvironmentVariable("HOME").toStdString()) / "Library");
        store.appendText("Your code is 482913.");
        work();
    });
    EXPECT_EQ(run.status, 0);
    return linesOf(run.output);
}

const std::vector<std::string> initialLines{
    "Database init",
    "database connected!!",
    "OrlimoApp init",
    "registFileObserver",
    "init file monitor",
    "file access allowed",
};

std::vector<std::string> afterInitialLines(const std::vector<std::string>& lines)
{
    EXPECT_GE(lines.size(), initialLines.size());
    const std::vector<std::string> first(lines.begin(), lines.begin() + 6);
    EXPECT_THAT(first, ElementsAreArray(initialLines));
    return {lines.begin() + 6, lines.end()};
}

TEST(OrlimoApp, CreatesControllerThenLogsThenWatches)
{
    const auto lines = linesOfRun([] {
        OrlimoApp app(systemServices());
        log("shared:", app.message() != nullptr && app.appDelegate().message == app.message());
        log("watching:", app.message()->ready());
        log("window:", app.appDelegate().window != nullptr);
        log("secondary window:", app.appDelegate().secondaryWindow != nullptr);
    });
    EXPECT_THAT(
        afterInitialLines(lines),
        ElementsAre("shared: yes", "watching: yes", "window: no", "secondary window: no"));
}

TEST(OrlimoApp, BuildsIconRendererOnFirstUseOnly)
{
    const auto lines = linesOfRun([] {
        OrlimoApp app(systemServices());
        const auto scene = app.body();
        app.appDelegate().applicationWillBecomeActive();
        log("built:", app.appIconRenderer().isBuilt());
        const auto* renderer = &app.appIconRenderer().wrappedValue();
        log("built:", app.appIconRenderer().isBuilt());
        log("the same:", renderer == &app.appIconRenderer().wrappedValue());
    });
    const auto rest = afterInitialLines(lines);
    ASSERT_GE(rest.size(), 3U);
    EXPECT_THAT(
        std::vector<std::string>(rest.end() - 3, rest.end()),
        ElementsAre("built: no", "built: yes", "the same: yes"));
}

TEST(OrlimoApp, HasOneSceneThatShowsCodesOfController)
{
    const auto lines = linesOfRun([] {
        const OrlimoApp app(systemServices());
        const auto scene = app.body();
        log("open:", scene->menuBarExtra().isOpen());
        scene->menuBarExtra().open();
        log("open:", scene->menuBarExtra().isOpen());
        log("the code:", app.message()->verificationCode() == "482913");
    });
    const auto rest = afterInitialLines(lines);
    ASSERT_GE(rest.size(), 5U);
    EXPECT_EQ(rest[0], "open: no");
    EXPECT_EQ(rest[1], "Opened PopupWindow : APPEAR");
    EXPECT_EQ(rest[2], "ready to access disk");
    EXPECT_EQ(rest[rest.size() - 2], "open: yes");
    EXPECT_EQ(rest.back(), "the code: yes");
}

TEST(OrlimoApp, StopsWhenBodyIsMadeOnAnotherThread)
{
    expectFatalStop(
        [] {
            switchToPrivateHome();
            const OrlimoApp app(systemServices());
            std::thread([&app] { (void)app.body(); }).join();
        },
        {"Database init",
         "database connection:  unable to open database file",
         "OrlimoApp init",
         "registFileObserver",
         "init file monitor",
         "file access not allowed"},
        {.file = "app/OrlimoApp.cpp", .reason = "called off the main thread"});
}

} // namespace
} // namespace orlimo
