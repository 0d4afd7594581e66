#include "app/panel/PopupView.h"

#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "capture/PreferenceKeys.h"
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
    , capturingEnabled(services.userDefaults.boolForKey(preference::capturingEnabled))
    , fourDigitInclude(services.userDefaults.boolForKey(preference::fourDigitInclude))
    , loginItemEnabled(services.userDefaults.boolForKey(preference::loginItemEnabled))
{
    requireMainThread();
    auto* stack = new QVBoxLayout(this);
    constexpr int padding = metrics::defaultPadding;
    stack->setContentsMargins(padding, padding, padding, padding);
    stack->setSpacing(groupSpacing);
    stack->addWidget(makeCaptureOptions());
    stack->addWidget(makeLatestCode());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    showState();
    connect(message.get(), &Message::objectWillChange, this, &PopupView::showState);
}

GroupBox* PopupView::makeCaptureOptions()
{
    auto* group = new GroupBox(makeTitle(
        tr("Capture Options"), QStringLiteral("slider.horizontal.2.square"), services.symbols));
    group->setObjectName(QStringLiteral("captureOptions"));

    group->addView(
        makeOption(tr("Auto Copy to Clipboard"), preference::capturingEnabled, capturingEnabled));
    group->addView(makeOption(
        tr("Include 4 digit code"),
        preference::fourDigitInclude,
        fourDigitInclude,
        OptionRow::framedTextWidth));
    auto* loginItem = makeOption(
        tr("Launch at login"),
        preference::loginItemEnabled,
        loginItemEnabled,
        OptionRow::framedTextWidth);
    // After the preference has been stored: connections are served in the order they were made.
    connect(&loginItem->toggle(), &Switch::toggled, this, [this](bool on) {
        services.setLaunchAtLogin(on);
    });
    group->addView(loginItem);
    return group;
}

OptionRow* PopupView::makeOption(
    const QString& text, std::string_view preferenceKey, bool& state, int minTextWidth)
{
    auto* row = new OptionRow(text, state, minTextWidth);
    row->toggle().setObjectName(
        QLatin1String(preferenceKey.data(), static_cast<qsizetype>(preferenceKey.size())));
    connect(&row->toggle(), &Switch::toggled, this, [this, preferenceKey, &state](bool on) {
        requireMainThread();
        state = on;
        services.userDefaults.setBool(on, preferenceKey);
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
    copyButton = new CopyButton(tr("Copy"));
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
        showState();
    }
}

void PopupView::copyCode()
{
    requireMainThread();
    services.pasteboard.declareTypes({PasteboardType::string});
    services.pasteboard.setString(code, PasteboardType::string);
}

void PopupView::showState()
{
    codeLabel->setCode(QString::fromStdString(code));
}

} // namespace orlimo
