#include "controls/GroupBox.h"

#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "controls/accessibility/AccessibleWithoutLabel.h"
#include "controls/painting/Colors.h"
#include "controls/painting/LayoutMetrics.h"
#include "controls/painting/PixelGrid.h"
#include "controls/painting/RoundedRectangle.h"

#include <QPainter>
#include <QVBoxLayout>

namespace orlimo {

namespace {

QAccessibleInterface* makeAccessibleGroup(const QString& /*className*/, QObject* object)
{
    auto* group = qobject_cast<GroupBox*>(object);
    return group == nullptr ? nullptr
                            : new AccessibleWithoutLabel(
                                  *group,
                                  QAccessible::Grouping,
                                  group->title().textLabel().text(),
                                  group->title(),
                                  *group);
}

} // namespace

GroupBox::GroupBox(SymbolLabel* title)
    : titleLabel(title)
    , box(new QWidget)
    , content(new QVBoxLayout(box))
{
    auto* stack = new QVBoxLayout(this);
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(titleGap);
    stack->addWidget(titleLabel);
    stack->addWidget(box);
    content->setContentsMargins(contentPadding, contentPadding, contentPadding, contentPadding);
    content->setSpacing(metrics::defaultSpacing);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QAccessible::installFactory(makeAccessibleGroup);
}

void GroupBox::addView(QWidget* view, Qt::Alignment alignment)
{
    content->addWidget(view, 0, alignment);
}

void GroupBox::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelGrid grid(painter);
    const double half = grid.lineWidth() / 2;
    painter.setPen(QPen(surfaceBorderColor(palette()), grid.lineWidth()));
    painter.setBrush(surfaceColor(palette()));
    painter.drawPath(continuousRoundedRectangle(
        grid.snapped(boxArea()).adjusted(half, half, -half, -half), cornerRadius));
}

} // namespace orlimo
