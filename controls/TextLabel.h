#pragma once

#include "controls/painting/Colors.h"

#include <QFont>
#include <QLabel>

namespace orlimo {

class TextBlock;

/// A text in the system font at a fixed size, on lines of a fixed height. Never clipped and never
/// elided: where its width is not enough for it, the font shrinks until it is.
class TextLabel : public QLabel
{
    Q_OBJECT

public:
    /// How many lines the text may take.
    enum class Lines {
        one,
        asNeeded, ///< wrapped at word boundaries to the label's width
    };

    TextLabel(
        const QString& text,
        int fontPixelSize,
        PaletteColor textColor = orlimo::textColor,
        QFont::Weight weight = QFont::Normal,
        Lines lineCount = Lines::one);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

    /// The area within the label that the lines take as they are painted now.
    [[nodiscard]] QRectF textArea() const;

    [[nodiscard]] int fontPixelSize() const { return font().pixelSize(); }
    [[nodiscard]] QColor paintedColor() const { return color(palette()); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] TextBlock block() const;
    /// Laying out is most of the work: who has the block hands it in.
    [[nodiscard]] QRectF areaOf(const TextBlock& textBlock) const;

    PaletteColor color;
    Lines lines;
};

} // namespace orlimo
