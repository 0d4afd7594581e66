#pragma once

#include <QRect>

#include <optional>

namespace orlimo {

/// The main screen's whole frame in points, panels included. None where there is no screen. Main
/// thread.
[[nodiscard]] std::optional<QRect> mainScreenFrame();

} // namespace orlimo
