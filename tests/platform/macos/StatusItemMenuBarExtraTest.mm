#include "platform/macos/StatusItemMenuBarExtra.h"

#include "resources/ImageIcon.h"
#include "tests/platform/macos/standins/ScriptedStatusBarButton.h"
#include "tests/support/Await.h"
#include "tests/support/HandClock.h"
#include "tests/support/QtPrinting.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QScreen>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What the window holds: notes what the application was sent by the time that it is shown.
class Content final : public QWidget
{
public:
    Content() { setFixedSize(300, 540); }

    std::vector<std::string> sentBeforeItIsShown;

protected:
    void showEvent(QShowEvent* /*event*/) override
    {
        sentBeforeItIsShown = scriptedAppKit().applicationMessages;
    }
};

class StatusItemMenuBarExtraTest : public testing::Test
{
protected:
    StatusItemMenuBarExtraTest()
    {
        scriptedAppKit() = {};
        screen = QGuiApplication::primaryScreen()->geometry();
        scriptedAppKit().screens = {NSMakeRect(0, 0, screen.width(), screen.height())};
        placeButtonAt(400);
        makeExtra({.isThere = true, .viewOf = [](const QWidget& /*window*/) {
                       static NSView* const view = [[NSView alloc] init];
                       return view;
                   }});
    }

    void makeExtra(AppKitHost host)
    {
        extra.reset();
        extra = std::make_unique<StatusItemMenuBarExtra>(
            [this] {
                ++contents;
                auto made = std::make_unique<Content>();
                content = made.get();
                return made;
            },
            templateIcon(QStringLiteral("StatusBarIcon")),
            clock.function(),
            std::move(host));
    }

    /// The button's left edge; its upper one is a point below the screen's.
    void placeButtonAt(int left) const
    {
        scriptedAppKit().statusItemWindow = NSMakeRect(left - 1, screen.height() - 24, 24, 24);
    }

    [[nodiscard]] static ScriptedStatusBarButton* button()
    {
        return static_cast<ScriptedStatusBarButton*>([scriptedAppKit().statusItems.at(0) button]);
    }

    static void press() { [button() receive:NSLeftMouseDown]; }

    /// Presses the button and waits until the window has the focus.
    void pressAndAwaitFocus()
    {
        press();
        ASSERT_TRUE(extra->isOpen());
        ASSERT_TRUE(await([this] { return content->isActiveWindow(); }));
        settle();
    }

    /// Until what is put off to the next turn of the event loop has been done.
    static void settle()
    {
        runEventLoop(0ms);
        runDefaultMode();
    }

