#pragma once

#include <QLabel>

namespace orlimo {

/// The verification code in large type, shown as it is, to be selected and copied by hand as well.
class CodeLabel : public QLabel
{
    Q_OBJECT

public:
    CodeLabel();

    static constexpr int fontPixelSize = 24;
    /// Between the digits, in points.
    static constexpr double kerning = 3;
    /// Above the code, in points.
    static constexpr int topPadding = 20;
};

} // namespace orlimo
