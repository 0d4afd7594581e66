#pragma once

#include <QAccessibleWidget>
#include <QPointer>
#include <QWidget>

namespace orlimo {

/// What assistive technology finds in a view one of whose children is only the name of something:
/// all children but that one, so that the name is not announced a second time. Main thread.
class AccessibleWithoutLabel : public QAccessibleWidget
{
public:
    /// `nameLabel` is a child of `view`, and the name of `namedView`: of `view` itself, or of
    /// another child, which is then found wherever in the view one points at.
    AccessibleWithoutLabel(
        QWidget& view,
        QAccessible::Role role,
        const QString& name,
        QWidget& nameLabel,
        QWidget& namedView);

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* element) const override;
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;

private:
    /// Among all children; past the last one once the label has been deleted.
    [[nodiscard]] int labelIndex() const;

    QPointer<QWidget> label;
    QPointer<QWidget> named;
};

} // namespace orlimo
