#pragma once

#include <QSize>

#include <functional>

class QPainter;

namespace orlimo {

/// A view that is nothing but a size and how to draw it, with its top left corner at the painter's
/// origin. Text takes the painter's pen.
struct DrawnView
{
    /// Points.
    QSize size;
    std::function<void(QPainter&)> draw;
};

/// `view`, cut to a rectangle of its size with continuous corners of the radius.
[[nodiscard]] DrawnView clippedToRoundedRectangle(DrawnView view, double cornerRadius);

} // namespace orlimo
