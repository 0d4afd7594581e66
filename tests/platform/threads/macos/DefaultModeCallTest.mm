#include "platform/threads/macos/DefaultModeCall.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <utility>

namespace orlimo {
namespace {

/// On the thread's own run loop.
class DefaultModeCallTest : public testing::Test
{
protected:
    /// Runs the loop in `mode` for a while.
    static void run(NSString* mode)
    {
        @autoreleasepool {
            NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:0.02];
            while ([end timeIntervalSinceNow] > 0) {
                [[NSRunLoop currentRunLoop] runMode:mode beforeDate:end];
            }
        }
    }

    bool isOpen = false;
    int calls = 0;
    std::optional<bool> seen;
    std::optional<DefaultModeCall> call{std::in_place, [this] {
                                            ++calls;
                                            seen = isOpen;
                                        }};
};

TEST_F(DefaultModeCallTest, CallsOnceInTheDefaultModeWithTheStateOfThatTime)
{
    run(NSDefaultRunLoopMode);
    EXPECT_EQ(calls, 0) << "not requested";
    for (const bool state : {true, false}) {
        calls = 0;
        call->schedule();
        isOpen = state;
        call->schedule();
        run(@"mouse tracking");
        EXPECT_EQ(calls, 0);
        call->schedule();
        for (int time = 0; time < 2; ++time) {
            run(NSDefaultRunLoopMode);
            EXPECT_EQ(calls, 1);
        }
        EXPECT_EQ(seen, state);
    }
}

TEST_F(DefaultModeCallTest, IsDroppedWhenItIsDestroyed)
{
    call->schedule();
    call.reset();
    run(NSDefaultRunLoopMode);
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace orlimo
