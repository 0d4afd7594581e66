#include "platform/desktop/Screen.h"

#include <QGuiApplication>
#include <QScreen>

namespace orlimo {

std::optional<QRect> mainScreenFrame()
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    // While every monitor is unplugged the toolkit keeps a screen without an area in their place.
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
