#include "platform/desktop/ApplicationActivity.h"

#include "tests/support/Await.h"

#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace orlimo {
namespace {

void focus(QWidget& window)
{
    window.show();
    window.activateWindow();
    EXPECT_TRUE(await([&window] { return window.isActiveWindow(); }));
}

class ApplicationActivityTest : public testing::Test
{
protected:
    std::vector<bool> notifications;
    const std::function<void(bool)> notify = [this](bool active) {
        notifications.push_back(active);
    };
    QWidget window;
    QWidget other;
};

TEST_F(ApplicationActivityTest, ReportsTheStateAtTheStartAndEachChange)
{
    const ApplicationActivity without(notify);
    EXPECT_EQ(notifications, std::vector<bool>{false});
    focus(window);
    EXPECT_TRUE(notifications.back());
    notifications.clear();
    const ApplicationActivity with(notify);
    EXPECT_EQ(notifications, std::vector<bool>{true});
    window.close();
    EXPECT_TRUE(await([this] { return !notifications.back(); }));
    focus(window);
    EXPECT_TRUE(notifications.back());
}

TEST_F(ApplicationActivityTest, StaysActiveWhileTheFocusMovesToAnotherWindow)
{
    const ApplicationActivity activity(notify);
    focus(window);
    notifications.clear();
    window.close();
    focus(other);
    runEventLoop(std::chrono::milliseconds(600));
    EXPECT_EQ(std::count(notifications.begin(), notifications.end(), false), 0);
}

} // namespace
} // namespace orlimo
