#pragma once

#include <QRect>
#include <QSize>

#include <algorithm>

namespace orlimo {

/// The size of the largest square that fits into `size`. Icons are square, and keep that shape in
/// places that are not.
[[nodiscard]] inline QSize squareIn(const QSize& size)
{
    const int edge = std::min(size.width(), size.height());
    return {edge, edge};
}

/// That square in the middle of `area`.
[[nodiscard]] inline QRect centeredSquare(const QRect& area)
{
    QRect square(QPoint(), squareIn(area.size()));
    square.moveCenter(area.center());
    return square;
}

} // namespace orlimo