    /// What is put off to the default mode of the system's own loop.
    static void runDefaultMode()
    {
        @autoreleasepool {
            [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
        }
    }

    HandClock clock;
    QRect screen;
    int contents = 0;
    Content* content = nullptr;
    QWidget other;
    std::unique_ptr<StatusItemMenuBarExtra> extra;
};

TEST_F(StatusItemMenuBarExtraTest, HasAnItemAndNoWindowAtFirst)
{
    EXPECT_EQ(scriptedAppKit().statusItems.size(), 1U);
    EXPECT_FALSE(extra->isOpen());
    EXPECT_EQ(contents, 0);
    settle();
    EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
}

TEST_F(StatusItemMenuBarExtraTest, OpensUnderTheButtonAndClosesAgain)
{
    pressAndAwaitFocus();
    EXPECT_EQ(content->geometry(), QRect(411 - 150, 23, 300, 540));
    press();
    EXPECT_FALSE(extra->isOpen());
    EXPECT_FALSE(content->isVisible());
    press();
    EXPECT_TRUE(extra->isOpen());
    EXPECT_EQ(contents, 1);
}

TEST_F(StatusItemMenuBarExtraTest, OpensForTheOtherButtonOfTheMouseToo)
{
    [button() receive:NSRightMouseDown];
    [button() receive:NSRightMouseUp];
    EXPECT_TRUE(extra->isOpen());
    [button() receive:NSRightMouseDown];
    EXPECT_FALSE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, TakesADoubleClickForTwoClicks)
{
    for (const NSEventType event : {NSLeftMouseDown, NSLeftMouseUp, NSLeftMouseDown, NSLeftMouseUp})
    {
        [button() receive:event];
    }
    EXPECT_FALSE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, OpensForAnAidToAccessibility)
{
    [button() press];
    EXPECT_TRUE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, StaysOnTheScreenAtItsEnd)
{
    placeButtonAt(screen.width() - 22);
    pressAndAwaitFocus();
    EXPECT_EQ(content->geometry(), QRect(screen.width() - 300, 23, 300, 540));
    press();
    placeButtonAt(0);
    press();
    EXPECT_EQ(content->geometry(), QRect(0, 23, 300, 540));
}

TEST_F(StatusItemMenuBarExtraTest, OpensAtThePointerWhileTheButtonHasNoPlace)
{
    scriptedAppKit().statusItemWindow.reset();
    QCursor::setPos(300, 50);
    pressAndAwaitFocus();
    EXPECT_EQ(content->geometry(), QRect(300 - 150, 51, 300, 540));
}

TEST_F(StatusItemMenuBarExtraTest, MakesTheProgramActiveBeforeTheWindowIsShown)
{
    press();
    EXPECT_THAT(content->sentBeforeItIsShown, ElementsAre("activateIgnoringOtherApps: YES"));
}

TEST_F(StatusItemMenuBarExtraTest, ComesBackFromHidingBeforeTheWindowIsShown)
{
    scriptedAppKit().isHidden = true;
    press();
    EXPECT_THAT(
        content->sentBeforeItIsShown,
        ElementsAre("unhideWithoutActivation", "activateIgnoringOtherApps: YES"));
}

TEST_F(StatusItemMenuBarExtraTest, IsNotOpenedByThePressThatTookTheFocus)
{
    pressAndAwaitFocus();
    other.show();
    other.activateWindow();
    ASSERT_TRUE(await([this] { return other.isActiveWindow(); }));
    EXPECT_FALSE(extra->isOpen());
    scriptedAppKit().applicationMessages.clear();
    press();
    EXPECT_FALSE(extra->isOpen());
    EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
    clock.advance(500ms);
    press();
    EXPECT_TRUE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, ClosesOnEscape)
{
    pressAndAwaitFocus();
    QTest::keyClick(content, Qt::Key_Escape);
    EXPECT_FALSE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, HasAWindowThatIsNoTool)
{
    press();
    EXPECT_EQ(content->windowType(), Qt::Window);
    EXPECT_TRUE(content->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(content->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(scriptedAppKit().windowHidesOnDeactivate, false);
}

TEST_F(StatusItemMenuBarExtraTest, HasAWindowThatComesToTheUser)
{
    press();
    // To the space of the moment, and over a program in full screen.
    EXPECT_EQ(scriptedAppKit().windowBehavior, (1U << 1U) | (1U << 8U));
}

TEST_F(StatusItemMenuBarExtraTest, HighlightsTheButtonWhileTheWindowIsOpen)
{
    pressAndAwaitFocus();
    EXPECT_TRUE([button() isHighlighted]);
    press();
    settle();
    EXPECT_FALSE([button() isHighlighted]);
    extra->open();
    settle();
    EXPECT_TRUE([button() isHighlighted]);
    extra->close();
    settle();
    EXPECT_FALSE([button() isHighlighted]);
}

TEST_F(StatusItemMenuBarExtraTest, HighlightsTheButtonAgainOnceTheWindowHasTheFocus)
{
    press();
    settle();
    // As the button itself does when it is let go.
    [button() highlight:NO];
    ASSERT_TRUE(await([this] { return content->isActiveWindow(); }));
    other.show();
    other.activateWindow();
    ASSERT_TRUE(await([this] { return other.isActiveWindow(); }));
    EXPECT_FALSE(extra->isOpen());
    extra->open();
    ASSERT_TRUE(await([this] { return content->isActiveWindow(); }));
    EXPECT_TRUE(await([] {
        runDefaultMode();
        return [button() isHighlighted] != NO;
    }));
}

TEST_F(StatusItemMenuBarExtraTest, GivesTheFocusBackWhenItCloses)
{
    pressAndAwaitFocus();
    scriptedAppKit().applicationMessages.clear();
    press();
    settle();
    EXPECT_THAT(scriptedAppKit().applicationMessages, ElementsAre("hide:"));
}

TEST_F(StatusItemMenuBarExtraTest, KeepsTheFocusForAnotherWindowOfTheProgram)
{
    pressAndAwaitFocus();
    scriptedAppKit().applicationMessages.clear();
    scriptedAppKit().hasKeyWindow = true;
    press();
    settle();
    EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
}

TEST_F(StatusItemMenuBarExtraTest, HidesNothingWhenAnotherProgramHasTheFocusAlready)
{
    pressAndAwaitFocus();
    scriptedAppKit().applicationMessages.clear();
    scriptedAppKit().isActive = false;
    extra->close();
    settle();
    EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
}

TEST_F(StatusItemMenuBarExtraTest, OpensOnRequest)
{
    other.show();
    extra->openAmongOthers();
    EXPECT_TRUE(extra->isOpen());
    EXPECT_THAT(content->sentBeforeItIsShown, ElementsAre("activateIgnoringOtherApps: YES"));
    other.activateWindow();
    EXPECT_TRUE(await([this] { return content->isActiveWindow(); }));
    EXPECT_TRUE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, DoesNotOpenForAStartWhereTheIconIsSeen)
{
    extra->openWhereThereIsNoIcon();
    EXPECT_FALSE(extra->isOpen());
    EXPECT_EQ(contents, 0);
}

TEST_F(StatusItemMenuBarExtraTest, OpensForAStartWhereTheUserHasTakenTheIconOut)
{
    scriptedAppKit().statusItemsAreVisible = false;
    extra->openWhereThereIsNoIcon();
    EXPECT_TRUE(extra->isOpen());
}

TEST_F(StatusItemMenuBarExtraTest, TakesItsItemOutAtItsEnd)
{
    pressAndAwaitFocus();
    extra.reset();
    EXPECT_THAT(scriptedAppKit().statusItems, IsEmpty());
    settle();
}

TEST_F(StatusItemMenuBarExtraTest, HasOnlyAWindowOnATestPlatform)
{
    makeExtra({});
    EXPECT_THAT(scriptedAppKit().statusItems, IsEmpty());
    extra->openWhereThereIsNoIcon();
    EXPECT_FALSE(extra->isOpen());
    extra->open();
    EXPECT_TRUE(extra->isOpen());
    settle();
    extra->close();
    EXPECT_FALSE(extra->isOpen());
    settle();
    EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
}

TEST_F(StatusItemMenuBarExtraTest, IsTheProgramsOwnWithoutAppKitHere)
{
    extra.reset();
    const auto own = MenuBarExtra::create([] { return std::make_unique<QWidget>(); }, {});
    EXPECT_THAT(scriptedAppKit().statusItems, IsEmpty());
    own->open();
    EXPECT_TRUE(own->isOpen());
}

} // namespace
} // namespace orlimo
