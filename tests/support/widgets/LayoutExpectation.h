#pragma once

#include "tests/support/widgets/QtPrinting.h"

#include <QRect>

class QWidget;

namespace orlimo {

/// Gives everything in a widget that is not shown its place, as showing it would.
void layOut(QWidget& widget);

/// Where `widget` stands within `ancestor`, in points.
[[nodiscard]] QRect areaIn(const QWidget& ancestor, const QWidget& widget);

/// Expects that every widget that stands in `window` lies inside its parent, that no two neighbors
/// overlap, and that each text is painted whole: no glyph is cut at an edge of its widget.
void expectNothingClipped(QWidget& window);

/// Expects that with `scale` pixels a point no text label in `window` would paint beyond its edges
/// if nothing cut it off.
void expectLabelsWholeAt(double scale, QWidget& window);

} // namespace orlimo
