#pragma once

#include <QWidget>

namespace orlimo {

/// Flexible space in a stack: takes what its neighbors leave, possibly nothing. A widget, and
/// not a stretch of the layout, because the stack's spacing counts on both sides of it.
class Spacer : public QWidget
{
public:
    explicit Spacer(Qt::Orientation orientation, QWidget* parent = nullptr)
        : QWidget(parent)
    {
        const bool horizontal = orientation == Qt::Horizontal;
        setSizePolicy(
            horizontal ? QSizePolicy::Expanding : QSizePolicy::Fixed,
            horizontal ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    }

    [[nodiscard]] QSize sizeHint() const override { return {0, 0}; }
    [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }
};

} // namespace orlimo
