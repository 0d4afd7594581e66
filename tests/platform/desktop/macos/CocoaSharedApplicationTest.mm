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

    /// Runs the application, which the system launches and makes active in its event loop. Ends
    /// with 1 where nothing has ended it then.
    int run()
    {
        QObject launch;
        QTimer::singleShot(0, &launch, [&launch] {
            for (NSString* turn in @[
                     NSApplicationWillFinishLaunchingNotification,
                     NSApplicationDidFinishLaunchingNotification,
                     NSApplicationWillBecomeActiveNotification
                 ])
            {
                [[NSNotificationCenter defaultCenter] postNotificationName:turn object:nil];
            }
            QTimer::singleShot(0, &launch, [] { QApplication::exit(1); });
        });
        return application.run(delegate);
    }

    FakeObject& system = FakeObject::named("NSApplication");
    RecordingDelegate delegate;
    CocoaSharedApplication application{AppKitServices{.isAvailable = true, .viewOf = {}}};
};

TEST_F(CocoaSharedApplicationTest, IsEndedByTheSystemOnceItIsLaunched)
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

TEST_F(CocoaSharedApplicationTest, IsActiveBeforeTheAboutPanelIsShown)
{
    application.orderFrontStandardAboutPanel({{"ApplicationName", "Orlimo"}});
    EXPECT_THAT(
        system.messages,
        ElementsAre(
            "isHidden", "activateIgnoringOtherApps:", "orderFrontStandardAboutPanelWithOptions:"));
}

} // namespace
} // namespace orlimo
