#include "controls/Colors.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace orlimo {

namespace {

double linearComponent(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor& color)
{
    return 0.2126 * linearComponent(color.redF()) + 0.7152 * linearComponent(color.greenF()) +
           0.0722 * linearComponent(color.blueF());
}

double contrastOfLuminances(double one, double other)
{
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

QColor textOver(const QPalette& palette, double opacity)
{
    return mixed(windowColor(palette), textColor(palette), opacity);
}

} // namespace

double contrastRatio(const QColor& one, const QColor& other)
{
    return contrastOfLuminances(relativeLuminance(one), relativeLuminance(other));
}

QColor legibleColor(const QColor& color, const QColor& background)
{
    const double luminance = relativeLuminance(background);
    const bool onDark = contrastOfLuminances(luminance, 1) > contrastOfLuminances(luminance, 0);
    const QColor goal = onDark ? Qt::white : Qt::black;
    constexpr int steps = 64;
    for (int step = 0; step < steps; ++step) {
        // Rounded to what is painted before it is judged.
        const QColor candidate(mixed(color, goal, static_cast<double>(step) / steps).rgb());
        if (contrastOfLuminances(relativeLuminance(candidate), luminance) >= legibleContrast) {
            return candidate;
        }
    }
    return goal;
}

QColor blended(const QColor& color, const QColor& background)
{
    return mixed(background, color, color.alphaF());
}

QColor mixed(const QColor& from, const QColor& to, double share)
{
    const auto component = [share](float start, float end) {
        return static_cast<float>(start + (end - start) * share);
    };
    return QColor::fromRgbF(
        component(from.redF(), to.redF()),
        component(from.greenF(), to.greenF()),
        component(from.blueF(), to.blueF()));
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
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    const QColor accent = palette.color(QPalette::Accent);
#else
    const QColor accent = palette.color(QPalette::Highlight);
#endif
    return legibleColor(accent, Qt::white);
}

QColor separatorColor(const QPalette& palette)
{
    return textOver(palette, 0.14);
}

QColor surfaceColor(const QPalette& palette)
{
    return textOver(palette, 0.04);
}

QColor surfaceBorderColor(const QPalette& palette)
{
    return textOver(palette, 0.1);
}

} // namespace orlimo
