#include "platform/menubar/linux/PanelIcon.h"

#include "platform/ApplicationIdentity.h"
#include "platform/process/ToQString.h"
#include "resources/Contrast.h"
#include "resources/SquareIconEngine.h"

#include <QStandardPaths>
#include <QStringList>

namespace orlimo {

namespace {

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
    if (contrastRatio(color, background) >= minContrast) {
        return color;
    }
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return contrastRatio(black, background) > contrastRatio(white, background) ? black : white;
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
    if (!icon.isMask()) {
        return icon;
    }
    // The limit holds for what is painted; a panel that takes the pixels chooses the size itself.
    return QIcon(new SquareIconEngine(
        {.draw = [icon](const QSize& pixels) { return icon.pixmap(pixels, 1.0); },
         .availableSizes = icon.availableSizes(),
         .tint = color,
         .maxSize = QSize(16, 16),
         .themeName = name}));
}

} // namespace orlimo
