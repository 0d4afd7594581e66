#include "app/OptionRow.h"

#include "controls/LayoutMetrics.h"
#include "controls/Spacer.h"
#include "controls/Switch.h"
#include "controls/TextLabel.h"

#include <QHBoxLayout>

namespace orlimo {

OptionRow::OptionRow(const QString& text, bool on, int leastTextWidth)
    : label(new TextLabel(text, metrics::bodyFontSize))
    , onOff(new Switch)
{
    label->setMinimumWidth(leastTextWidth);
    onOff->setChecked(on);
    onOff->setAccessibleName(text);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(metrics::defaultSpacing);
    row->addWidget(label, 0, Qt::AlignVCenter);
    row->addWidget(new Spacer(Qt::Horizontal), 1);
    row->addWidget(onOff, 0, Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

} // namespace orlimo
