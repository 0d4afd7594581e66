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
    /// `minTextWidth`: the minimum width of the text's frame, in points; 0 for no frame.
    OptionRow(const QString& text, bool on, int minTextWidth = 0);

    [[nodiscard]] Switch& toggle() const { return *switchControl; }
    [[nodiscard]] TextLabel& text() const { return *label; }

    /// Around the row's content, in points.
    static constexpr int padding = 7;

private:
    TextLabel* label;
    Switch* switchControl;
};

} // namespace orlimo
