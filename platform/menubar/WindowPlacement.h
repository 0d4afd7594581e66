#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace orlimo {

/// A screen for placing windows, in points.
struct ScreenArea
{
    /// All of it.
    QRect frame;
    /// The part not covered by panels, as far as the system reports it.
    QRect available;
};

/// The available area of the screen that contains `anchor`. `screens` must not be empty.
[[nodiscard]] QRect availableArea(const QRect& anchor, const std::vector<ScreenArea>& screens);

/// The top left corner of a window of `size` that belongs to `anchor`, an icon in a panel or the
/// position of a click: centred below the anchor, above it if there is not enough space below,
/// beside it if the panel is at the left or right edge; always inside the available area of the
/// screen that contains the anchor. Of a window too large for that area the top left part is
/// inside. `screens` must not be empty.
[[nodiscard]] QPoint
windowPlacement(const QRect& anchor, QSize size, const std::vector<ScreenArea>& screens);

} // namespace orlimo
