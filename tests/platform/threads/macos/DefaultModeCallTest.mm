#include "platform/threads/macos/DefaultModeCall.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace orlimo {
namespace {

/// Runs the thread's own loop in `mode` for a while.
void run(NSString* mode)
{
    @autoreleasepool {
        NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:0.02];
        while ([end timeIntervalSinceNow] > 0) {
            [[NSRunLoop currentRunLoop] runMode:mode beforeDate:end];
        }
    }
}

TEST(DefaultModeCall, CallsOnceInTheDefaultModeUnlessDestroyed)
{
    int calls = 0;
    std::optional<DefaultModeCall> call(std::in_place, [&calls] { ++calls; });
    run(NSDefaultRunLoopMode);
    EXPECT_EQ(calls, 0) << "not requested";
    for (const int expected : {1, 2}) {
        call->schedule();
        call->schedule();
        run(@"mouse tracking");
        EXPECT_EQ(calls, expected - 1);
        call->schedule();
        for (int time = 0; time < 2; ++time) {
            run(NSDefaultRunLoopMode);
            EXPECT_EQ(calls, expected);
        }
    }
    call->schedule();
    call.reset();
    run(NSDefaultRunLoopMode);
    EXPECT_EQ(calls, 2);
}

} // namespace
} // namespace orlimo
