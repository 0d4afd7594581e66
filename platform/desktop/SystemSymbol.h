#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QStringView>

#include <functional>

namespace orlimo {

/// The system's symbol `name`, drawn in `color` for use beside text of `pixelSize` points, sharp at
/// `devicePixelRatio`. A null pixmap for an unknown name.
[[nodiscard]] QPixmap
systemSymbol(QStringView name, int pixelSize, const QColor& color, qreal devicePixelRatio);

/// The size of systemSymbol() in points; empty for an unknown name.
[[nodiscard]] QSize systemSymbolSize(QStringView name, int pixelSize);

/// Both of them, as controls are given them.
struct SystemSymbols
{
    std::function<QPixmap(QStringView, int, const QColor&, qreal)> draw;
    std::function<QSize(QStringView, int)> size;
};

} // namespace orlimo
