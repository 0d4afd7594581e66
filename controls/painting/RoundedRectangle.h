#pragma once

#include <QPainterPath>
#include <QRectF>

namespace orlimo {

/// A rectangle with continuous corners: their curve begins further out than a quarter circle of
/// `radius` would and bends in little by little, so that the edge has no point where it starts to
/// turn. A radius of half the height gives round ends.
[[nodiscard]] QPainterPath continuousRoundedRectangle(const QRectF& rectangle, double radius);

} // namespace orlimo
