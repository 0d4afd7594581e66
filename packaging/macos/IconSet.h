#pragma once

#include <QImage>
#include <QString>

namespace orlimo {

/// The program's icon as macOS wants it: the logo in ten sizes, its tile where the system's own
/// icons have theirs. Main thread, with an application object.
class IconSet
{
public:
    /// The icon `points` points wide for a screen with `scale` pixels a point.
    [[nodiscard]] static QImage icon(int points, int scale);

    /// Writes the ten PNG files under the names that iconutil knows into `folder`, which is made
    /// where it is missing. False when one cannot be written.
    [[nodiscard]] static bool writeTo(const QString& folder);
};

} // namespace orlimo
