#include "controls/Divider.h"

#include "controls/Colors.h"

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
    QPainter(this).fillRect(rect(), separatorColor(palette()));
}

} // namespace orlimo
