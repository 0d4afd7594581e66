#pragma once

#include <QPixmap>
#include <QWidget>

#include <memory>
#include <utility>

namespace orlimo {

/// Draws a view that stands in no window. Main thread.
template <class Content> class ImageRenderer
{
public:
    explicit ImageRenderer(std::unique_ptr<Content> view)
        : content(std::move(view))
    {}

    [[nodiscard]] const Content& view() const { return *content; }

    /// The view at its own size with `scale` pixels a point, on a transparent ground.
    [[nodiscard]] QPixmap image(double scale = 1) const
    {
        const QSize size = content->sizeHint();
        content->resize(size);
        QPixmap pixmap((QSizeF(size) * scale).toSize());
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        content->render(&pixmap, QPoint(), QRegion(), QWidget::DrawChildren);
        return pixmap;
    }

private:
    std::unique_ptr<Content> content;
};

} // namespace orlimo
