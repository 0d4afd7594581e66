#include "controls/Switch.h"

#include "controls/painting/Colors.h"
#include "tests/support/Await.h"
#include "tests/support/EventCount.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QAccessible>
#include <QProxyStyle>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

/// A desktop on which animations last that many milliseconds.
class AnimationStyle : public QProxyStyle
{
public:
    int styleHint(
        StyleHint hint,
        const QStyleOption* option,
        const QWidget* widget,
        QStyleHintReturn* data) const override
    {
        return hint == SH_Widget_Animation_Duration
                   ? duration
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }

    int duration = 0;
};

class SwitchTest : public testing::Test
{
protected:
    SwitchTest() { toggle.setStyle(&style); }

    /// Where the knob is, as the middle of all that is white.
    static double knobCenter(Switch& onOff)
    {
        const Picture picture = Picture::of(onOff);
        double first = -1;
        double last = -1;
        for (double x = 0.25; x < onOff.width(); x += 0.5) {
            if (picture.at(QPointF(x, 10)) == QColor(Qt::white)) {
                first = first < 0 ? x : first;
                last = x;
            }
        }
        return (first + last) / 2;
    }

    static constexpr double left = 10;
    static constexpr double right = 26;

    PaletteChange palette{lightPalette()};
    AnimationStyle style;
    Switch toggle;
};

TEST_F(SwitchTest, HasKnobAtLeadingEndWhenOffAndTrailingEndWhenOn)
{
    for (const QSize& size : {toggle.sizeHint(), toggle.minimumSize(), toggle.maximumSize()}) {
        EXPECT_EQ(size, QSize(36, 20));
    }
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const bool mirrored = direction == Qt::RightToLeft;
        toggle.setLayoutDirection(direction);
        toggle.setChecked(false);
        EXPECT_NEAR(knobCenter(toggle), mirrored ? right : left, 1);
        const QColor off = Picture::of(toggle).at(QPointF(mirrored ? 8 : 28, 10));
        EXPECT_EQ(off.alpha(), 255);
        EXPECT_LT(off.hsvSaturation(), 20);
        // Not visible yet: no slide.
        style.duration = 200;
        toggle.setChecked(true);
        EXPECT_NEAR(knobCenter(toggle), mirrored ? left : right, 1);
        const QColor on = Picture::of(toggle).at(QPointF(mirrored ? 28 : 8, 10));
        EXPECT_THAT(on, isColor(accentColor(toggle.palette())));
    }
    const Picture picture = Picture::of(toggle);
    EXPECT_EQ(picture.ink(), QRectF(0, 0, 36, 20));
    for (const QPointF corner :
         {QPointF(0.3, 0.3), QPointF(35.7, 0.3), QPointF(0.3, 19.7), QPointF(35.7, 19.7)})
    {
        EXPECT_EQ(picture.at(corner).alpha(), 0);
    }
    toggle.setEnabled(false);
    EXPECT_NEAR(Picture::of(toggle).at(QPointF(28, 10)).alphaF(), 0.5, 0.02);
}

TEST_F(SwitchTest, IsDistinctOnAndOffInEveryPalette)
{
    for (const QColor& accent : {QColor(53, 132, 228), QColor(0, 0, 90), QColor(255, 230, 0)}) {
        for (const QPalette& scheme : allPalettes(accent)) {
            const PaletteChange change(scheme);
            for (const bool on : {false, true}) {
                toggle.setChecked(on);
                const QColor track = Picture::of(toggle).at(QPointF(on ? 8 : 28, 10));
                for (const QColor& beside :
                     {windowColor(scheme), surfaceColor(scheme), QColor(Qt::white)}) {
                    EXPECT_GE(contrastRatio(track, beside), distinctContrast)
                        << testing::PrintToString(track) << " on "
                        << testing::PrintToString(beside);
                }
            }
        }
    }
}

TEST_F(SwitchTest, IsAnnouncedAndOperatedAsCheckBox)
{
    toggle.setAccessibleName(QStringLiteral("Launch at login"));
    auto* accessible = QAccessible::queryAccessibleInterface(&toggle);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Launch at login"));
    EXPECT_TRUE(accessible->state().checkable);
    EXPECT_TRUE(accessible->state().focusable);
    EXPECT_FALSE(accessible->state().checked);
    auto* actions = accessible->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(toggle.isChecked());
    EXPECT_TRUE(accessible->state().checked);
}

/// In a window.
class ShownSwitch : public SwitchTest
{
protected:
    ShownSwitch() { shown->setStyle(&style); }

    WidgetWindow<Switch> shown;
};

TEST_F(ShownSwitch, IsToggledByClicksOnItAlone)
{
    bool expected = false;
    for (const QPoint point : {QPoint(3, 10), QPoint(33, 10), QPoint(18, 1)}) {
        pointer::click(*shown, point);
        expected = !expected;
        EXPECT_EQ(shown->isChecked(), expected);
    }
    pointer::click(shown.window, shown->pos() + QPoint(-2, 10));
    pointer::click(shown.window, shown->pos() + QPoint(37, 10));
    pointer::press(*shown, QPoint(10, 10));
    pointer::release(shown.window, QPoint(2, 2));
    shown->setEnabled(false);
    pointer::click(*shown);
    EXPECT_EQ(shown->isChecked(), expected);
}

TEST_F(ShownSwitch, IsReachedByTabAndToggledBySpaceAndReturn)
{
    shown->clearFocus();
    QTest::keyClick(&shown.window, Qt::Key_Tab);
    EXPECT_TRUE(shown->hasFocus());
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&*shown, key);
        EXPECT_TRUE(shown->isChecked()) << key;
        QTest::keyClick(&*shown, key);
        EXPECT_FALSE(shown->isChecked()) << key;
    }
}

TEST_F(ShownSwitch, SlidesItsKnobWhereDesktopHasAnimations)
{
    const EventCount timers(QEvent::Timer);
    shown->toggle();
    EXPECT_NEAR(knobCenter(*shown), right, 1);
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(timers.count(), 0);
    style.duration = 200;
    // A busy machine may miss the slide altogether; then the knob goes back.
    EXPECT_TRUE(await([this] {
        const double center = knobCenter(*shown);
        if (center > left + 1.5 && center < right - 1.5) {
            return true;
        }
        if (center <= left + 1 || center >= right - 1) {
            shown->toggle();
        }
        return false;
    }));
}

TEST_F(ShownSwitch, TurnsAroundAndComesToRest)
{
    style.duration = 200;
    for (int times = 0; times < 7; ++times) {
        shown->toggle();
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(shown->isChecked());
    EXPECT_TRUE(await([this] { return std::abs(knobCenter(*shown) - right) < 1; }));
    shown->toggle();
    EXPECT_TRUE(await([this] { return std::abs(knobCenter(*shown) - left) < 1; }));
    // The last step has been painted when nothing is painted any more.
    EXPECT_TRUE(await([] {
        const EventCount paints(QEvent::Paint);
        runEventLoop(std::chrono::milliseconds(100));
        return paints.count() == 0;
    }));
    const EventCount timers(QEvent::Timer);
    runEventLoop(std::chrono::milliseconds(100));
    EXPECT_EQ(timers.count(), 0);
}

} // namespace
} // namespace orlimo
