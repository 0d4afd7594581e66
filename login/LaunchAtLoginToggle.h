#pragma once

#include "controls/Switch.h"
#include "controls/TextLabel.h"
#include "controls/painting/LayoutMetrics.h"
#include "login/LaunchAtLoginObservable.h"
#include "login/LocalizedStringKey.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QScopedValueRollback>
#include <QWidget>

#include <concepts>
#include <functional>
#include <memory>
#include <utility>

namespace orlimo {

/// A switch for starting at login with a label before it. Bound both ways: it shows the system's
/// state whenever it comes into view and again after each change, whoever makes it, and a flick of
/// it sets that state. `Toggle<>` has a text for its label. Main thread.
template <typename Label> class LaunchAtLogin::Toggle : public QWidget
{
public:
    /// With the label that `buildLabel` makes. It is called once, here. The switch is announced
    /// under the name that the label has by then.
    template <std::invocable Builder>
    requires std::convertible_to<std::invoke_result_t<Builder>, std::unique_ptr<Label>>
    explicit Toggle(Builder&& buildLabel)
        : launchAtLoginField(LaunchAtLogin::observable())
        , labelField(
              std::unique_ptr<Label>(std::invoke(std::forward<Builder>(buildLabel))).release())
        , control(new Switch)
    {
        auto* const row = new QHBoxLayout(this);
        row->setContentsMargins({});
        row->setSpacing(metrics::defaultSpacing);
        row->addWidget(labelField);
        row->addWidget(control);
        setFocusProxy(control);
        if (QAccessibleInterface* const accessibleLabel =
                QAccessible::queryAccessibleInterface(labelField)) {
            control->setAccessibleName(accessibleLabel->text(QAccessible::Name));
        }

        showState();
        connect(control, &Switch::toggled, this, [this](bool on) {
            if (!isShowingState) {
                launchAtLoginField.setEnabled(on);
            }
        });
        // Announced before the change: the state is there when control is back in the event loop.
        connect(
            &launchAtLoginField,
            &Observable::objectWillChange,
            this,
            [this] { showState(); },
            Qt::QueuedConnection);
    }

    /// With a text that is looked up here.
    explicit Toggle(const LocalizedStringKey& titleKey) requires std::same_as<Label, TextLabel>
        : Toggle(titleKey.localized())
    {}

    /// With `title` as it is.
    explicit Toggle(const QString& title) requires std::same_as<Label, TextLabel>
        : Toggle([&title] { return std::make_unique<TextLabel>(title, metrics::bodyFontSize); })
    {}

    /// With "Launch at login" as it is, in every language.
    Toggle() requires std::same_as<Label, TextLabel> : Toggle(QStringLiteral("Launch at login")) {}

    /// Always LaunchAtLogin::observable().
    [[nodiscard]] Observable& launchAtLogin() const { return launchAtLoginField; }
    [[nodiscard]] Label& label() const { return *labelField; }

protected:
    void showEvent(QShowEvent* event) override
    {
        showState();
        QWidget::showEvent(event);
    }

private:
    void showState()
    {
        const QScopedValueRollback showing(isShowingState, true);
        control->setChecked(launchAtLoginField.isEnabled());
    }

    Observable& launchAtLoginField;
    Label* labelField;
    Switch* control;
    bool isShowingState = false;
};

} // namespace orlimo
