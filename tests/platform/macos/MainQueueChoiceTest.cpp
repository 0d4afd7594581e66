#include "platform/macos/MainDispatchQueue.h"
#include "platform/qt/EventLoopQueue.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(MainQueueChoice, IsTheToolkitsEventLoopWhereThatLeavesTheDispatchQueueAlone)
{
    ASSERT_NE(QGuiApplication::platformName(), QStringLiteral("cocoa"));
    EXPECT_FALSE(isMainDispatchQueueDrained());
    EXPECT_EQ(&mainQueue(), &eventLoopQueue());
}

} // namespace
} // namespace orlimo
