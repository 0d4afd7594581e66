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

/// Runs `work` once the event loop has handled the launch.
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

    /// Runs `work` in the event loop of a launched application and ends it.
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

TEST_F(SharedApplicationTest, LaunchingFinishesInTheEventLoop)
{
    delegate.onWillFinish = [] { EXPECT_EQ(QThread::currentThread()->loopLevel(), 0); };
    delegate.onDidFinish = [] {
        EXPECT_EQ(QThread::currentThread()->loopLevel(), 1);
        EXPECT_FALSE(sharedApplication().isTerminating());
        sharedApplication().terminate();
        EXPECT_TRUE(sharedApplication().isTerminating());
    };
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(sharedApplication().isTerminating());
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
}

TEST_F(SharedApplicationTest, TerminatedEarlyLaunchesAndEnds)
{
    sharedApplication().terminate();
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
    delegate.onWillFinish = [] { sharedApplication().terminate(); };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents.size(), 4U);
    QWidget window;
    focus(window);
    EXPECT_EQ(delegate.lifecycleEvents.size(), 4U) << "notified after its end";
    delegate.onWillFinish = [] {};
    bool ran = false;
    runWith([&ran] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST_F(SharedApplicationTest, EndsAlthoughAWindowRefusesToClose)
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

TEST_F(SharedApplicationTest, EndsFromANestedLoop)
{
    runWith([] {
        QEventLoop nested;
        later([] { sharedApplication().terminate(); });
        nested.exec();
    });
}

TEST_F(SharedApplicationTest, OutlivesItsLastWindowAndQtsJobs)
{
    bool isStillThere = false;
    delegate.onDidFinish = [&isStillThere] {
        auto window = std::make_unique<QWidget>();
        window->show();
        window->close();
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

TEST_F(SharedApplicationTest, ActivationDuringLaunchIsReportedAfterIt)
{
    QWidget window;
    delegate.onWillFinish = [&window] { focus(window); };
    delegate.onActive = [] { sharedApplication().terminate(); };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
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
