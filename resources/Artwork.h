#pragma once

#include <QColor>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <QStringView>

#include <memory>

class QSvgRenderer;

namespace orlimo {

/// One vector drawing among the program's resources, understood when it is first drawn; copies
/// share that. Main thread.
class Artwork
{
public:
    /// The drawing called `name` in the resource folder `folder` ("images", "symbols").
    Artwork(QStringView folder, QStringView name);

    /// Whether there is such a drawing.
    [[nodiscard]] bool exists() const;

    /// The drawing stretched to `size` points and sharp at `devicePixelRatio`; null when it does
    /// not exist or nothing would be left of it.
    [[nodiscard]] QPixmap drawn(QSize size, qreal devicePixelRatio) const;

    /// The same as a template: its shape, all in `tint`.
    [[nodiscard]] QPixmap drawn(QSize size, qreal devicePixelRatio, const QColor& tint) const;

private:
    QString file;
    std::shared_ptr<QSvgRenderer> renderer;
};

} // namespace orlimo
