#include "tests/platform/preferences/UserDefaultsStore.h"

#include "tests/support/process/ForkedRun.h"

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
