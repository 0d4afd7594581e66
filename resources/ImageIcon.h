#pragma once

#include <QIcon>
#include <QString>

namespace orlimo {

/// The image asset, a square, as an icon: sharp at any size, and square also where it is given a
/// place that is not.
[[nodiscard]] QIcon imageIcon(const QString& imageName);

/// The same as a template, `QIcon::isMask()`: who shows it gives its shape the colour of the text
/// around it.
[[nodiscard]] QIcon templateIcon(const QString& imageName);

} // namespace orlimo
