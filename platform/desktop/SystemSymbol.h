#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QStringView>

#include <functional>

namespace orlimo {

/// The symbol that the host calls `name`, drawn in `colour` to stand beside text of `pixelSize`
/// points, sharp at `devicePixelRatio`. A name that the host does not know gives a null pixmap.
[[nodiscard]] QPixmap
systemSymbol(QStringView name, int pixelSize, const QColor& color, qreal devicePixelRatio);

/// The size in points of what systemSymbol() draws; empty for an unknown name.
[[nodiscard]] QSize systemSymbolSize(QStringView name, int pixelSize);

/// Both of them, as controls are given them.
struct SystemSymbols
{
    std::function<QPixmap(QStringView, int, const QColor&, qreal)> draw;
    std::function<QSize(QStringView, int)> size;
};

} // namespace orlimo
