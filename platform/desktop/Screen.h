#pragma once

#include <QRect>
#include <QRectF>

#include <optional>

namespace orlimo {

/// The main screen's whole frame in points, panels included. None where there is no screen. Main
/// thread.
[[nodiscard]] std::optional<QRect> mainScreenFrame();

/// A rectangle in the system's screen coordinates, as Qt counts them: in points, downwards from the
/// upper left corner of the primary screen. Main thread.
[[nodiscard]] QRectF fromSystemCoordinates(const QRectF& rectangle);

} // namespace orlimo
