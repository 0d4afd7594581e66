#include "app/guidance/WindowCloseObserver.h"

#include "tests/support/Await.h"

#include <QCoreApplication>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace orlimo {
namespace {

class WindowCloseObserverTest : public testing::Test
{
protected:
    WindowCloseObserverTest() { window->show(); }

    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    int calls = 0;
    std::optional<WindowCloseObserver> observer{std::in_place, *window, [this] { ++calls; }};
};

TEST_F(WindowCloseObserverTest, CallsOnceInEventLoopAfterWindowCloses)
{
    window->close();
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(await([this] { return calls == 1; }));
    window->show();
    window->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 1);
}

TEST_F(WindowCloseObserverTest, CallsNothingAfterItsEndAndOutlivesWindow)
{
    window->close();
    observer.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls, 0);
    observer.emplace(*window, [] {});
    window.reset();
    observer.reset();
}

} // namespace
} // namespace orlimo
