#include "tests/pictures/PictureScheme.h"

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

QPalette desktopPalette(bool dark)
{
    const QColor accent(53, 132, 228);
    return dark ? paletteOf(QColor(36, 37, 41), QColor(242, 242, 245), QColor(28, 29, 32), accent)
                : paletteOf(QColor(246, 246, 248), QColor(29, 29, 31), Qt::white, accent);
}

} // namespace orlimo
