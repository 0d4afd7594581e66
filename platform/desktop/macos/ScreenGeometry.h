#pragma once

#include <QRect>
#include <QRectF>

#import <Foundation/Foundation.h>

namespace orlimo {

/// Converts a rectangle from the system's screen coordinates, points counted upwards from the lower
/// left corner of the primary screen, to Qt's, counted downwards from its upper left corner. Main
/// thread.
[[nodiscard]] QRect toQtGeometry(NSRect rectangle);

/// Converts a rectangle from points counted upwards from 0 to points counted downwards from `top`.
/// Any thread.
[[nodiscard]] QRectF flipped(const QRectF& rectangle, double top);

/// The height of the primary screen in points, 0 if there is no screen. Main thread.
[[nodiscard]] double topOfPrimaryScreen();

} // namespace orlimo
