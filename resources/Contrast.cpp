#include "resources/Contrast.h"

#include <algorithm>
#include <cmath>

namespace orlimo {

double relativeLuminance(const QColor& color)
{
    const auto linear = [](double component) {
        return component <= 0.04045 ? component / 12.92
                                    : std::pow((component + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrastOfLuminances(double one, double other)
{
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

double contrastRatio(const QColor& one, const QColor& other)
{
    return contrastOfLuminances(relativeLuminance(one), relativeLuminance(other));
}

} // namespace orlimo
