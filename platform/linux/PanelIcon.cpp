#include "platform/linux/PanelIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QStringList>

#include <utility>

namespace orlimo {

namespace {

/// A template in a color. A size is drawn when it is asked for: hosts want few of them, and the
/// icon is wanted at once when the program starts.
class PaintedTemplate final : public QIconEngine
{
public:
    PaintedTemplate(QIcon shape, const QColor& inColor)
        : icon(std::move(shape))
        , color(inColor)
    {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(area, scaledPixmap(area.size() * scale, mode, state, scale));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap
    scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        QPixmap shape = icon.pixmap(size, 1, mode, state);
        QPainter painter(&shape);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(shape.rect(), color);
        painter.end();
        shape.setDevicePixelRatio(scale);
        return shape;
    }

    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return icon.availableSizes(mode, state);
    }

    [[nodiscard]] QIconEngine* clone() const override { return new PaintedTemplate(*this); }

    QString key() const override { return QStringLiteral("PaintedTemplate"); }

private:
    QIcon icon;
    QColor color;
};

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
    return icon.isMask() ? QIcon(new PaintedTemplate(icon, color)) : icon;
}

} // namespace orlimo
