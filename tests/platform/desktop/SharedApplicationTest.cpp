#include "platform/desktop/SharedApplication.h"

#include "tests/platform/desktop/RecordingDelegate.h"
#include "tests/support/Await.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoopLocker>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

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
    void run() { EXPECT_EQ(sharedApplication().run(delegate), 0); }

    /// Runs `work` in the event loop of a launched application and ends it.
    void runWith(const std::function<void()>& work)
    {
        delegate.onDidFinish = [work] {
            later([work] {
                work();
                sharedApplication().terminate();
            });
        };
        run();
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
    run();
    EXPECT_FALSE(sharedApplication().isTerminating());
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
}

TEST_F(SharedApplicationTest, TerminatedEarlyLaunchesAndEnds)
{
    sharedApplication().terminate();
    run();
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish"}));
    delegate.onWillFinish = [] { sharedApplication().terminate(); };
    run();
    EXPECT_EQ(delegate.lifecycleEvents.size(), 4U);
    QWidget window;
    focus(window);
    EXPECT_EQ(delegate.lifecycleEvents.size(), 4U) << "notified after its end";
}

TEST_F(SharedApplicationTest, EndsFromANestedLoopAlthoughAWindowRefusesToClose)
{
    class UncloseableWindow final : public QWidget
    {
    protected:
        void closeEvent(QCloseEvent* event) override { event->ignore(); }
    };
    UncloseableWindow window;
    window.show();
    runWith([] {
        QEventLoop nested;
        later([] { sharedApplication().terminate(); });
        nested.exec();
    });
    EXPECT_TRUE(window.isVisible());
}

TEST_F(SharedApplicationTest, OutlivesItsLastWindowAndQtsJobs)
{
    QWidget window;
    window.show();
    delegate.onWillFinish = [&window] {
        QTimer::singleShot(0, &window, [&window] {
            window.close();
            const QEventLoopLocker job;
        });
    };
    bool isStillThere = false;
    runWith([&isStillThere] { isStillThere = true; });
    EXPECT_TRUE(isStillThere);
}

TEST_F(SharedApplicationTest, ActivationDuringLaunchIsReportedAfterIt)
{
    QWidget window;
    delegate.onWillFinish = [&window] { focus(window); };
    delegate.onActive = [] { sharedApplication().terminate(); };
    run();
    EXPECT_EQ(delegate.lifecycleEvents, (LifecycleEvents{"will finish", "did finish", "active"}));
}

} // namespace
} // namespace orlimo
