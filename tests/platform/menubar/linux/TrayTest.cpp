#include "tests/desktop/sessions/x11/NonFocusingWindowManager.h"
#include "tests/desktop/sessions/x11/SloppyFocusWindowManager.h"
#include "tests/platform/desktop/linux/DesktopProbeTest.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace orlimo {
namespace {

/// A small program with an icon in a real tray, used with the mouse and the keyboard.
class TrayTest : public DesktopProbeTest
{
protected:
    TrayTest()
        : TrayTest(DesktopSession::TrayPosition{})
    {}

    explicit TrayTest(
        const DesktopSession::TrayPosition& place, const std::string& screen = "1280x800x24")
        : DesktopProbeTest(place, screen)
    {}

    /// Starts the program, with `variables` beside the desktop's, and waits for its icon.
    void start(Environment variables = {})
    {
        startProgram(std::move(variables));
        ASSERT_TRUE(awaitIcon()) << "no icon in the tray";
    }

    void openAboutPanel()
    {
        program->writeLine("about");
        ASSERT_TRUE(program->awaitLine("done"));
        ASSERT_TRUE(awaitActive("About Orlimo"));
    }

    [[nodiscard]] bool awaitActivations(std::ptrdiff_t number)
    {
        return await([&] { return count("will become active") == number; });
    }
};

TEST_F(TrayTest, ClickGivesTheWindowTheKeyboardOfAnotherProgram)
{
    const auto other = desktop.openOtherApplication();
    start();
    openByClick();
    for (const char* key : {"4", "8", "2", "9"}) {
        desktop.press(key);
    }
    EXPECT_TRUE(await([this] { return program->ask("text") == "4829"; }));
}

TEST_F(TrayTest, WindowOpensAtTheSamePlaceAgain)
{
    start();
    openByClick();
    const auto first = window("Content");
    desktop.press("Escape");
    ASSERT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    openByClick();
    EXPECT_EQ(window("Content"), first);
}

TEST_F(TrayTest, MenuOfATextLeavesTheWindowOpen)
{
    start();
    openByClick();
    constexpr int right = 3;
    desktop.click(window("Content")->topLeft() + QPoint(150, 20), right);
    ASSERT_TRUE(awaitMenu(true));
    runEventLoop(focusSettleTime);
    desktop.press("Escape");
    ASSERT_TRUE(awaitMenu(false));
    runEventLoop(focusSettleTime);
    EXPECT_TRUE(window("Content"));
    EXPECT_EQ(count("closed"), 0);
    desktop.press("Escape");
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TrayTest, MenuLeavesAnOpenWindowOpen)
{
    start();
    openByClick();
    constexpr int right = 3;
    desktop.click(icon.center(), right);
    ASSERT_TRUE(awaitMenu(true));
    desktop.press("Down");
    desktop.press("Return");
    ASSERT_TRUE(awaitMenu(false));
    runEventLoop(focusSettleTime);
    EXPECT_TRUE(window("Content"));
    EXPECT_EQ(count("closed"), 0);
}

TEST_F(TrayTest, EachOpeningActivatesTheApplicationOnce)
{
    start();
    EXPECT_EQ(count("will become active"), 0);
    openByClick();
    EXPECT_TRUE(awaitActivations(1));
    const auto other = desktop.openOtherApplication();
    ASSERT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    openByClick();
    EXPECT_TRUE(awaitActivations(2));
}

TEST_F(TrayTest, AboutPanelIsOneOfTheApplicationsWindows)
{
    start();
    openByClick();
    openAboutPanel();
    EXPECT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    EXPECT_EQ(count("will become active"), 1);
}

TEST_F(TrayTest, AboutPanelLeavesTheApplicationInactiveWhenItCloses)
{
    const auto other = desktop.openOtherApplication();
    start();
    openAboutPanel();
    EXPECT_TRUE(awaitActivations(1));
    desktop.press("Escape");
    ASSERT_TRUE(awaitActive("xmessage"));
    runEventLoop(focusSettleTime);
    openByClick();
    EXPECT_TRUE(awaitActivations(2));
}

TEST_F(TrayTest, AboutPanelComesToTheFrontAgain)
{
    start();
    openAboutPanel();
    const auto other = desktop.openOtherApplication();
    openAboutPanel();
    EXPECT_EQ(desktop.windows().windowsOf(processId()).size(), 1U);
    const auto all = desktop.windows().windowsOf(0);
    const auto panel = std::ranges::find(all, "About Orlimo", &XWindow::title);
    EXPECT_EQ(std::ranges::count(panel, all.end(), "xmessage", &XWindow::title), 0);
}

TEST_F(TrayTest, WebPageIsOpenedWithoutWaitingForIt)
{
    const TemporaryFolder folder;
    const auto asked = folder.path() / "asked";
    const auto mayEnd = folder.path() / "may-end";
    const auto ended = folder.path() / "ended";
    writeFile(
        folder.path() / "xdg-open",
        "#!/bin/sh\n"
        "echo \"$1\" >'" +
            asked.string() + "'\nwhile ! test -e '" + mayEnd.string() +
            "'; do sleep 0.05; done\ntouch '" + ended.string() + "'\n");
    std::filesystem::permissions(folder.path() / "xdg-open", std::filesystem::perms::owner_all);
    start({{"PATH", folder.path().string() + ":/usr/bin:/bin"}});
    EXPECT_EQ(program->ask("website"), "yes");
    EXPECT_TRUE(await([&] {
        return std::filesystem::exists(asked) && contentOf(asked) == "https://orlimo.app/\n";
    }));
    EXPECT_EQ(program->ask("is open"), "no");
    EXPECT_FALSE(std::filesystem::exists(ended));
    writeFile(mayEnd, "");
    EXPECT_TRUE(await([&] { return std::filesystem::exists(ended); }));
}

TEST_F(TrayTest, WebPageThatNothingOpensIsKnownAtOnce)
{
    const TemporaryFolder empty;
    start({{"PATH", empty.path().string()}});
    EXPECT_EQ(program->ask("website"), "no");
}

/// A desktop whose window manager gives the keyboard to no new window by itself.
class TrayWithNonFocusingWindowManagerTest : private NonFocusingWindowManager, public TrayTest
{};

TEST_F(TrayWithNonFocusingWindowManagerTest, ClickGivesTheWindowTheKeyboard)
{
    start();
    openByClick();
    desktop.press("Escape");
    EXPECT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    openByClick();
}

/// A desktop whose window manager gives the focus to the window under the pointer.
class TrayWithSloppyFocusTest : private SloppyFocusWindowManager, public TrayTest
{
protected:
    /// Opens the window by a click and moves the pointer on to another application's window, which
    /// takes the focus with that.
    void openAndMoveToOther()
    {
        other = desktop.openOtherApplication();
        start();
        openByClick();
        desktop.movePointer(inOther);
        ASSERT_TRUE(awaitActive("xmessage"));
        runEventLoop(focusSettleTime);
        EXPECT_TRUE(window("Content"));
    }

