#include "tests/desktop/sessions/x11/OpenboxConfiguration.h"
#include "tests/platform/desktop/linux/DesktopProbeTest.h"
#include "tests/support/widgets/QtPrinting.h"

#include <QImage>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

constexpr int rightButton = 3;

/// A small program with an icon in a real tray, used with the mouse and the keyboard.
class TrayTest : public DesktopProbeTest
{
protected:
    using DesktopProbeTest::DesktopProbeTest;

    /// Starts the tray and then the program, with `variables` added to the desktop's.
    void start(const DesktopSession::TrayPosition& position = {}, Environment variables = {})
    {
        desktop.startTray(position);
        startInTray(std::move(variables));
    }

    void startInTray(Environment variables = {})
    {
        desktop.awaitTray();
        startProgram(std::move(variables));
        ASSERT_TRUE(awaitIcon()) << "no icon in the tray";
    }

    void end()
    {
        program.reset();
        desktop.killTray();
    }

    /// Waits until the icon has that color, sampled between its asterisk and its caret.
    [[nodiscard]] bool awaitColor(const QColor& color) const
    {
        return awaitWithPolling([&] {
            const QImage shown = desktop.windows().picture(icon);
            return shown.pixelColor(shown.rect().center() + QPoint(3, 0)) == color;
        });
    }

    const std::vector<std::string> height{"--height", "24", "--heighttype", "pixel"};
    // clang-format off
    const std::vector<std::string> dark{
        "--height", "24", "--heighttype", "pixel",
        "--transparent", "true", "--alpha", "0", "--tint", "0x202020"};
    // clang-format on
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

TEST_F(TrayTest, MenuLeavesAnOpenWindowOpen)
{
    start();
    openByClick();
    desktop.click(icon.center(), rightButton);
    ASSERT_TRUE(awaitMenu(true));
    desktop.press("Down");
    desktop.press("Return");
    ASSERT_TRUE(awaitMenu(false));
    runEventLoop(focusSettleTime);
    // The menu of a text field.
    desktop.click(window("Content")->topLeft() + QPoint(150, 20), rightButton);
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
    EXPECT_TRUE(await([this] { return count("will become active") == 2; }));
}

TEST_F(TrayTest, IconComesBackWithTheTray)
{
    start();
    for (int round = 0; round < 2; ++round) {
        desktop.killTray();
        runEventLoop(focusSettleTime);
        EXPECT_FALSE(window("Content"));
        desktop.startTray({});
        ASSERT_TRUE(awaitIcon()) << round;
        runEventLoop(focusSettleTime);
        openByClick();
        closeByClick();
    }
}

TEST_F(TrayTest, IconAppearsInATrayThatStartsAtAnyTime)
{
    // From the tray long before the program to the program long before the tray.
    for (int round = 0; round < 20; ++round) {
        if (round < 10) {
            desktop.startTray({});
            runEventLoop(40ms * (9 - round));
            launchProgram();
        } else {
            launchProgram();
            runEventLoop(40ms * (round - 10));
            desktop.startTray({});
        }
        ASSERT_TRUE(awaitIcon()) << round;
        end();
    }
}

TEST_F(TrayTest, WindowOpensByItselfOnlyWhileTheTrayIsGone)
{
    start();
    sendCommand("open if no tray");
    runEventLoop(1500ms); // longer than the program waits for the bus
    EXPECT_EQ(count("opened"), 0);
    desktop.killTray();
    // The program may be notified of it later than the test.
    ASSERT_TRUE(awaitWithPolling([this] {
        sendCommand("open if no tray");
        return window("Content").has_value();
    }));
    EXPECT_TRUE(awaitActive("Content"));
}

TEST_F(TrayTest, IconIsLegibleInATrayThatPublishesNoColor)
{
    for (const auto& [options, color] : {std::pair(height, Qt::black), std::pair(dark, Qt::white)})
    {
        desktop.startTrayWith(options);
        startInTray();
        EXPECT_TRUE(awaitColor(color));
        end();
    }
}

TEST_F(TrayTest, IconFollowsTheColorThatTheTrayPublishes)
{
    desktop.startTrayWith(dark);
    desktop.awaitTray();
    desktop.windows().publishTrayColor(QColor(230, 220, 40));
    startInTray();
    EXPECT_TRUE(awaitColor(QColor(230, 220, 40)));
    desktop.windows().publishTrayColor(QColor(40, 220, 230));
    EXPECT_TRUE(awaitColor(QColor(40, 220, 230)));
}

TEST_F(TrayTest, WindowIsAtTheIconAtEveryEdge)
{
    for (const std::string edge : {"top", "bottom", "left", "right"}) {
        start({.edge = edge, .align = "center"});
        openByClick();
        const QPoint middle(icon.x() + icon.width() / 2, icon.y() + icon.height() / 2);
        QRect expected(middle - QPoint(150, 270), QSize(300, 540));
        if (edge == "top" || edge == "bottom") {
            expected.moveTop(edge == "top" ? 24 : 800 - 24 - 540);
        } else {
            expected.moveLeft(edge == "left" ? 24 : 1280 - 24 - 300);
        }
        EXPECT_EQ(window("Content"), expected) << edge << testing::PrintToString(icon);
        end();
    }
}

class TrayOnLargeScreenTest : public TrayTest
{
protected:
    TrayOnLargeScreenTest()
        : TrayTest("2560x1600x24")
    {}
};

TEST_F(TrayOnLargeScreenTest, WindowIsAtTheIconAtScaleTwo)
{
    start({.edge = "bottom", .align = "center"}, {{"QT_SCALE_FACTOR", "2"}});
    openByClick();
    const auto area = window("Content");
    ASSERT_TRUE(area);
    EXPECT_EQ(area->size(), QSize(600, 1080));
    EXPECT_NEAR(area->center().x(), icon.center().x(), 1);
    EXPECT_EQ(area->y() + area->height(), 1600 - 24);
}

/// A desktop whose window manager gives the focus to the window under the pointer.
class TrayWithSloppyFocusTest : private SloppyFocusWindowManager, public TrayTest
{
protected:
    /// Opens the window with a click and moves the pointer to another application's window, which
    /// takes the focus.
    void openAndMoveToOther()
    {
        openByClick();
        desktop.movePointer(inOther);
        ASSERT_TRUE(awaitActive("xmessage"));
        runEventLoop(focusSettleTime);
        EXPECT_TRUE(window("Content"));
    }

