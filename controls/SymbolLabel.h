#pragma once

#include "controls/painting/Colors.h"
#include "platform/desktop/SystemSymbol.h"

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>

namespace orlimo {

class TextLabel;

/// A system symbol and a text beside it, both in the same size and color. Announced as its text.
class SymbolLabel : public QWidget
{
    Q_OBJECT

public:
    SymbolLabel(
        const QString& text,
        QString systemSymbolName,
        SystemSymbols systemSymbols,
        int fontPixelSize,
        PaletteColor color = textColor);

    [[nodiscard]] const TextLabel& textLabel() const { return *label; }
    [[nodiscard]] const QString& symbolName() const { return symbol; }
    /// Where the symbol is drawn.
    [[nodiscard]] QRect symbolArea() const;

    /// Between the symbol and the text, in points.
    static constexpr int gap = 6;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The symbol as it was last painted: drawing it takes longer than all else in the label.
    struct CachedSymbol
    {
        QColor color;
        qreal devicePixelRatio = 0;
        QPixmap pixmap;
    };

    [[nodiscard]] const QPixmap& symbolPixmap();

    CachedSymbol cachedSymbol;
    QString symbol;
    SystemSymbols symbols;
    PaletteColor colorOf;
    TextLabel* label;
};

} // namespace orlimo
