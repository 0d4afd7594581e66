#include "app/panel/OptionRow.h"

#include "controls/Spacer.h"
#include "controls/Switch.h"
#include "controls/TextLabel.h"
#include "controls/accessibility/AccessibleWithoutLabel.h"
#include "controls/painting/LayoutMetrics.h"

#include <QHBoxLayout>

namespace orlimo {

namespace {

QAccessibleInterface* makeAccessibleRow(const QString& /*className*/, QObject* object)
{
    auto* row = qobject_cast<OptionRow*>(object);
    return row == nullptr ? nullptr
                          : new AccessibleWithoutLabel(
                                *row, QAccessible::Client, {}, row->text(), row->toggle());
}

} // namespace

OptionRow::OptionRow(const QString& text, bool on, int minTextWidth)
    : label(new TextLabel(text, metrics::bodyFontSize))
    , switchControl(new Switch)
{
    label->setMinimumWidth(minTextWidth);
    switchControl->setChecked(on);
    switchControl->setAccessibleName(text);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->setSpacing(metrics::defaultSpacing);
    row->addWidget(label, 0, Qt::AlignVCenter);
    row->addWidget(new Spacer(Qt::Horizontal), 1);
    row->addWidget(switchControl, 0, Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    QAccessible::installFactory(makeAccessibleRow);
}

} // namespace orlimo
