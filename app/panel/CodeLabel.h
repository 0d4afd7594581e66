#pragma once

#include <QLabel>

namespace orlimo {

/// The verification code in large type, shown as it is, with its ink in the middle of the label. It
/// can be selected with the pointer, and copied by hand as well; what is selected is forgotten when
/// the label is hidden or shows another code. Main thread.
class CodeLabel : public QLabel
{
    Q_OBJECT

public:
    CodeLabel();

    /// Shows `code` from now on.
    void setCode(const QString& code);

    static constexpr int fontPixelSize = 24;
    /// Between the digits, in points.
    static constexpr double kerning = 3;
    /// Above the code, in points.
    static constexpr int topPadding = 20;

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void centerInk();
};

} // namespace orlimo
