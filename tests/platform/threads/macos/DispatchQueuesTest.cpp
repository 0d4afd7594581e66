#include "platform/threads/Queue.h"
#include "tests/platform/macos/fakes/ScriptedDispatch.h"
#include "tests/support/process/ForkedRun.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <memory>

#include <unistd.h>

// Runs what runs when the application object goes.
void Q_CORE_EXPORT qt_call_post_routines();

namespace orlimo {
namespace {

TEST(DispatchQueues, TheMainQueueIsClosedWithTheApplication)
{
    const auto run = runForked([] {
        ScriptedDispatch& script = ScriptedDispatch::shared();
        int runs = 0;
        const auto token = std::make_shared<int>(0);
        mainQueue().async([&runs] { ++runs; });
        script.run();
        mainQueue().async([&runs, token] { ++runs; });
        qt_call_post_routines();
        mainQueue().async([&runs, token] { ++runs; });
        script.run();
        backgroundQueue().async([&runs] { ++runs; });
        script.run("global 9 0"); // of background quality
        ::_exit(runs == 2 && token.use_count() == 1 ? 0 : 1);
    });
    EXPECT_EQ(run.status, 0);
}

} // namespace
} // namespace orlimo
