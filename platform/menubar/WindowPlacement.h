#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

namespace orlimo {

/// A screen as windows are placed on it, in points.
struct ScreenArea
{
    /// All of it.
    QRect frame;
    /// What its panels leave free, as far as the host says.
    QRect available;
};

/// What is available to a window that belongs to `anchor` on the screen that holds it. `screens` is
/// not empty.
[[nodiscard]] QRect availableArea(const QRect& anchor, const std::vector<ScreenArea>& screens);

/// Where the top left corner of a window of `size` goes that belongs to `anchor`, an icon in a
/// panel or the place of a click: centred under the anchor, above it where there is no room below,
/// beside it where the panel stands on the left or right edge; and always inside the available area
/// of the screen that holds the anchor. Of a window too large for that area the top left part is
/// inside. `screens` is not empty.
[[nodiscard]] QPoint
windowPlacement(const QRect& anchor, QSize size, const std::vector<ScreenArea>& screens);

} // namespace orlimo