    /// Moves the pointer into the window and waits for the focus.
    void moveInside()
    {
        desktop.movePointer(window("Content")->center());
        ASSERT_TRUE(awaitActive("Content"));
    }

    static constexpr QPoint inOther{400, 600};
    static constexpr QPoint onTheDesktop{100, 700};
    std::unique_ptr<ChildProcess> other;
};

TEST_F(TrayWithSloppyFocusTest, WindowWaitsForThePointer)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    ASSERT_NO_FATAL_FAILURE(moveInside());
    desktop.press("4");
    EXPECT_TRUE(await([this] { return program->ask("text") == "4"; }));
    desktop.press("Escape");
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TrayWithSloppyFocusTest, WindowWaitsForThePointerOnItsWayOverTheDesktop)
{
    start();
    openByClick();
    desktop.movePointer(onTheDesktop);
    runEventLoop(focusSettleTime);
    ASSERT_TRUE(window("Content"));
    ASSERT_NO_FATAL_FAILURE(moveInside());
}

TEST_F(TrayWithSloppyFocusTest, WindowStaysOpenWhenThePointerLeavesIt)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    ASSERT_NO_FATAL_FAILURE(moveInside());
    desktop.movePointer(inOther);
    ASSERT_TRUE(awaitActive("xmessage"));
    runEventLoop(std::chrono::seconds(2));
    EXPECT_TRUE(window("Content"));
    EXPECT_EQ(count("closed"), 0);
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtAClickElsewhere)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.click(inOther);
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtAClickOnTheDesktop)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.click(onTheDesktop);
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TrayWithSloppyFocusTest, WindowStaysOpenWhenTheWheelIsTurnedElsewhere)
{
    constexpr int wheel = 5;
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.click(inOther, wheel);
    runEventLoop(focusSettleTime);
    EXPECT_TRUE(window("Content"));
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtASecondClickOnTheIcon)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.click(icon.center());
    EXPECT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    EXPECT_FALSE(window("Content"));
    EXPECT_EQ(count("opened"), 1);
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesWhenAnotherApplicationOpens)
{
    start();
    openByClick();
    other = desktop.openOtherApplication();
    EXPECT_TRUE(awaitClosed());
}

