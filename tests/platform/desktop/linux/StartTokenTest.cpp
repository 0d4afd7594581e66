#include "platform/desktop/SharedApplication.h"
#include "tests/platform/desktop/RecordingDelegate.h"

#include <QApplication>
#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace orlimo {
namespace {

TEST(StartToken, IsNotInheritedByChildProcesses)
{
    constexpr std::array<const char*, 2> variables{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};
    for (const char* const variable : variables) {
        qputenv(variable, "token");
    }
    const auto areSet = [&variables] {
        return std::ranges::count_if(variables, qEnvironmentVariableIsSet);
    };
    RecordingDelegate delegate;
    delegate.onDidFinish = [&areSet] {
        EXPECT_EQ(areSet(), 2);
        QTimer::singleShot(0, qApp, [&areSet] {
            EXPECT_EQ(areSet(), 0);
            sharedApplication().terminate();
        });
    };
    EXPECT_EQ(sharedApplication().run(delegate), 0);
}

} // namespace
} // namespace orlimo
