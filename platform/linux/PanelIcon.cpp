#include "platform/linux/PanelIcon.h"

#include <QPainter>
#include <QPixmap>
#include <QStringList>

namespace orlimo {

namespace {

QPixmap painted(QPixmap shape, const QColor& color)
{
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

} // namespace

QColor panelTextColor(const QString& desktop, const QPalette& palette)
{
    const QStringList names = desktop.split(u':');
    const bool alwaysDark = names.contains(u"GNOME", Qt::CaseInsensitive) ||
                            names.contains(u"sway", Qt::CaseInsensitive);
    return alwaysDark ? QColor(Qt::white) : palette.color(QPalette::WindowText);
}

QIcon panelIcon(const QIcon& icon, const QColor& color)
{
    if (!icon.isMask()) {
        return icon;
    }
    QIcon result;
    for (const QSize size : icon.availableSizes()) {
        result.addPixmap(painted(icon.pixmap(size, 1.0), color));
    }
    return result;
}

} // namespace orlimo
