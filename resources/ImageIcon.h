#pragma once

#include <QIcon>
#include <QString>

namespace orlimo {

/// The image asset as an icon, sharp at any size.
[[nodiscard]] QIcon imageIcon(const QString& imageName);

/// The same as a template, `QIcon::isMask()`: who shows it gives its shape the colour of the text
/// around it.
[[nodiscard]] QIcon templateIcon(const QString& imageName);

} // namespace orlimo
