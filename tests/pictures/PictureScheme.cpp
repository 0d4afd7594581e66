#include "tests/pictures/PictureScheme.h"

#include <QString>

namespace orlimo {

namespace {

QPalette paletteOf(QColor window, QColor text, QColor base, QColor accent)
{
    QPalette palette(
        text, window, window.lighter(), window.darker(), window.darker(120), text, base);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

std::optional<QPalette> desktopPalette(const QString& scheme)
{
    const QColor accent(53, 132, 228);
    if (scheme == QLatin1String("light")) {
        return paletteOf(QColor(246, 246, 248), QColor(29, 29, 31), Qt::white, accent);
    }
    if (scheme == QLatin1String("dark")) {
        return paletteOf(QColor(36, 37, 41), QColor(242, 242, 245), QColor(28, 29, 32), accent);
    }
    if (scheme == QLatin1String("black-on-white")) {
        return paletteOf(Qt::white, Qt::black, Qt::white, accent);
    }
    if (scheme == QLatin1String("white-on-black")) {
        return paletteOf(Qt::black, Qt::white, Qt::black, accent);
    }
    return std::nullopt;
}

} // namespace orlimo
