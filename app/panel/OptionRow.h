#pragma once

#include <QWidget>

namespace orlimo {

class Switch;
class TextLabel;

/// A text at the leading edge and its switch at the trailing one, announced as the switch under
/// that text.
class OptionRow : public QWidget
{
    Q_OBJECT

public:
    /// `minTextWidth`: how wide the text's frame is at the least, in points; 0 for no frame.
    OptionRow(const QString& text, bool on, int minTextWidth = 0);

    [[nodiscard]] Switch& toggle() const { return *switchControl; }
    [[nodiscard]] TextLabel& text() const { return *label; }

    /// The least width of a framed text, and what surrounds the row, in points.
    static constexpr int framedTextWidth = 120;
    static constexpr int padding = 7;

private:
    TextLabel* label;
    Switch* switchControl;
};

} // namespace orlimo
