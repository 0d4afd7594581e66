#include "platform/desktop/Workspace.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace orlimo {

bool openUrl(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

void orderFrontRegardless(QWidget& window)
{
    window.raise();
}

std::optional<QRect> mainScreenFrame()
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    // While every monitor is unplugged Qt keeps a placeholder screen without an area.
    if (screen == nullptr || screen->geometry().isEmpty()) {
        return std::nullopt;
    }
    return screen->geometry();
}

QRectF fromSystemCoordinates(const QRectF& rectangle)
{
    return rectangle;
}

} // namespace orlimo
