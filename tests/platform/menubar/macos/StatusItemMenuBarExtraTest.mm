#include "platform/menubar/macos/StatusItemMenuBarExtra.h"

#include "tests/platform/macos/fakes/FakeObject.h"
#include "tests/support/Await.h"
#include "tests/support/widgets/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#import <AppKit/AppKit.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class StatusItemMenuBarExtraTest : public testing::Test
{
protected:
    StatusItemMenuBarExtraTest()
    {
        NSApp = application.object();
        application.returns<BOOL>("isActive", YES);
        bar.returns("statusItemWithLength:", item.object());
        item.returns("button", button.object());
        item.returns<BOOL>("isVisible", YES);
        button.returns("window", buttonWindow.object());
        image.records("setTemplate:", isTemplate);
        button.records("setTarget:", target);
        button.records("highlight:", isHighlighted);
        button.records("sendActionOn:", eventMask);
        // Without a screen points count upwards from the upper edge.
        buttonWindow.returns("convertRectToScreen:", NSMakeRect(400, -23, 22, 22));
        QIcon icon;
        icon.setIsMask(true);
        extra = std::make_unique<StatusItemMenuBarExtra>(
            [this] {
                auto made = std::make_unique<QWidget>();
                made->setFixedSize(300, 540);
                content = made.get();
                return made;
            },
            icon,
            currentUptime,
            AppKitServices{.isAvailable = true, .viewOf = [this](const QWidget& /*window*/) {
                               return static_cast<NSView*>(view.object());
                           }});
    }

    ~StatusItemMenuBarExtraTest() override
    {
        extra.reset();
        NSApp = nil;
        FakeObject::resetAll();
    }

    void press() { [target performSelector:@selector(performAction:) withObject:nil]; }

    void openAndClose()
    {
        // Once the default mode of the system's event loop has run.
        const auto settle = [] {
            runEventLoop(0ms);
            [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
        };
        extra->open();
        runEventLoop(0ms);
        EXPECT_FALSE(isHighlighted) << "the pressed button would remove it";
        settle();
        EXPECT_TRUE(isHighlighted);
        extra->close();
        settle();
        EXPECT_FALSE(isHighlighted);
    }

    FakeObject& application = FakeObject::named("NSApplication");
    FakeObject& bar = FakeObject::named("NSStatusBar");
    FakeObject& item = FakeObject::named("item");
    FakeObject& button = FakeObject::named("button");
    FakeObject& buttonWindow = FakeObject::named("window of the button");
    FakeObject& image = FakeObject::named("NSImage");
    FakeObject& view = FakeObject::named("view");
    id target = nil;
    BOOL isTemplate = NO;
    BOOL isHighlighted = NO;
    NSInteger eventMask = 0;
    QWidget* content = nullptr;
    std::unique_ptr<StatusItemMenuBarExtra> extra;
};

TEST_F(StatusItemMenuBarExtraTest, PressOpensTheWindowUnderTheItemAndClosesIt)
{
    EXPECT_EQ(eventMask, (1 << 1) | (1 << 3));
    EXPECT_TRUE(isTemplate) << "the system colours the image";
    press();
    EXPECT_TRUE(extra->isOpen());
    EXPECT_EQ(content->geometry(), QRect(411 - 150, 23, 300, 540));
    press();
    EXPECT_FALSE(extra->isOpen());
    button.returns<id>("window", nil);
    press();
    EXPECT_TRUE(extra->isOpen()) << "also without a position of the item";
    const QRect withoutPosition = content->geometry();
    press();
    button.returns("window", buttonWindow.object());
    buttonWindow.returns("convertRectToScreen:", NSMakeRect(400, -23, 0, 0));
    press();
    EXPECT_EQ(content->geometry(), withoutPosition);
    extra.reset();
    EXPECT_THAT(bar.messages, Contains("removeStatusItem:"));
    EXPECT_EQ(target, nil);
}

TEST_F(StatusItemMenuBarExtraTest, StartOpensTheActiveProgramsWindowIfTheUserHasRemovedTheItem)
{
    extra->openIfNoTray();
    EXPECT_FALSE(extra->isOpen());
    item.returns<BOOL>("isVisible", NO);
    FakeObject& window = FakeObject::named("window");
    view.returns("window", window.object());
    application.returns<BOOL>("isHidden", YES);
    application.responds("activateIgnoringOtherApps:", [this](NSInvocation*) {
        EXPECT_FALSE(content->isVisible());
    });
    NSUInteger behavior = 0;
    window.records("setCollectionBehavior:", behavior);
    extra->openIfNoTray();
    EXPECT_TRUE(extra->isOpen());
    EXPECT_THAT(
        application.messages,
        ElementsAre("isHidden", "unhideWithoutActivation", "activateIgnoringOtherApps:"));
    EXPECT_THAT(window.messages, ElementsAre("setHidesOnDeactivate:", "setCollectionBehavior:"));
    // To the active space, and over a program in full screen.
    EXPECT_EQ(behavior, (1U << 1U) | (1U << 8U));
    EXPECT_EQ(content->windowType(), Qt::Window) << "the system would hide a tool window";
}

TEST_F(StatusItemMenuBarExtraTest, ItemIsHighlightedWhileOpenAndTheFocusReturned)
{
    application.returns("keyWindow", FakeObject::named("another window").object());
    openAndClose();
    application.returns<id>("keyWindow", nil);
    application.returns<BOOL>("isActive", NO);
    openAndClose();
    EXPECT_THAT(application.messages, Not(Contains("hide:")));
    application.returns<BOOL>("isActive", YES);
    openAndClose();
    EXPECT_THAT(application.messages, Contains("hide:"));
}

} // namespace
} // namespace orlimo
