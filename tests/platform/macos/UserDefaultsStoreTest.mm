#include "tests/platform/UserDefaultsStore.h"

#include "tests/support/ForkedRun.h"

#include <gtest/gtest.h>

#include <csignal>

#import <Foundation/Foundation.h>

namespace orlimo {
namespace {

TEST(UserDefaultsStore, IsNotClearedInAProgramWithAnotherIdentifier)
{
    clearUserDefaults();
    const ForkedRun run = runForked([] {
        [[NSProcessInfo processInfo] setProcessName:@"org.example.another"];
        clearUserDefaults();
    });
    EXPECT_EQ(run.signal, SIGABRT);
}

} // namespace
} // namespace orlimo
