#include "tests/desktop/sessions/x11/OpenboxConfiguration.h"
#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
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

    /// Starts the program, with `variables` added to the desktop's, and waits for its icon.
    void start(Environment variables = {})
    {
        startProgram(std::move(variables));
        ASSERT_TRUE(awaitIcon()) << "no icon in the tray";
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

TEST_F(TrayTest, MenuOfATextFieldLeavesTheWindowOpen)
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

TEST_F(TrayTest, AboutPanelIsAWindowOfTheActiveApplication)
{
    const auto other = desktop.openOtherApplication();
    start();
    openByClick();
    sendCommand("about");
    ASSERT_TRUE(awaitActive("About Orlimo"));
    EXPECT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    EXPECT_EQ(count("will become active"), 1);
    desktop.press("Escape");
    ASSERT_TRUE(awaitActive("xmessage"));
    runEventLoop(focusSettleTime);
    openByClick();
    EXPECT_TRUE(awaitActivations(2));
}

/// A desktop whose window manager gives the focus to the window under the pointer.
class TrayWithSloppyFocusTest : private SloppyFocusWindowManager, public TrayTest
{
protected:
    /// Opens the window with a click and moves the pointer to another application's window, which
    /// takes the focus.
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

TEST_F(TrayWithSloppyFocusTest, WindowStaysOpenWhereverThePointerGoes)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    ASSERT_NO_FATAL_FAILURE(moveInside());
    desktop.press("4");
    EXPECT_TRUE(await([this] { return program->ask("text") == "4"; }));
    desktop.movePointer(onTheDesktop);
    runEventLoop(focusSettleTime);
    ASSERT_TRUE(window("Content"));
    ASSERT_NO_FATAL_FAILURE(moveInside());
    desktop.movePointer(inOther);
    ASSERT_TRUE(awaitActive("xmessage"));
    runEventLoop(std::chrono::seconds(2));
    EXPECT_TRUE(window("Content"));
    EXPECT_EQ(count("closed"), 0);
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtAClickOnTheDesktop)
{
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.click(onTheDesktop);
    EXPECT_TRUE(awaitClosed());
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtAClickElsewhereButNotAtTheWheel)
{
    constexpr int wheel = 5;
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.click(inOther, wheel);
    runEventLoop(focusSettleTime);
    EXPECT_TRUE(window("Content"));
    desktop.click(inOther);
    EXPECT_TRUE(awaitClosed());
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

TEST_F(TrayOnLargeScreenTest, WindowIsAtTheIconAtScaleTwo)
{
    start({{"QT_SCALE_FACTOR", "2"}});
    openByClick();
    const auto area = window("Content");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->size(), QSize(600, 1080));
    EXPECT_NEAR(area->center().x(), icon.center().x(), 1);
    EXPECT_EQ(area->y() + area->height(), 1600 - 24);
}

/// The tray's position and the expected one of the window, as far as it does not depend on the
/// icon.
struct TrayEdge
{
    std::string edge;
    std::string align;
    std::optional<int> x;
    std::optional<int> y;
};

void PrintTo(const TrayEdge& tray, std::ostream* stream)
{
    *stream << tray.edge << tray.align;
}

class TrayPositionTest : public TrayTest, public testing::WithParamInterface<TrayEdge>
{
protected:
    TrayPositionTest()
        : TrayTest({.edge = GetParam().edge, .align = GetParam().align})
    {}
};

TEST_P(TrayPositionTest, WindowIsAtTheIcon)
{
    start();
    openByClick();
    const QSize size(300, 540);
    const auto area = window("Content");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->size(), size);
    // Centred at the icon, inside the screen.
    const int besideX = std::clamp(icon.x() + icon.width() / 2 - 150, 0, 1280 - size.width());
    const int besideY = std::clamp(icon.y() + icon.height() / 2 - 270, 0, 800 - size.height());
    EXPECT_EQ(area->x(), GetParam().x.value_or(besideX)) << icon.x();
    EXPECT_EQ(area->y(), GetParam().y.value_or(besideY)) << icon.y();
}

INSTANTIATE_TEST_SUITE_P(
    Edges,
    TrayPositionTest,
    testing::Values(
        TrayEdge{"top", "left", {}, 24},
        TrayEdge{"top", "center", {}, 24},
        TrayEdge{"top", "right", {}, 24},
        TrayEdge{"bottom", "center", {}, 800 - 24 - 540},
        TrayEdge{"bottom", "right", {}, 800 - 24 - 540},
        TrayEdge{"left", "left", 24, {}},
        TrayEdge{"left", "center", 24, {}},
        TrayEdge{"right", "center", 1280 - 24 - 300, {}},
        TrayEdge{"right", "right", 1280 - 24 - 300, {}}),
    [](const auto& instance) { return instance.param.edge + "_" + instance.param.align; });

} // namespace
} // namespace orlimo
