#include "controls/Divider.h"

#include "controls/painting/Colors.h"
#include "controls/painting/PixelGrid.h"

#include <QPainter>

namespace orlimo {

Divider::Divider(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const PixelGrid grid(painter);
    QRectF line = grid.snapped(rect());
    line.setHeight(grid.lineWidth());
    painter.fillRect(line, separatorColor(palette()));
}

} // namespace orlimo
