#include "app/panel/CopyButtonStyle.h"

#include "controls/painting/LayoutMetrics.h"
#include "platform/threads/MainThread.h"

#include <QPainter>

#include <utility>

namespace orlimo {

DrawnView CopyButtonStyle::makeBody(Configuration configuration)
{
    requireMainThread();
    constexpr int padding = metrics::defaultPadding;
    DrawnView label = clippedToRoundedRectangle(std::move(configuration.label), cornerRadius);
    const QSize size = label.size.grownBy({padding, padding, padding, padding});
    auto draw = [label = std::move(label)](QPainter& painter) {
        painter.save();
        painter.setPen(Qt::white);
        painter.translate(padding, padding);
        label.draw(painter);
        painter.restore();
    };
    return {.size = size, .draw = std::move(draw)};
}

} // namespace orlimo
