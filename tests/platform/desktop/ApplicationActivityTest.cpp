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
    [[nodiscard]] bool awaitNotification(bool isActive)
    {
        return await([this, isActive] {
            return !notifications.empty() && notifications.back() == isActive;
        });
    }

    std::vector<bool> notifications;
    QWidget window;
    QWidget other;
};

TEST_F(ApplicationActivityTest, IsToldAtTheStart)
{
    const ApplicationActivity without([this](bool isActive) { notifications.push_back(isActive); });
    EXPECT_EQ(notifications, std::vector<bool>{false});
    focus(window);
    notifications.clear();
    const ApplicationActivity with([this](bool isActive) { notifications.push_back(isActive); });
    EXPECT_EQ(notifications, std::vector<bool>{true});
}

TEST_F(ApplicationActivityTest, IsToldWhenAWindowGetsTheFocus)
{
    const ApplicationActivity activity(
        [this](bool isActive) { notifications.push_back(isActive); });
    focus(window);
    EXPECT_TRUE(notifications.back());
}

TEST_F(ApplicationActivityTest, IsToldWhenTheWindowWithTheFocusIsClosed)
{
    const ApplicationActivity activity(
        [this](bool isActive) { notifications.push_back(isActive); });
    focus(window);
    window.close();
    EXPECT_TRUE(awaitNotification(false));
    focus(window);
    EXPECT_TRUE(notifications.back());
}

TEST_F(ApplicationActivityTest, GoesOnWhenTheFocusMovesToAnotherWindow)
{
    const ApplicationActivity activity(
        [this](bool isActive) { notifications.push_back(isActive); });
    focus(window);
    notifications.clear();
    window.close();
    focus(other);
    runEventLoop(std::chrono::milliseconds(600));
    EXPECT_EQ(std::count(notifications.begin(), notifications.end(), false), 0);
}

} // namespace
} // namespace orlimo
