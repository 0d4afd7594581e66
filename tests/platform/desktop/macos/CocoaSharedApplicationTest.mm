#include "platform/desktop/macos/CocoaSharedApplication.h"

#include "tests/platform/desktop/RecordingDelegate.h"
#include "tests/platform/macos/fakes/FakeObject.h"

#include <QApplication>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CocoaSharedApplicationTest : public testing::Test
{
protected:
    CocoaSharedApplicationTest() { NSApp = system.object(); }
    ~CocoaSharedApplicationTest() override
    {
        NSApp = nil;
        FakeObject::resetAll();
    }

    /// Runs the application, which the system launches and activates in its event loop. Returns 1
    /// if nothing has ended it then.
    int run()
    {
        QObject launch;
        QTimer::singleShot(0, &launch, [&launch] {
            for (NSString* event in @[
                     NSApplicationWillFinishLaunchingNotification,
                     NSApplicationDidFinishLaunchingNotification,
                     NSApplicationWillBecomeActiveNotification
                 ])
            {
                [[NSNotificationCenter defaultCenter] postNotificationName:event object:nil];
            }
            QTimer::singleShot(0, &launch, [] { QApplication::exit(1); });
        });
        return application.run(delegate);
    }

    FakeObject& system = FakeObject::named("NSApplication");
    RecordingDelegate delegate;
    CocoaSharedApplication application{AppKitServices{.isAvailable = true, .viewOf = {}}};
};

TEST_F(CocoaSharedApplicationTest, SystemEndsItOnceItIsLaunched)
{
    delegate.onWillFinish = [this] {
        application.terminate();
        EXPECT_THAT(system.messages, IsEmpty()) << "the system would end the process";
    };
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(system.messages, ElementsAre("terminate:"));
    delegate.onWillFinish = [] {};
    delegate.onActive = [this] { application.terminate(); };
    delegate.lifecycleEvents.clear();
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(system.messages, ElementsAre("terminate:", "terminate:"));
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
}

TEST_F(CocoaSharedApplicationTest, AboutPanelIsShownAfterActivationWithoutOptions)
{
    bool hasEmptyOptions = false;
    system.responds("orderFrontStandardAboutPanelWithOptions:", [&](NSInvocation* invocation) {
        const auto options = FakeObject::argument<NSDictionary*>(invocation, 0);
        hasEmptyOptions = options != nil && [options count] == 0;
    });
    application.orderFrontStandardAboutPanel();
    EXPECT_TRUE(hasEmptyOptions);
    EXPECT_THAT(
        system.messages,
        ElementsAre(
            "isHidden", "activateIgnoringOtherApps:", "orderFrontStandardAboutPanelWithOptions:"));
}

} // namespace
} // namespace orlimo