    static constexpr QPoint inOther{400, 600};
    static constexpr QPoint onTheDesktop{100, 700};
};

TEST_F(TrayWithSloppyFocusTest, WindowStaysOpenWhereverThePointerGoes)
{
    const auto other = desktop.openOtherApplication();
    start();
    ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
    desktop.movePointer(window("Content")->center());
    ASSERT_TRUE(awaitActive("Content"));
    desktop.press("4");
    EXPECT_TRUE(await([this] { return program->ask("text") == "4"; }));
    desktop.movePointer(onTheDesktop);
    runEventLoop(focusSettleTime);
    ASSERT_TRUE(window("Content"));
    desktop.movePointer(inOther);
    ASSERT_TRUE(awaitActive("xmessage"));
    runEventLoop(2s);
    EXPECT_TRUE(window("Content"));
    EXPECT_EQ(count("closed"), 0);
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtAClickElsewhereButNotAtTheWheel)
{
    const auto other = desktop.openOtherApplication();
    start();
    for (const QPoint& point : {inOther, onTheDesktop, icon.center()}) {
        ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
        constexpr int wheel = 5;
        desktop.click(inOther, wheel);
        runEventLoop(focusSettleTime);
        EXPECT_TRUE(window("Content"));
        desktop.click(point);
        EXPECT_TRUE(awaitClosed());
        runEventLoop(focusSettleTime);
        EXPECT_FALSE(window("Content"));
    }
    EXPECT_EQ(count("opened"), 3);
}

TEST_F(TrayWithSloppyFocusTest, WindowClosesWhenAnotherApplicationOpens)
{
    start();
    openByClick();
    const auto other = desktop.openOtherApplication();
    EXPECT_TRUE(awaitClosed());
}

} // namespace
} // namespace orlimo
