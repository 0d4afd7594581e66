#include "controls/accessibility/FocusRing.h"

#include "controls/Switch.h"
#include "controls/TextButton.h"
#include "controls/painting/Colors.h"
#include "tests/support/Await.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace orlimo {
namespace {

/// Two switches in a window, and what is painted around them.
class FocusRingTest : public testing::Test
{
protected:
    FocusRingTest()
    {
        first->move(30, 30);
        second->move(30, 80);
        window.resize(120, 120);
        showActive(window);
        ringedWhenActivated = isRinged(*first) || isRinged(*second);
        // A window that becomes active gives the focus to its first control.
        first->clearFocus();
    }

    [[nodiscard]] bool hasColor(QPointF point, const QColor& color)
    {
        return testing::Matches(isColor(color))(Picture::ofWindow(window).at(point));
    }

    /// A point on the ring above what has that area.
    static QPointF above(const QRect& area) { return {area.center().x() + 0.5, area.top() - 2.0}; }

    /// Whether a ring is painted around the control.
    bool isRinged(const QWidget& control)
    {
        const QRectF area = control.geometry();
        int ringed = 0;
        for (const QPointF edge :
             {above(control.geometry()),
              QPointF(area.center().x(), area.bottom() + 1.5),
              QPointF(area.left() - 2, area.center().y()),
              QPointF(area.right() + 1.5, area.center().y())})
        {
            ringed += hasColor(edge, focusRingColor(window.palette())) ? 1 : 0;
        }
        EXPECT_TRUE(ringed == 0 || ringed == 4) << ringed << " of four edges have a ring";
        return ringed == 4;
    }

    PaletteChange palette{lightPalette()};
    bool ringedWhenActivated = false;
    QWidget window;
    Switch* first = new Switch(&window);
    Switch* second = new Switch(&window);
};

TEST_F(FocusRingTest, FollowsFocusMovedByTab)
{
    EXPECT_FALSE(ringedWhenActivated);
    EXPECT_FALSE(isRinged(*first) || isRinged(*second));
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Tab, Qt::Key_Tab})
    {
        QTest::keyClick(&window, key);
        EXPECT_NE(first->hasFocus(), second->hasFocus()) << "the ring takes no focus itself";
        EXPECT_EQ(isRinged(*first), first->hasFocus());
        EXPECT_EQ(isRinged(*second), second->hasFocus());
    }
    pointer::click(*second);
    EXPECT_FALSE(isRinged(*first) || isRinged(*second));
}

TEST_F(FocusRingTest, AppearsWhenKeyIsPressedAfterClick)
{
    pointer::click(*first);
    ASSERT_TRUE(first->hasFocus());
    EXPECT_FALSE(isRinged(*first));
    QTest::keyClick(first, Qt::Key_Shift);
    EXPECT_FALSE(isRinged(*first));
    QTest::keyClick(first, Qt::Key_Space);
    EXPECT_TRUE(isRinged(*first));
}

TEST_F(FocusRingTest, ComesBackWithFocusOfWindow)
{
    QWidget other;
    for (const bool byKeyboard : {false, true}) {
        pointer::click(*second);
        if (byKeyboard) {
            QTest::keyClick(&window, Qt::Key_Backtab);
        }
        showActive(other);
        EXPECT_FALSE(isRinged(*first));
        showActive(window);
        EXPECT_EQ(isRinged(*first), byKeyboard);
        EXPECT_FALSE(isRinged(*second));
    }
}

TEST_F(FocusRingTest, FollowsPositionAndPaletteOfControl)
{
    QTest::keyClick(&window, Qt::Key_Tab);
    first->move(60, 40);
    EXPECT_TRUE(isRinged(*first));
    const PaletteChange dark(darkPalette(QColor(200, 30, 60)));
    EXPECT_TRUE(isRinged(*first));
    pointer::click(*first, QPoint(1, 10));
    EXPECT_TRUE(first->isChecked()) << "clicks pass through the ring";
    first->hide();
    EXPECT_TRUE(hasColor(above(first->geometry()), windowColor(window.palette())));
}

TEST_F(FocusRingTest, IsDestroyedWithItsControl)
{
    QTest::keyClick(&window, Qt::Key_Tab);
    ASSERT_TRUE(isRinged(*first));
    const QPointF onRing = above(first->geometry());
    delete first;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(hasColor(onRing, windowColor(window.palette())));
    for (const QObject* child : window.children()) {
        EXPECT_EQ(dynamic_cast<const FocusRing*>(child), nullptr);
    }
}

} // namespace
} // namespace orlimo
