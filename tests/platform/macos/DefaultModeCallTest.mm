#include "platform/macos/DefaultModeCall.h"

#include "platform/macos/ActionTarget.h"

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
    /// Runs the loop in `mode` until what is due in it has been done.
    static void run(NSString* mode)
    {
        @autoreleasepool {
            bool done = false;
            const std::function<void()> finish = [&done] { done = true; };
            OrlimoActionTarget* const target =
                [[[OrlimoActionTarget alloc] initWithAction:&finish] autorelease];
            NSTimer* const timer = [NSTimer timerWithTimeInterval:0.02
                                                           target:target
                                                         selector:@selector(performAction:)
                                                         userInfo:nil
                                                          repeats:NO];
            NSRunLoop* const loop = [NSRunLoop currentRunLoop];
            [loop addTimer:timer forMode:mode];
            while (!done && [loop runMode:mode
                                beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.02]]) {
            }
            ASSERT_TRUE(done);
        }
    }
    static void runTrackingMode() { run(@"mouse tracking"); }
    static void runDefaultMode() { run(NSDefaultRunLoopMode); }

    bool isOpen = false;
    int calls = 0;
    std::optional<bool> seen;
    std::optional<DefaultModeCall> call{std::in_place, [this] {
                                            ++calls;
                                            seen = isOpen;
                                        }};
};

TEST_F(DefaultModeCallTest, WaitsForTheDefaultMode)
{
    call->schedule();
    EXPECT_EQ(calls, 0);
    runTrackingMode();
    EXPECT_EQ(calls, 0);
    runDefaultMode();
    EXPECT_EQ(calls, 1);
    runDefaultMode();
    EXPECT_EQ(calls, 1);
}

TEST_F(DefaultModeCallTest, CallsOnceWithTheStateOfThatTime)
{
    call->schedule();
    isOpen = true;
    call->schedule();
    runTrackingMode();
    call->schedule();
    runDefaultMode();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(seen, true);

    isOpen = false;
    call->schedule();
    runDefaultMode();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(seen, false);
}

TEST_F(DefaultModeCallTest, IsDroppedWhenItIsDestroyed)
{
    call->schedule();
    call.reset();
    runDefaultMode();
    EXPECT_EQ(calls, 0);
}

TEST_F(DefaultModeCallTest, IsNotCalledUnasked)
{
    runDefaultMode();
    EXPECT_EQ(calls, 0);
}

} // namespace
} // namespace orlimo
