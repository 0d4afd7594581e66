#pragma once

#include <QIcon>
#include <QString>

namespace orlimo {

/// The image asset, a square, as an icon: sharp at any size, and square in areas that are
/// not.
[[nodiscard]] QIcon imageIcon(const QString& imageName);

/// The same as a template, `QIcon::isMask()`: whoever shows it gives its shape the color of the
/// text around it.
[[nodiscard]] QIcon templateIcon(const QString& imageName);

} // namespace orlimo
