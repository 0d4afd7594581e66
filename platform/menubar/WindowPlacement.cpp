#include "platform/menubar/WindowPlacement.h"

#include <algorithm>

namespace orlimo {

namespace {

/// A rectangle's extent along one axis; `end` is exclusive.
struct Span
{
    int start;
    int end;

    [[nodiscard]] int length() const { return end - start; }
    [[nodiscard]] int middle() const { return start + length() / 2; }
    [[nodiscard]] bool contains(int point) const { return point >= start && point < end; }
    [[nodiscard]] int distanceTo(int point) const
    {
        return std::max({start - point, point - (end - 1), 0});
    }
};

Span horizontal(const QRect& rectangle)
{
    return {rectangle.x(), rectangle.x() + rectangle.width()};
}

Span vertical(const QRect& rectangle)
{
    return {rectangle.y(), rectangle.y() + rectangle.height()};
}

int distance(const QRect& frame, QPoint point)
{
    return horizontal(frame).distanceTo(point.x()) + vertical(frame).distanceTo(point.y());
}

const ScreenArea& screenOf(QPoint point, const std::vector<ScreenArea>& screens)
{
    return *std::min_element(
        screens.begin(), screens.end(), [point](const ScreenArea& one, const ScreenArea& other) {
            return distance(one.frame, point) < distance(other.frame, point);
        });
}

/// Whether not even a second anchor fits between the anchor and an end of the area.
bool isNearEdge(Span anchor, Span area)
{
    return std::min(anchor.start - area.start, area.end - anchor.end) < anchor.length();
}

/// Whether the anchor's panel is at the left or right edge of the screen. Decided by the available
/// area or, if that is inconclusive, by an icon close to a side but to neither top nor bottom.
bool isInSidePanel(const QRect& anchor, const QRect& available)
{
    const bool isBeside = !horizontal(available).contains(horizontal(anchor).middle());
    const bool isAboveOrBelow = !vertical(available).contains(vertical(anchor).middle());
    if (isBeside != isAboveOrBelow) {
        return isBeside;
    }
    return isNearEdge(horizontal(anchor), horizontal(available)) &&
           !isNearEdge(vertical(anchor), vertical(available));
}

/// After the anchor if the length fits there, otherwise before it.
int adjacent(Span anchor, int length, Span area)
{
    return anchor.end + length <= area.end ? anchor.end : anchor.start - length;
}

int centred(Span anchor, int length)
{
    return anchor.middle() - length / 2;
}

int clampedTo(int start, int length, Span area)
{
    return std::max(area.start, std::min(start, area.end - length));
}

} // namespace

QRect availableArea(const QRect& anchor, const std::vector<ScreenArea>& screens)
{
    return screenOf(QPoint(horizontal(anchor).middle(), vertical(anchor).middle()), screens)
        .available;
}

QPoint windowPlacement(const QRect& anchor, QSize size, const std::vector<ScreenArea>& screens)
{
    const Span anchorColumns = horizontal(anchor);
    const Span anchorRows = vertical(anchor);
    const QRect available = availableArea(anchor, screens);
    const Span columns = horizontal(available);
    const Span rows = vertical(available);
    const bool isBeside = isInSidePanel(anchor, available);
    const int x = isBeside ? adjacent(anchorColumns, size.width(), columns)
                           : centred(anchorColumns, size.width());
    const int y =
        isBeside ? centred(anchorRows, size.height()) : adjacent(anchorRows, size.height(), rows);
    return {clampedTo(x, size.width(), columns), clampedTo(y, size.height(), rows)};
}

} // namespace orlimo
