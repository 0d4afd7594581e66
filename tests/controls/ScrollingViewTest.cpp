#include "controls/ScrollingView.h"

#include "controls/TextButton.h"
#include "controls/accessibility/FocusRing.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace orlimo {
namespace {

/// A view with a button at each end.
class TallView : public QWidget
{
public:
    TallView()
    {
        setFixedSize(300, 540);
        setAccessibleName(QStringLiteral("Codes"));
        first.setParent(this);
        last.setParent(this);
        first.setGeometry(20, 20, 260, 30);
        last.setGeometry(20, 490, 260, 30);
    }

    TextButton first{QStringLiteral("Copy"), {}};
    TextButton last{QStringLiteral("Quit"), {}};
};

class ScrollingViewTest : public testing::Test
{
protected:
    /// Shows the view in that height.
    void showIn(int height)
    {
        scrolling.setFixedSize(300, height);
        showActive(scrolling);
    }

    /// Where a button stands in what is shown.
    [[nodiscard]] QRect area(const TextButton& button) const { return areaIn(scrolling, button); }

    void scrollWheel(int steps)
    {
        const QPointF point(150, 100);
        constexpr int step = 120;
        QWheelEvent event(
            point,
            scrolling.mapToGlobal(point),
            {},
            {0, -steps * step},
            Qt::NoButton,
            Qt::NoModifier,
            Qt::NoScrollPhase,
            false);
        QCoreApplication::sendEvent(scrolling.viewport(), &event);
    }

    TallView* view = new TallView;
    ScrollingView scrolling{std::unique_ptr<QWidget>(view)};
};

TEST_F(ScrollingViewTest, ShowsViewAloneWhereItFits)
{
    EXPECT_EQ(scrolling.size(), QSize(300, 540));
    EXPECT_EQ(scrolling.sizeHint(), QSize(300, 540));
    EXPECT_EQ(scrolling.accessibleName(), QStringLiteral("Codes"));
    showActive(scrolling);
    EXPECT_FALSE(scrolling.scrollBar().isVisible());
    TallView alone;
    EXPECT_EQ(Picture::ofWindow(scrolling).differenceFrom(Picture::ofWindow(alone)), QRectF());
    scrollWheel(3);
    EXPECT_EQ(area(view->first).top(), 20);
}

TEST_F(ScrollingViewTest, ScrollsViewWhereItDoesNotFit)
{
    showIn(400);
    EXPECT_EQ(view->size(), QSize(300, 540));
    EXPECT_EQ(view->x(), 0);
    EXPECT_TRUE(scrolling.scrollBar().isVisible());
    EXPECT_EQ(scrolling.scrollBar().geometry().right(), 299);
    EXPECT_EQ(scrolling.scrollBar().maximum(), 140);
    scrollWheel(20);
    EXPECT_EQ(area(view->last).bottom(), 400 - 21);
    EXPECT_EQ(scrolling.scrollBar().value(), 140);
}

TEST_F(ScrollingViewTest, ShowsFocusedControlWithItsRing)
{
    showIn(400);
    view->first.setFocus();
    QTest::keyClick(&view->first, Qt::Key_Tab);
    ASSERT_TRUE(view->last.hasFocus());
    EXPECT_TRUE(scrolling.rect().contains(area(view->last)));
    for (int steps : {0, -1}) {
        scrollWheel(steps);
        std::vector<QRect> rings;
        for (const QWidget* widget : scrolling.findChildren<QWidget*>()) {
            if (dynamic_cast<const FocusRing*>(widget) != nullptr && widget->isVisible()) {
                rings.push_back(areaIn(scrolling, *widget));
            }
        }
        constexpr int outset = FocusRing::outset;
        EXPECT_EQ(
            rings, std::vector{area(view->last).marginsAdded({outset, outset, outset, outset})});
    }
}

TEST_F(ScrollingViewTest, BeginsAtTopAtEachShowingAndIsWholeWhereItFitsAgain)
{
    showIn(400);
    const_cast<QScrollBar&>(scrolling.scrollBar()).triggerAction(QAbstractSlider::SliderToMaximum);
    EXPECT_EQ(area(view->last).bottom(), 400 - 21) << "scrolled by the bar";
    scrolling.hide();
    scrolling.show();
    EXPECT_EQ(area(view->first).top(), 20);
    EXPECT_EQ(scrolling.scrollBar().value(), 0);
    scrollWheel(20);
    scrolling.setFixedSize(300, 540);
    EXPECT_FALSE(scrolling.scrollBar().isVisible());
    EXPECT_EQ(area(view->first).top(), 20);
}

} // namespace
} // namespace orlimo