class TrayOnLargeScreenTest : public TrayTest
{
protected:
    TrayOnLargeScreenTest()
        : TrayTest({.edge = "bottom", .align = "center"}, "2560x1600x24")
    {}
};

TEST_F(TrayOnLargeScreenTest, WindowStandsAtTheIconAtTwoPixelsAPoint)
{
    start({{"QT_SCALE_FACTOR", "2"}});
    openByClick();
    const auto area = window("Content");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->size(), QSize(600, 1080));
    EXPECT_NEAR(area->center().x(), icon.center().x(), 1);
    EXPECT_EQ(area->y() + area->height(), 1600 - 24);
}

/// A tray, by a name.
struct NamedTrayPosition
{
    std::string name;
    DesktopSession::TrayPosition tray;
};

void PrintTo(const NamedTrayPosition& place, std::ostream* stream)
{
    *stream << place.name;
}

class TrayPositionTest : public TrayTest, public testing::WithParamInterface<NamedTrayPosition>
{
protected:
    TrayPositionTest()
        : TrayTest(GetParam().tray)
    {}

    /// `middle` less half of `length`, and so that it ends before `end`.
    static int around(int middle, int length, int end)
    {
        return std::clamp(middle - length / 2, 0, end - length);
    }

    [[nodiscard]] QPoint expected() const
    {
        const std::string& edge = GetParam().tray.edge;
        const int besideX = around(icon.x() + icon.width() / 2, size.width(), 1280);
        const int besideY = around(icon.y() + icon.height() / 2, size.height(), 800);
        if (edge == "top") {
            return {besideX, 24};
        }
        if (edge == "bottom") {
            return {besideX, 800 - 24 - size.height()};
        }
        return {edge == "left" ? 24 : 1280 - 24 - size.width(), besideY};
    }

    const QSize size{300, 540};
};

TEST_P(TrayPositionTest, WindowStandsAtTheIcon)
{
    start();
    openByClick();
    const auto area = window("Content");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->size(), size);
    EXPECT_EQ(area->x(), expected().x()) << icon.x();
    EXPECT_EQ(area->y(), expected().y()) << icon.y();
}

INSTANTIATE_TEST_SUITE_P(
    Edges,
    TrayPositionTest,
    testing::Values(
        NamedTrayPosition{"TopLeft", {"top", "left"}},
        NamedTrayPosition{"TopCentre", {"top", "center"}},
        NamedTrayPosition{"TopRight", {"top", "right"}},
        NamedTrayPosition{"BottomCentre", {"bottom", "center"}},
        NamedTrayPosition{"BottomRight", {"bottom", "right"}},
        NamedTrayPosition{"LeftTop", {"left", "left"}},
        NamedTrayPosition{"LeftCentre", {"left", "center"}},
        NamedTrayPosition{"RightCentre", {"right", "center"}},
        NamedTrayPosition{"RightBottom", {"right", "right"}}),
    [](const auto& instance) { return instance.param.name; });

} // namespace
} // namespace orlimo
