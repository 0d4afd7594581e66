#include "controls/accessibility/AccessibleWithoutLabel.h"

namespace orlimo {

AccessibleWithoutLabel::AccessibleWithoutLabel(
    QWidget& view,
    QAccessible::Role role,
    const QString& name,
    QWidget& nameLabel,
    QWidget& namedView)
    : QAccessibleWidget(&view, role, name)
    , label(&nameLabel)
    , named(&namedView)
{}

int AccessibleWithoutLabel::labelIndex() const
{
    const int index =
        QAccessibleWidget::indexOfChild(QAccessible::queryAccessibleInterface(label.data()));
    return index < 0 ? QAccessibleWidget::childCount() : index;
}

int AccessibleWithoutLabel::childCount() const
{
    const int count = QAccessibleWidget::childCount();
    return labelIndex() < count ? count - 1 : count;
}

QAccessibleInterface* AccessibleWithoutLabel::child(int index) const
{
    return QAccessibleWidget::child(index < labelIndex() ? index : index + 1);
}

int AccessibleWithoutLabel::indexOfChild(const QAccessibleInterface* element) const
{
    const int index = QAccessibleWidget::indexOfChild(element);
    if (index == labelIndex()) {
        return -1;
    }
    return index < labelIndex() ? index : index - 1;
}

QAccessibleInterface* AccessibleWithoutLabel::childAt(int x, int y) const
{
    if (named == widget()) {
        return QAccessibleWidget::childAt(x, y);
    }
    return rect().contains(x, y) ? QAccessible::queryAccessibleInterface(named.data()) : nullptr;
}

} // namespace orlimo
