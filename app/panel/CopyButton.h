#pragma once

#include "app/guidance/DrawnView.h"

#include <QPushButton>

namespace orlimo {

/// The button that copies the code: a pill in the accent color, lighter while the pointer is on
/// it, in `CopyButtonStyle`. Only the pill reacts to the pointer, not the padding around it.
class CopyButton : public QPushButton
{
    Q_OBJECT

public:
    explicit CopyButton(const QString& text);

    [[nodiscard]] bool isHovered() const { return isHoverCopyButton; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

    /// The pill, within the button.
    [[nodiscard]] QRect pillArea() const;

    static constexpr QSize pillSize{140, 40};
    static constexpr double pillCornerRadius = 20;
    static constexpr double hoverOpacity = 0.8;
    static constexpr int fontPixelSize = 15;

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override;
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] DrawnView label() const;
    [[nodiscard]] QSize styledSize() const;
    void setHovered(bool hovered);

    bool isHoverCopyButton = false;
};

} // namespace orlimo
