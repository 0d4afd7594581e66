#pragma once

#include <QFont>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QTextLayout>

#include <memory>

class QPainter;

namespace orlimo {

class PixelGrid;

/// A text laid out on lines of a fixed height, `metrics::lineHeight` of the font's size.
class TextBlock
{
public:
    /// One line, as wide as it comes.
    TextBlock(const QString& text, const QFont& font);

    /// Wrapped at word boundaries to `width` points, on lines of about the same length, each in the
    /// middle of the block. No line begins with ">".
    [[nodiscard]] static TextBlock wrapped(const QString& text, const QFont& font, double width);

    /// One line, in a font made smaller where that is needed to fit `width` points.
    [[nodiscard]] static TextBlock fitted(const QString& text, const QFont& font, double width);

    /// The widest line's width and all lines' height.
    [[nodiscard]] QSizeF size() const;
    [[nodiscard]] int lineCount() const;
    /// The text on a line, counted from 0.
    [[nodiscard]] QString line(int number) const;
    [[nodiscard]] const QFont& font() const { return usedFont; }

    /// Draws it in the painter's pen. Lines begin at the leading edge of the block; glyphs stand in
    /// the middle of their line, whatever leading the font has, and inside the pixels that belong
    /// to the line, however many pixels there are to a point.
    void draw(QPainter& painter, QPointF topLeft) const;

private:
    void layOut(double width, QTextOption::WrapMode wrapMode);
    void centerLines();
    /// Where the block's top left corner goes for one line to stand in its pixels.
    [[nodiscard]] QPointF originOf(int number, QPointF topLeft, const PixelGrid& grid) const;

    QFont usedFont;
    std::unique_ptr<QTextLayout> layout;
};

} // namespace orlimo
