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
        endProgram();
        desktop.killTray();
    }

    [[nodiscard]] bool awaitMenu(bool isShown) const
    {
        return awaitWithPolling(
            [&] { return desktop.windows().menuOf(processId()).has_value() == isShown; });
    }

    /// Waits until the icon has that color, sampled between its asterisk and its caret.
    [[nodiscard]] bool awaitColor(const QColor& color) const
    {
        return awaitWithPolling([&] {
            const QImage shown = desktop.windows().picture(icon);
            return shown.pixelColor(shown.rect().center() + QPoint(3, 0)) == color;
        });
    }

    // clang-format off
    const std::vector<std::string> dark{
        "--height", "24", "--heighttype", "pixel",
        "--transparent", "true", "--alpha", "0", "--tint", "0x202020"};
    // clang-format on
};

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

TEST_F(TrayTest, IconAppearsInATrayThatStartsAtAnyTime)
{
    // From the tray long before the program to the program long before the tray.
    for (int round = 0; round < 20; ++round) {
        const bool isTrayFirst = round < 10;
        isTrayFirst ? desktop.startTray({}) : launchProgram();
        runEventLoop(40ms * (isTrayFirst ? 9 - round : round - 10));
        isTrayFirst ? launchProgram() : desktop.startTray({});
        ASSERT_TRUE(awaitIcon()) << round;
        end();
    }
}

TEST_F(TrayTest, IconComesBackWithTheTrayAndTheWindowOpensByItselfOnlyWhileItIsGone)
{
    start();
    for (int round = 0; round < 2; ++round) {
        expectOpenOnlyWithoutTray([this] { desktop.killTray(); });
        desktop.press("Escape");
        expectClosed();
        desktop.startTray({});
        desktop.awaitTray();
        ASSERT_TRUE(awaitIcon()) << round;
    }
    // A tray that has just taken an icon still moves and maps it.
    runEventLoop(focusSettleTime);
    ASSERT_TRUE(awaitIcon());
    openByClick();
}

TEST_F(TrayTest, IconIsLegibleInATrayThatPublishesNoColorAndFollowsTheOneItPublishes)
{
    start();
    EXPECT_TRUE(awaitColor(Qt::black));
    end();
    desktop.startTrayWith(dark);
    startInTray();
    EXPECT_TRUE(awaitColor(Qt::white));
    for (const QColor color : {QColor(230, 220, 40), QColor(40, 220, 230)}) {
        desktop.windows().publishTrayColor(color);
        EXPECT_TRUE(awaitColor(color));
    }
    endProgram();
    startInTray();
    EXPECT_TRUE(awaitColor(QColor(40, 220, 230)));
}

TEST_F(TrayTest, WindowAtScaleTwoIsAtTheIconAndFitsTheScreen)
{
    start({.edge = "bottom", .align = "center"}, {{"QT_SCALE_FACTOR", "2"}});
    openByClick();
    const QRect area = window("Content").value();
    EXPECT_EQ(area.size(), QSize(600, 800 - 24));
    EXPECT_NEAR(area.center().x(), icon.center().x(), 1);
    EXPECT_EQ(area.y(), 0);
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

TEST_F(TrayWithSloppyFocusTest, WindowClosesAtAClickElsewhereOrANewWindowButNotAtTheWheel)
{
    auto other = desktop.openOtherApplication();
    start();
    for (const QPoint& point : {inOther, onTheDesktop, icon.center()}) {
        ASSERT_NO_FATAL_FAILURE(openAndMoveToOther());
        constexpr int wheel = 5;
        desktop.click(inOther, wheel);
        runEventLoop(focusSettleTime);
        EXPECT_TRUE(window("Content"));
        desktop.click(point);
        expectClosed();
    }
    EXPECT_EQ(count("opened"), 3);
    other.reset();
    openByClick();
    desktop.movePointer(inOther); // where the new window will be
    const auto another = desktop.openOtherApplication();
    EXPECT_TRUE(awaitClosed());
}

} // namespace
} // namespace orlimo
