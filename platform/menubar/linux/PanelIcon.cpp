#include "platform/menubar/linux/PanelIcon.h"

#include "platform/ApplicationIdentity.h"
#include "platform/process/ToQString.h"
#include "resources/IconSquare.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QStandardPaths>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orlimo {

namespace {

/// A template in a color. A size is drawn when it is asked for: hosts want few of them, and the
/// icon is wanted at once when the program starts.
class TintedIconEngine final : public QIconEngine
{
public:
    TintedIconEngine(QIcon shape, const QColor& tint, QString themeName)
        : icon(std::move(shape))
        , color(tint)
        , name(std::move(themeName))
    {}

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        const QRect square = centeredSquare(area);
        painter->drawPixmap(square, scaledPixmap(square.size() * scale, mode, state, scale));
    }

    /// What is painted; a panel that takes the pixels chooses the size itself.
    QSize actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        return squareIn(size.boundedTo(maxSize));
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

    [[nodiscard]] QIconEngine* clone() const override { return new TintedIconEngine(*this); }

    QString key() const override { return QStringLiteral("PaintedTemplate"); }

    QString iconName() override { return name; }

private:
    /// Points.
    static constexpr QSize maxSize{16, 16};

    QIcon icon;
    QColor color;
    QString name;
};

/// How bright a color appears, from 0 to 1, as WCAG 2 defines it.
double relativeLuminance(const QColor& color)
{
    const auto linear = [](double component) {
        return component <= 0.04045 ? component / 12.92
                                    : std::pow((component + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [darker, brighter] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (brighter + 0.05) / (darker + 0.05);
}

bool isDesktop(const QString& desktop, QStringView name)
{
    return desktop.split(u':').contains(name, Qt::CaseInsensitive);
}

} // namespace

QColor panelTextColor(const QString& desktop, const QPalette& palette)
{
    const bool alwaysDark = isDesktop(desktop, u"GNOME") || isDesktop(desktop, u"sway");
    return alwaysDark ? QColor(Qt::white) : palette.color(QPalette::WindowText);
}

QColor colorOnPanel(const QColor& color, const QColor& background)
{
    constexpr double minContrast = 3;
    if (contrast(color, background) >= minContrast) {
        return color;
    }
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return contrast(black, background) > contrast(white, background) ? black : white;
}

QString panelIconName(const QString& desktop)
{
    const QString name = toQString(identity::applicationIdentifier) + QStringLiteral("-symbolic");
    const QString file = QStringLiteral("icons/hicolor/symbolic/apps/%1.svg").arg(name);
    const bool isInstalled =
        !QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty();
    return isInstalled && !isDesktop(desktop, u"sway") ? name : QString();
}

QIcon panelIcon(const QIcon& icon, const QColor& color, const QString& name)
{
    return icon.isMask() ? QIcon(new TintedIconEngine(icon, color, name)) : icon;
}

} // namespace orlimo
