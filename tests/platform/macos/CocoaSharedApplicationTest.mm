#include "platform/macos/CocoaSharedApplication.h"

#include "tests/platform/RecordingDelegate.h"
#include "tests/platform/macos/standins/ScriptedAppKit.h"
#include "tests/support/Await.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoopLocker>
#include <QTimer>
#include <QWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

void post(NSString* notification)
{
    [[NSNotificationCenter defaultCenter] postNotificationName:notification object:NSApp];
}

/// An application whose event loop is AppKit's, as far as it can tell: `inTheLoop` stands for what
/// AppKit does there.
class CocoaSharedApplicationTest : public testing::Test
{
protected:
    CocoaSharedApplicationTest()
    {
        scriptedAppKit() = {};
        scriptedAppKit().whenAskedToTerminate = [] { QApplication::exit(0); };
    }

    static void finishLaunching()
    {
        post(NSApplicationWillFinishLaunchingNotification);
        post(NSApplicationDidFinishLaunchingNotification);
    }

    int run(const std::function<void()>& inTheLoop)
    {
        QTimer::singleShot(0, qApp, inTheLoop);
        return application.run(delegate);
    }

    /// Launches, does `work` and ends.
    void runWith(const std::function<void()>& work)
    {
        EXPECT_EQ(
            run([this, work] {
                finishLaunching();
                work();
                application.terminate();
            }),
            0);
    }

    RecordingDelegate delegate;
    CocoaSharedApplication application{{.isThere = true}};
};

TEST_F(CocoaSharedApplicationTest, TellsOfTheTurnsWhenTheSystemDoes)
{
    EXPECT_EQ(
        run([this] {
            EXPECT_THAT(delegate.turns, IsEmpty());
            post(NSApplicationWillFinishLaunchingNotification);
            EXPECT_THAT(delegate.turns, ElementsAre("will finish"));
            post(NSApplicationDidFinishLaunchingNotification);
            EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish"));
            application.terminate();
        }),
        0);
    EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish"));
}

TEST_F(CocoaSharedApplicationTest, TellsOfEachActivationOnce)
{
    runWith([this] {
        post(NSApplicationWillBecomeActiveNotification);
        EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish", "active"));
        post(NSApplicationWillBecomeActiveNotification);
        EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish", "active", "active"));
    });
}

TEST_F(CocoaSharedApplicationTest, DoesNotTakeAWindowsActivationForTheApplications)
{
    runWith([this] {
        QWidget window;
        window.show();
        window.activateWindow();
        EXPECT_TRUE(await([&window] { return window.isActiveWindow(); }));
        EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish"));
    });
}

TEST_F(CocoaSharedApplicationTest, IsToldOfNothingAfterItsEnd)
{
    runWith([] {});
    finishLaunching();
    post(NSApplicationWillBecomeActiveNotification);
    EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish"));
}

TEST_F(CocoaSharedApplicationTest, LeavesItToTheBundleWhetherItIsAnAgent)
{
    runWith([] {});
    EXPECT_THAT(scriptedAppKit().applicationMessages, ElementsAre("terminate:"));
}

TEST_F(CocoaSharedApplicationTest, LaunchesAndEndsWhenItWasTerminatedBefore)
{
    application.terminate();
    EXPECT_TRUE(application.isTerminating());
    EXPECT_EQ(
        run([] {
            EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
            finishLaunching();
        }),
        0);
    EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish"));
    EXPECT_FALSE(application.isTerminating());
}

TEST_F(CocoaSharedApplicationTest, FinishesLaunchingBeforeItEnds)
{
    delegate.whenWillFinish = [this] {
        application.terminate();
        EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
    };
    delegate.whenDidFinish = [this] {
        EXPECT_TRUE(application.isTerminating());
        EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
    };
    EXPECT_EQ(run([] { finishLaunching(); }), 0);
    EXPECT_THAT(scriptedAppKit().applicationMessages, ElementsAre("terminate:"));
}

TEST_F(CocoaSharedApplicationTest, SaysThatItIsTerminatingUntilItHasEnded)
{
    EXPECT_FALSE(application.isTerminating());
    runWith([this] {
        EXPECT_FALSE(application.isTerminating());
        application.terminate();
        EXPECT_TRUE(application.isTerminating());
    });
    EXPECT_FALSE(application.isTerminating());
}

TEST_F(CocoaSharedApplicationTest, EndsWhenTheDelegateRefuses)
{
    scriptedAppKit().whenAskedToTerminate = [] {};
    runWith([] {});
}

TEST_F(CocoaSharedApplicationTest, EndsFromWithinANestedLoop)
{
    runWith([this] {
        QEventLoop nested;
        QTimer::singleShot(0, qApp, [this] { application.terminate(); });
        nested.exec();
    });
}

TEST_F(CocoaSharedApplicationTest, StaysWhenItsLastWindowAndTheToolkitsJobsEnd)
{
    bool isStillThere = false;
    EXPECT_EQ(
        run([this, &isStillThere] {
            finishLaunching();
            QWidget window;
            window.show();
            window.close();
            {
                const QEventLoopLocker job;
            }
            QTimer::singleShot(0, qApp, [this, &isStillThere] {
                isStillThere = true;
                application.terminate();
            });
        }),
        0);
    EXPECT_TRUE(isStillThere);
}

TEST_F(CocoaSharedApplicationTest, ShowsTheStandardAboutPanelInFrontOfEverything)
{
    application.orderFrontStandardAboutPanel({});
    EXPECT_THAT(
        scriptedAppKit().applicationMessages,
        ElementsAre("activateIgnoringOtherApps: YES", "orderFrontStandardAboutPanelWithOptions:"));
    EXPECT_THAT(scriptedAppKit().aboutPanels, ElementsAre(IsEmpty()));
}

TEST_F(CocoaSharedApplicationTest, ShowsTheAboutPanelWithExactlyTheOptionsGiven)
{
    const AboutPanelOptions options{{"ApplicationName", "\u00dcber"}, {"Copyright", ""}};
    application.orderFrontStandardAboutPanel(options);
    EXPECT_THAT(scriptedAppKit().aboutPanels, ElementsAre(options));
}

TEST_F(CocoaSharedApplicationTest, ComesBackFromHidingForTheAboutPanel)
{
    scriptedAppKit().isHidden = true;
    application.orderFrontStandardAboutPanel({});
    EXPECT_FALSE(scriptedAppKit().isHidden);
}

TEST_F(CocoaSharedApplicationTest, TouchesNothingOfTheSystemsOnATestPlatform)
{
    CocoaSharedApplication offscreen({});
    offscreen.orderFrontStandardAboutPanel({});
    delegate.whenDidFinish = [&offscreen] { offscreen.terminate(); };
    EXPECT_EQ(offscreen.run(delegate), 0);
    EXPECT_THAT(delegate.turns, ElementsAre("will finish", "did finish"));
    EXPECT_THAT(scriptedAppKit().applicationMessages, IsEmpty());
}

} // namespace
} // namespace orlimo
