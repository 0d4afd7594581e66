#include "platform/threads/MainThread.h"

#include <gtest/gtest.h>

#include <thread>

namespace orlimo {
namespace {

TEST(MainThread, IsTheOneThatRunsTheTests)
{
    EXPECT_TRUE(isMainThread());
}

TEST(MainThread, IsNoOtherThread)
{
    bool main = true;
    std::thread([&main] { main = isMainThread(); }).join();
    EXPECT_FALSE(main);
}

} // namespace
} // namespace orlimo
