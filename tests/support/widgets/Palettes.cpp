#include "tests/support/widgets/Palettes.h"

#include <QApplication>

namespace orlimo {

namespace {

QPalette paletteOf(const QColor& window, const QColor& text, const QColor& accent)
{
    QPalette palette(
        text, window, window.lighter(), window.darker(), window.darker(), text, window);
    palette.setColor(QPalette::Highlight, accent);
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    palette.setColor(QPalette::Accent, accent);
#endif
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

QPalette guidancePalette(const QColor& accent)
{
    return paletteOf(QColor(32, 33, 38), Qt::white, accent);
}

std::vector<QPalette> highContrastPalettes(const QColor& accent)
{
    return {
        paletteOf(Qt::white, Qt::black, accent),
        paletteOf(Qt::black, Qt::white, accent),
        paletteOf(Qt::black, Qt::yellow, accent)};
}

std::vector<QPalette> allPalettes(const QColor& accent)
{
    auto palettes = highContrastPalettes(accent);
    palettes.insert(
        palettes.end(), {lightPalette(accent), darkPalette(accent), guidancePalette(accent)});
    return palettes;
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
