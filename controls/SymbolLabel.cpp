#include "controls/SymbolLabel.h"

#include "controls/TextLabel.h"
#include "controls/painting/LayoutMetrics.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

#include <utility>

namespace orlimo {

SymbolLabel::SymbolLabel(
    const QString& text,
    QString systemSymbolName,
    SystemSymbols systemSymbols,
    int fontPixelSize,
    PaletteColor color)
    : symbol(std::move(systemSymbolName))
    , symbols(std::move(systemSymbols))
    , colorOf(color)
    , label(new TextLabel(text, fontPixelSize, color))
{
    auto* row = new QHBoxLayout(this);
    const QSize symbolSize = symbols.size(symbol, fontPixelSize);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addSpacing(symbolSize.isEmpty() ? 0 : symbolSize.width() + gap);
    row->addWidget(label);
    setFixedHeight(metrics::lineHeight(fontPixelSize));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QRect SymbolLabel::symbolArea() const
{
    const QSize size = symbols.size(symbol, label->fontPixelSize());
    const QRect leading(QPoint(0, (height() - size.height()) / 2), size);
    return QStyle::visualRect(layoutDirection(), rect(), leading);
}

const QPixmap& SymbolLabel::symbolPixmap()
{
    const QColor color = colorOf(palette());
    const qreal ratio = devicePixelRatioF();
    if (cachedSymbol.color != color || cachedSymbol.devicePixelRatio != ratio) {
        cachedSymbol = {color, ratio, symbols.draw(symbol, label->fontPixelSize(), color, ratio)};
    }
    return cachedSymbol.pixmap;
}

void SymbolLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).drawPixmap(symbolArea().topLeft(), symbolPixmap());
}

} // namespace orlimo
