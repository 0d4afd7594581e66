#include "tests/support/Palettes.h"

#include <QApplication>

namespace orlimo {

namespace {

QPalette paletteOf(const QColor& window, const QColor& text, const QColor& accent)
{
    QPalette palette(
        text, window, window.lighter(), window.darker(), window.darker(), text, window);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

QPalette lightPalette(const QColor& accent)
{
    return paletteOf(QColor(246, 246, 248), QColor(29, 29, 31), accent);
}

QPalette darkPalette(const QColor& accent)
{
    return paletteOf(QColor(36, 37, 41), QColor(242, 242, 245), accent);
}

PaletteChange::PaletteChange(const QPalette& palette)
    : before(QApplication::palette())
{
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
}

PaletteChange::~PaletteChange()
{
    QApplication::setPalette(before);
    QCoreApplication::processEvents();
}

} // namespace orlimo
