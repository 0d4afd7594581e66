#include "controls/Spacer.h"

#include "tests/support/widgets/Picture.h"

#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(Spacer, TakesWhatItsNeighboursLeave)
{
    QWidget window;
    auto* stack = new QVBoxLayout(&window);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(7);
    auto* above = new QWidget;
    auto* below = new QWidget;
    above->setFixedHeight(20);
    below->setFixedHeight(30);
    auto* spacer = new Spacer(Qt::Vertical);
    stack->addWidget(above);
    stack->addWidget(spacer, 1);
    stack->addWidget(below);
    window.resize(50, 200);
    stack->activate();
    EXPECT_EQ(spacer->height(), 200 - 20 - 30 - 2 * 7);
}

TEST(Spacer, NeedsNothing)
{
    EXPECT_EQ(Spacer(Qt::Vertical).minimumSizeHint(), QSize(0, 0));
    EXPECT_EQ(Spacer(Qt::Vertical).sizeHint(), QSize(0, 0));
    EXPECT_EQ(Spacer(Qt::Horizontal).sizeHint(), QSize(0, 0));
}

TEST(Spacer, IsFlexibleInItsOwnDirectionOnly)
{
    EXPECT_EQ(
        Spacer(Qt::Vertical).sizePolicy(), QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding));
    EXPECT_EQ(
        Spacer(Qt::Horizontal).sizePolicy(),
        QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed));
}

TEST(Spacer, PaintsNothing)
{
    Spacer spacer(Qt::Vertical);
    spacer.resize(20, 20);
    EXPECT_EQ(Picture::of(spacer).ink(), QRectF());
}

} // namespace
} // namespace orlimo
