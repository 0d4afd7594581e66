#include "app/panel/CodeLabel.h"

#include "controls/painting/LayoutMetrics.h"

#include <QFontMetricsF>
#include <QHideEvent>

#include <algorithm>
#include <cmath>

namespace orlimo {

CodeLabel::CodeLabel()
{
    QFont systemFont;
    systemFont.setPixelSize(fontPixelSize);
    systemFont.setWeight(QFont::ExtraBold);
    systemFont.setLetterSpacing(QFont::AbsoluteSpacing, kerning);
    setFont(systemFont);
    setTextFormat(Qt::PlainText);
    // Selecting by the keyboard would show a caret, which looks like one more digit.
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setAlignment(Qt::AlignCenter);
    centerInk();
    setFixedHeight(topPadding + metrics::lineHeight(fontPixelSize));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void CodeLabel::setCode(const QString& code)
{
    if (text() != code) {
        setSelection(0, 0);
        setText(code);
        centerInk();
    }
}

void CodeLabel::hideEvent(QHideEvent* event)
{
    QLabel::hideEvent(event);
    // The window system's own hiding, of a workspace for example, closes nothing.
    if (!event->spontaneous()) {
        setSelection(0, 0);
    }
}

void CodeLabel::centerInk()
{
    // The text is laid out with the kerning after the last digit too, and digits have more space on
    // one side than on the other.
    const QFontMetricsF metrics(font());
    const QRectF ink = metrics.tightBoundingRect(text());
    const double surplus = metrics.horizontalAdvance(text()) - ink.left() - ink.right();
    const int margin = text().isEmpty() ? 0 : static_cast<int>(std::lround(surplus));
    setContentsMargins(std::max(0, margin), topPadding, std::max(0, -margin), 0);
}

} // namespace orlimo
