#include "controls/painting/Colors.h"

#include <QPalette>

#include <algorithm>
#include <initializer_list>

namespace orlimo {

namespace {

/// `color`, made darker or lighter, whichever leads further from all of `backgrounds`, by as little
/// as it takes for `contrast` to each.
QColor
contrastingColor(const QColor& color, std::initializer_list<QColor> backgrounds, double contrast)
{
    double darkest = 1;
    double lightest = 0;
    for (const QColor& background : backgrounds) {
        const double luminance = relativeLuminance(background);
        darkest = std::min(darkest, luminance);
        lightest = std::max(lightest, luminance);
    }
    const bool onDark = contrastOfLuminances(lightest, 1) > contrastOfLuminances(darkest, 0);
    const QColor target = onDark ? Qt::white : Qt::black;
    constexpr int steps = 64;
    for (int step = 0; step < steps; ++step) {
        // Rounded to what is painted before it is judged.
        const QColor candidate(mixed(color, target, static_cast<double>(step) / steps).rgb());
        const double luminance = relativeLuminance(candidate);
        if (contrastOfLuminances(luminance, darkest) >= contrast &&
            contrastOfLuminances(luminance, lightest) >= contrast)
        {
            return candidate;
        }
    }
    return target;
}

QColor textOver(const QPalette& palette, double opacity)
{
    return mixed(windowColor(palette), textColor(palette), opacity);
}

/// An outline of this opacity, or of more in a high-contrast palette.
QColor outline(const QPalette& palette, double opacity)
{
    constexpr double highOpacity = 0.6;
    return textOver(palette, isHighContrast(palette) ? highOpacity : opacity);
}

/// As the user chose it.
QColor userAccent(const QPalette& palette)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    return palette.color(QPalette::Accent);
#else
    return palette.color(QPalette::Highlight);
#endif
}

} // namespace

QColor legibleColor(const QColor& color, const QColor& background)
{
    return contrastingColor(color, {background}, legibleContrast);
}

QColor distinctColor(const QColor& color, const QPalette& palette)
{
    return contrastingColor(color, {windowColor(palette), surfaceColor(palette)}, distinctContrast);
}

QColor blended(const QColor& color, const QColor& background)
{
    return mixed(background, color, color.alphaF());
}

QColor mixed(const QColor& from, const QColor& to, double fraction)
{
    const auto component = [fraction](float start, float end) {
        return static_cast<float>(start + (end - start) * fraction);
    };
    return QColor::fromRgbF(
        component(from.redF(), to.redF()),
        component(from.greenF(), to.greenF()),
        component(from.blueF(), to.blueF()));
}

bool isHighContrast(const QPalette& palette)
{
    // Black on white has 21 and yellow on black 19.6; ordinary windows, such as those with black
    // on a light gray, have less than 18.5.
    constexpr double minContrast = 19;
    return contrastRatio(textColor(palette), windowColor(palette)) >= minContrast;
}

QColor windowColor(const QPalette& palette)
{
    return palette.color(QPalette::Window);
}

QColor textColor(const QPalette& palette)
{
    return palette.color(QPalette::WindowText);
}

QColor textColor(const QPalette& palette, float opacity)
{
    QColor color = textColor(palette);
    color.setAlphaF(opacity);
    return color;
}

QColor grayColor(const QPalette& palette)
{
    const QColor gray(142, 142, 147);
    return legibleColor(gray, windowColor(palette));
}

QColor whiteColor(const QPalette& /*palette*/)
{
    return Qt::white;
}

QColor accentColor(const QPalette& palette)
{
    return legibleColor(userAccent(palette), Qt::white);
}

QColor focusRingColor(const QPalette& palette)
{
    return distinctColor(userAccent(palette), palette);
}

QColor separatorColor(const QPalette& palette)
{
    return outline(palette, 0.14);
}

QColor surfaceColor(const QPalette& palette)
{
    return textOver(palette, 0.04);
}

QColor surfaceBorderColor(const QPalette& palette)
{
    return outline(palette, 0.1);
}

QColor controlBorderColor(const QPalette& palette)
{
    return outline(palette, 0.36);
}

} // namespace orlimo
