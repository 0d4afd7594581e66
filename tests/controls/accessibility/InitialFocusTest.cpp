#include "controls/accessibility/InitialFocus.h"

#include "controls/Switch.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QShowEvent>
#include <QTest>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A window with a switch, shown and active.
class InitialFocusTest : public testing::Test
{
protected:
    InitialFocusTest()
    {
        window.resize(100, 100);
        InitialFocus::attach(window);
        showActive(window);
    }

    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }

    QWidget window;
    QWidget other;
    Switch* toggle = new Switch(&window);
};

TEST_F(InitialFocusTest, IsOfWindowItselfAtEachShowing)
{
    for (int showing = 0; showing < 2; ++showing) {
        EXPECT_TRUE(window.hasFocus());
        press(Qt::Key_Space);
        EXPECT_FALSE(toggle->isChecked());
        press(Qt::Key_Tab);
        EXPECT_TRUE(toggle->hasFocus());
        window.hide();
        showActive(other);
        showActive(window);
    }
}

TEST_F(InitialFocusTest, StaysWhereWindowSystemHidesAndShowsWindow)
{
    press(Qt::Key_Tab);
    QShowEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    QCoreApplication::instance()->notify(&window, &event);
    EXPECT_TRUE(toggle->hasFocus());
}

TEST_F(InitialFocusTest, RedrawsWindowWhenActivated)
{
    showActive(other);
    runEventLoop(std::chrono::milliseconds(50));
    const EventCount paints(QEvent::Paint);
    showActive(window);
    EXPECT_TRUE(await([&] { return paints.count() > 0; }));
}

} // namespace
} // namespace orlimo
