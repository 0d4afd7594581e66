#pragma once

#include <QIcon>
#include <QString>

namespace orlimo {

/// The image asset as an icon that is drawn in the colour that text has at that moment, at any
/// size.
[[nodiscard]] QIcon templateIcon(const QString& imageName);

} // namespace orlimo
