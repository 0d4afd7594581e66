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

    /// Whether a ring is painted around the control.
    bool isRinged(const QWidget& control)
    {
        const Picture picture = Picture::ofWindow(window);
        const QColor color = focusRingColor(window.palette());
        const QRect area = control.geometry();
        const QPointF middle = QRectF(area).center();
        int ringed = 0;
        for (const QPointF edge :
             {QPointF(middle.x(), area.top() - 2),
              QPointF(middle.x(), area.top() + area.height() + 1.5),
              QPointF(area.left() - 2, middle.y()),
              QPointF(area.left() + area.width() + 1.5, middle.y())})
        {
            ringed += matches(picture.at(edge), color) ? 1 : 0;
        }
        EXPECT_TRUE(ringed == 0 || ringed == 4) << ringed << " of four edges have a ring";
        return ringed == 4;
    }

    static bool matches(const QColor& color, const QColor& expected)
    {
        return testing::Matches(isColor(expected))(color);
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
    const QRect area = first->geometry();
    first->hide();
    const QColor above = Picture::ofWindow(window).at(QPointF(area.center().x(), area.top() - 2));
    EXPECT_THAT(above, isColor(windowColor(window.palette())));
}

TEST_F(FocusRingTest, IsDestroyedWithItsControl)
{
    QTest::keyClick(&window, Qt::Key_Tab);
    const Picture ringed = Picture::ofWindow(window);
    delete first;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QWidget without;
    without.resize(window.size());
    auto* only = new Switch(&without);
    only->move(30, 80);
    EXPECT_EQ(Picture::ofWindow(window).differenceFrom(Picture::ofWindow(without)), QRectF());
    EXPECT_NE(ringed.differenceFrom(Picture::ofWindow(without)), QRectF());
}

} // namespace
} // namespace orlimo
