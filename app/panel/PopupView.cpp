#include "app/panel/PopupView.h"

#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "app/panel/PanelSwitches.h"
#include "controls/GroupBox.h"
#include "controls/Switch.h"
#include "controls/SymbolLabel.h"
#include "controls/painting/LayoutMetrics.h"
#include "platform/process/LogLine.h"
#include "platform/threads/MainThread.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include <utility>

namespace orlimo {

namespace {

constexpr int groupSpacing = 25;
constexpr int titleFontSize = 15;

SymbolLabel* makeTitle(const QString& text, const QString& symbolName, const SystemSymbols& symbols)
{
    return new SymbolLabel(text, symbolName, symbols, titleFontSize, grayColor);
}

} // namespace

PopupView::PopupView(std::shared_ptr<Message> controller, PanelServices panelServices)
    : message(std::move(controller))
    , services(std::move(panelServices))
{
    requireMainThread();
    auto* stack = new QVBoxLayout(this);
    constexpr int padding = metrics::defaultPadding;
    stack->setContentsMargins(padding, padding, padding, padding);
    stack->setSpacing(groupSpacing);
    stack->addWidget(makeCaptureOptions());
    stack->addWidget(makeLatestCode());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

GroupBox* PopupView::makeCaptureOptions()
{
    auto* group = new GroupBox(makeTitle(
        tr("Capture Options"), QStringLiteral("slider.horizontal.2.square"), services.symbols));
    group->setObjectName(QStringLiteral("captureOptions"));

    for (const PanelSwitch& panelSwitch : panelSwitches) {
        group->addView(makeOption(panelSwitch));
    }
    return group;
}

OptionRow* PopupView::makeOption(const PanelSwitch& panelSwitch)
{
    const std::string_view key = panelSwitch.preferenceKey;
    auto* row = new OptionRow(
        tr(panelSwitch.text), services.userDefaults.boolForKey(key), panelSwitch.minTextWidth);
    row->toggle().setObjectName(QLatin1String(key.data(), static_cast<qsizetype>(key.size())));
    connect(&row->toggle(), &Switch::toggled, this, [this, key](bool on) {
        requireMainThread();
        services.userDefaults.setBool(on, key);
        if (key == preference::loginItemEnabled) {
            services.setLaunchAtLogin(on);
        }
    });
    return row;
}

GroupBox* PopupView::makeLatestCode()
{
    auto* group = new GroupBox(
        makeTitle(tr("Latest Code"), QStringLiteral("ellipsis.bubble.fill"), services.symbols));
    group->setObjectName(QStringLiteral("latestCode"));
    codeLabel = new CodeLabel;
    codeLabel->setObjectName(QStringLiteral("verificationCode"));
    group->addView(codeLabel);
    auto* copyButton = new CopyButton(tr("Copy"));
    copyButton->setObjectName(QStringLiteral("copy"));
    connect(copyButton, &CopyButton::clicked, this, &PopupView::copyCode);
    group->addView(copyButton, Qt::AlignHCenter);
    return group;
}

void PopupView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // The window system's own hiding and showing, of a workspace for example, is no appearance.
    if (!event->spontaneous()) {
        appear();
    }
}

void PopupView::appear()
{
    requireMainThread();
    writeLogLine("Opened PopupWindow : APPEAR");
    if (auto found = message->checkMessages()) {
        code = std::move(*found);
        codeLabel->setCode(QString::fromStdString(code));
    }
}

void PopupView::copyCode()
{
    requireMainThread();
    services.pasteboard.declareTypes({PasteboardType::string});
    services.pasteboard.setString(code, PasteboardType::string);
}

} // namespace orlimo
