#pragma once

#include "platform/desktop/macos/AppKitServices.h"
#include "platform/menubar/MenuBarExtra.h"
#include "platform/menubar/MenuBarWindow.h"
#include "platform/menubar/macos/StatusItem.h"
#include "platform/threads/macos/DefaultModeCall.h"

#include <QObject>

#include <memory>
#include <optional>

namespace orlimo {

/// An item in the menu bar and the window below it. Without AppKit only the window. Main thread.
class StatusItemMenuBarExtra final : public MenuBarExtra
{
public:
    StatusItemMenuBarExtra(
        ContentBuilder builder, const QIcon& label, UptimeClock uptimeClock, AppKitServices appKit);
    ~StatusItemMenuBarExtra() override;

    void open() override;
    void openOnRequest() override;
    void openIfNoTray() override;
    void close() override;
    [[nodiscard]] bool isOpen() const override;

private:
    class WindowObserver;

    MenuBarWindow& window();
    void willComeToFront(const QWidget& shown);
    void visibilityDidChange();

    ContentBuilder makeContent;
    UptimeClock clock;
    AppKitServices services;
    std::optional<StatusItem> item;
    std::unique_ptr<QWidget> content;
    std::unique_ptr<WindowObserver> observer;
    std::optional<MenuBarWindow> menuBarWindow;
    /// Updates the item's highlight.
    DefaultModeCall highlighting;
};

} // namespace orlimo
