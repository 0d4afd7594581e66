#pragma once

#include "controls/painting/Colors.h"
#include "platform/desktop/SystemSymbol.h"

#include <QMargins>
#include <QPushButton>

namespace orlimo {

class TextBlock;

/// A button with a text, and a system symbol before it where one is named.
class TextButton : public QPushButton
{
    Q_OBJECT

public:
    enum class Style {
        plain,    ///< nothing but its label, until the pointer or a press is on it
        bordered, ///< on a surface of its own, with an outline, in a bezel around its padding
    };

    struct Look
    {
        Style style = Style::bordered;
        int fontPixelSize = 13;
        /// Around the label, part of the button.
        QMargins padding{};
        QString systemSymbolName{};
        /// Needed where a symbol is named.
        SystemSymbols symbols{};
    };

    TextButton(const QString& text, Look buttonLook);

    [[nodiscard]] const Look& look() const { return appearance; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// Where symbol and text are painted.
    [[nodiscard]] QRectF labelArea() const;

    /// Around the label: the look's padding, and the bezel of a bordered button.
    [[nodiscard]] QMargins margins() const;

    /// The surface's corner radius, and what the bordered style adds around the padding, in points.
    static constexpr double cornerRadius = 7;
    static constexpr QMargins bezel{8, 1, 8, 1};

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QColor surface() const;
    [[nodiscard]] bool hasOutline() const;
    [[nodiscard]] QSize symbolSize() const;
    /// The symbol's width with the gap after it.
    [[nodiscard]] int symbolAdvance() const;
    [[nodiscard]] TextBlock block() const;
    /// Laying out is most of the work: who has the block hands it in.
    [[nodiscard]] QRectF areaOf(const TextBlock& textBlock) const;

    Look appearance;
};

} // namespace orlimo
