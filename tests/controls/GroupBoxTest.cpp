#include "controls/GroupBox.h"

#include "controls/SymbolLabel.h"
#include "controls/painting/Colors.h"
#include "tests/support/widgets/LayoutExpectation.h"
#include "tests/support/widgets/Palettes.h"
#include "tests/support/widgets/Picture.h"

#include <QAccessible>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

class GroupBoxTest : public testing::Test
{
protected:
    GroupBoxTest()
    {
        first->setFixedHeight(30);
        narrow->setFixedSize(50, 10);
        group.addView(first);
        group.addView(narrow, Qt::AlignHCenter);
        group.resize(group.sizeHint().expandedTo(QSize(200, 0)));
        layOut(group);
    }

    PaletteChange palette{lightPalette()};
    QWidget* first = new QWidget;
    QWidget* narrow = new QWidget;
    GroupBox group{new SymbolLabel(
        QStringLiteral("Latest Code"),
        QStringLiteral("ellipsis.bubble.fill"),
        {systemSymbol, systemSymbolSize},
        15)};
};

TEST_F(GroupBoxTest, HasTitleAboveBoxOfStackedViews)
{
    EXPECT_EQ(areaIn(group, group.title()), QRect(0, 0, 200, 18));
    constexpr int padding = GroupBox::contentPadding;
    const int top = 18 + GroupBox::titleGap;
    EXPECT_EQ(group.boxArea(), QRect(0, top, 200, padding + 30 + 8 + 10 + padding));
    EXPECT_EQ(areaIn(group, *first), QRect(padding, top + padding, 200 - 2 * padding, 30));
    EXPECT_EQ(areaIn(group, *narrow), QRect(75, top + padding + 38, 50, 10));
    EXPECT_EQ(group.height(), top + group.boxArea().height());
    expectNothingClipped(group);
}

TEST_F(GroupBoxTest, PaintsSurfaceWithOutlineAndRoundCorners)
{
    const Picture picture = Picture::of(group);
    const QRectF box = group.boxArea();
    const QColor border = surfaceBorderColor(lightPalette());
    EXPECT_THAT(picture.at(box.center()), isColor(surfaceColor(lightPalette())));
    EXPECT_THAT(picture.at({box.center().x(), box.top() + 0.2}), isColor(border));
    EXPECT_THAT(picture.at({box.right() - 0.7, box.center().y()}), isColor(border));
    EXPECT_EQ(picture.at(box.topLeft() + QPointF(0.6, 0.6)).alpha(), 0);
    EXPECT_EQ(picture.at(box.bottomRight() - QPointF(0.6, 0.6)).alpha(), 0);
    EXPECT_EQ(picture.at({198, 9}).alpha(), 0) << "beside the title";
}

TEST_F(GroupBoxTest, IsAnnouncedUnderTitleWithoutAnnouncingTitleItself)
{
    auto* accessible = QAccessible::queryAccessibleInterface(&group);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Grouping);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Latest Code"));
    ASSERT_EQ(accessible->childCount(), 1);
    auto* box = accessible->child(0);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->object(), first->parentWidget());
    EXPECT_EQ(box->parent(), accessible);
    EXPECT_EQ(accessible->indexOfChild(box), 0);
    EXPECT_EQ(accessible->indexOfChild(QAccessible::queryAccessibleInterface(&group.title())), -1);
    EXPECT_EQ(accessible->child(1), nullptr);
    delete &group.title();
    EXPECT_EQ(accessible->childCount(), 1);
    EXPECT_EQ(accessible->indexOfChild(box), 0);
}

} // namespace
} // namespace orlimo
