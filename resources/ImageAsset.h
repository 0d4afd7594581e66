#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QStringView>

namespace orlimo {

/// The image asset called `name` ("StatusBarIcon", "logo", "helper"), stretched to `size` points
/// and drawn sharp at `devicePixelRatio`. An unknown name gives a null pixmap. Main thread.
[[nodiscard]] QPixmap imageNamed(QStringView name, QSize size, qreal devicePixelRatio);

/// The same as a template: only the image's shape counts, and all of it is drawn in `tint`.
[[nodiscard]] QPixmap
templateImageNamed(QStringView name, QSize size, qreal devicePixelRatio, const QColor& tint);

} // namespace orlimo
