#include "platform/desktop/SharedApplication.h"

#include "tests/platform/desktop/RecordingDelegate.h"
#include "tests/support/Await.h"
#include "tests/support/process/ChildProcess.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoopLocker>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <memory>
#include <string>

namespace orlimo {
namespace {

/// Does `work` once the loop is through with what happens at the start.
void later(const std::function<void()>& work)
{
    QTimer::singleShot(0, qApp, [work] { QTimer::singleShot(0, qApp, work); });
}

void focus(QWidget& window)
{
    window.show();
    window.activateWindow();
    EXPECT_TRUE(await([&window] { return window.isActiveWindow(); }));
}

class SharedApplicationTest : public testing::Test
{
protected:
    int run() { return sharedApplication().run(delegate); }

    /// Runs `work` in the loop of an application that is launched, and ends that.
    void runWith(const std::function<void()>& work)
    {
        delegate.onDidFinish = [work] {
            later([work] {
                work();
                sharedApplication().terminate();
            });
        };
        EXPECT_EQ(run(), 0);
    }

    RecordingDelegate delegate;
};

TEST_F(SharedApplicationTest, IsOne)
{
    EXPECT_EQ(&sharedApplication(), &sharedApplication());
}

TEST_F(SharedApplicationTest, FinishesLaunchingOnceTheLoopRuns)
{
    delegate.onWillFinish = [] { EXPECT_EQ(QThread::currentThread()->loopLevel(), 0); };
    delegate.onDidFinish = [] {
        EXPECT_EQ(QThread::currentThread()->loopLevel(), 1);
        sharedApplication().terminate();
    };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
}

TEST_F(SharedApplicationTest, LaunchesAndEndsWhenItWasTerminatedBefore)
{
    sharedApplication().terminate();
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
}

TEST_F(SharedApplicationTest, LaunchesAndEndsWhenItIsTerminatedBeforeTheLoop)
{
    delegate.onWillFinish = [] { sharedApplication().terminate(); };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
}

TEST_F(SharedApplicationTest, SaysThatItIsTerminatingUntilItHasEnded)
{
    EXPECT_FALSE(sharedApplication().isTerminating());
    delegate.onDidFinish = [] {
        EXPECT_FALSE(sharedApplication().isTerminating());
        sharedApplication().terminate();
        EXPECT_TRUE(sharedApplication().isTerminating());
    };
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(sharedApplication().isTerminating());
}

TEST_F(SharedApplicationTest, RunsToTheEndAgain)
{
    sharedApplication().terminate();
    EXPECT_EQ(run(), 0);
    bool ran = false;
    runWith([&ran] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST_F(SharedApplicationTest, EndsThoughAWindowRefuses)
{
    class UncloseableWindow final : public QWidget
    {
    protected:
        void closeEvent(QCloseEvent* event) override { event->ignore(); }
    };
    UncloseableWindow window;
    window.show();
    runWith([] {});
    EXPECT_TRUE(window.isVisible());
}

TEST_F(SharedApplicationTest, EndsFromWithinANestedLoop)
{
    runWith([] {
        QEventLoop nested;
        later([] { sharedApplication().terminate(); });
        nested.exec();
    });
}

TEST_F(SharedApplicationTest, StaysWhenItsLastWindowCloses)
{
    bool isStillThere = false;
    delegate.onDidFinish = [&isStillThere] {
        auto window = std::make_unique<QWidget>();
        window->show();
        window->close();
        later([&isStillThere] {
            isStillThere = true;
            sharedApplication().terminate();
        });
    };
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(isStillThere);
}

TEST_F(SharedApplicationTest, StaysWhenAJobOfTheToolkitEnds)
{
    bool isStillThere = false;
    delegate.onDidFinish = [&isStillThere] {
        {
            const QEventLoopLocker job;
        }
        later([&isStillThere] {
            isStillThere = true;
            sharedApplication().terminate();
        });
    };
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(isStillThere);
}

TEST_F(SharedApplicationTest, TellsOfAnActivationAfterTheLaunchThatItInterrupts)
{
    QWidget window;
    delegate.onWillFinish = [&window] { focus(window); };
    delegate.onActive = [] { sharedApplication().terminate(); };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
}

TEST_F(SharedApplicationTest, TellsOfAnActivationThatWasThereBefore)
{
    QWidget window;
    focus(window);
    delegate.onActive = [] { sharedApplication().terminate(); };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
}

TEST_F(SharedApplicationTest, TellsOfAnActivation)
{
    runWith([this] {
        EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
        QWidget window;
        focus(window);
        EXPECT_EQ(
            delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
    });
}

TEST_F(SharedApplicationTest, TakesAMoveToAnotherWindowForNoActivation)
{
    runWith([this] {
        QWidget first;
        QWidget second;
        focus(first);
        focus(second);
        focus(first);
        EXPECT_EQ(
            delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
    });
}

TEST_F(SharedApplicationTest, IsToldOfNothingAfterItsEnd)
{
    runWith([] {});
    QWidget window;
    focus(window);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
}

TEST(SharedApplicationWithoutQApplication, StopsTheProgram)
{
    for (const char* argument : {"no application", "application without windows"}) {
        ChildProcess probe(ORLIMO_DESKTOP_PROBE, {.arguments = {argument}});
        EXPECT_EQ(probe.awaitEnd().signal, SIGABRT);
        EXPECT_EQ(probe.output(), "");
        EXPECT_NE(probe.errors().find("there is no application object"), std::string::npos);
    }
}

} // namespace
} // namespace orlimo
