#include "app/CodeLabel.h"

#include "controls/LayoutMetrics.h"

namespace orlimo {

CodeLabel::CodeLabel()
{
    QFont systemFont;
    systemFont.setPixelSize(fontPixelSize);
    systemFont.setWeight(QFont::ExtraBold);
    systemFont.setLetterSpacing(QFont::AbsoluteSpacing, kerning);
    setFont(systemFont);
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAlignment(Qt::AlignCenter);
    setContentsMargins(0, topPadding, 0, 0);
    setFixedHeight(topPadding + metrics::lineHeight(fontPixelSize));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

} // namespace orlimo
