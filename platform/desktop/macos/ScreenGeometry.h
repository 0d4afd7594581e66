#pragma once

#include <QRect>
#include <QRectF>

#import <Foundation/Foundation.h>

namespace orlimo {

/// A rectangle of the system's screens, whose points are counted upwards from the lower left corner
/// of the primary one, as the toolkit counts them: downwards from that screen's upper left corner.
/// Main thread.
[[nodiscard]] QRect toQtGeometry(NSRect rectangle);

/// A rectangle whose points are counted upwards from 0, as counted downwards from `top`. Any
/// thread.
[[nodiscard]] QRectF flipped(const QRectF& rectangle, double top);

/// The upper edge of the primary screen, counted upwards from its lower one: its height in points.
/// 0 where there is no screen. Main thread.
[[nodiscard]] double topOfPrimaryScreen();

} // namespace orlimo
