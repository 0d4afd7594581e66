#pragma once

#include <QApplication>
#include <QPalette>

#include <vector>

namespace orlimo {

inline const QColor usualAccent(53, 132, 228);

[[nodiscard]] inline QPalette
paletteOf(const QColor& window, const QColor& text, const QColor& accent)
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

/// Palettes as a desktop with light or dark windows hands them to its programs.
[[nodiscard]] inline QPalette lightPalette(const QColor& accent = usualAccent)
{
    return paletteOf(QColor(246, 246, 248), QColor(29, 29, 31), accent);
}

[[nodiscard]] inline QPalette darkPalette(const QColor& accent = usualAccent)
{
    return paletteOf(QColor(36, 37, 41), QColor(242, 242, 245), accent);
}

/// What the guidance window makes of either.
[[nodiscard]] inline QPalette guidancePalette(const QColor& accent = usualAccent)
{
    return paletteOf(QColor(32, 33, 38), Qt::white, accent);
}

/// Palettes for people with low vision.
[[nodiscard]] inline std::vector<QPalette> highContrastPalettes(const QColor& accent = usualAccent)
{
    return {
        paletteOf(Qt::white, Qt::black, accent),
        paletteOf(Qt::black, Qt::white, accent),
        paletteOf(Qt::black, Qt::yellow, accent)};
}

/// All of these.
[[nodiscard]] inline std::vector<QPalette> allPalettes(const QColor& accent = usualAccent)
{
    auto palettes = highContrastPalettes(accent);
    palettes.insert(
        palettes.end(), {lightPalette(accent), darkPalette(accent), guidancePalette(accent)});
    return palettes;
}

/// Gives the application another palette for as long as it lives.
class PaletteChange
{
public:
    explicit PaletteChange(const QPalette& palette) { change(palette); }
    PaletteChange(const PaletteChange&) = delete;
    PaletteChange& operator=(const PaletteChange&) = delete;
    ~PaletteChange() { change(before); }

private:
    static void change(const QPalette& palette)
    {
        QApplication::setPalette(palette);
        QCoreApplication::processEvents();
    }

    QPalette before = QApplication::palette();
};

} // namespace orlimo
