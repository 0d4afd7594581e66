#pragma once

#include <QRect>

#import <Foundation/Foundation.h>

namespace orlimo {

/// A rectangle of the system's screens, whose points are counted upwards from the lower left corner
/// of the primary one, as the toolkit counts them: downwards from that screen's upper left corner.
/// Main thread.
[[nodiscard]] QRect toToolkitGeometry(NSRect rectangle);

} // namespace orlimo
