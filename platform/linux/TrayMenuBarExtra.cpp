#include "platform/MenuBarExtra.h"
#include "platform/SharedApplication.h"
#include "platform/linux/MenuBarWindow.h"
#include "platform/linux/TrayIcon.h"

namespace orlimo {

namespace {

/// An icon in the tray and its window.
class TrayMenuBarExtra final : public MenuBarExtra
{
public:
    TrayMenuBarExtra(QWidget& content, const QIcon& label)
        : window(content, [this] { return icon.geometry(); })
        , icon(
              label,
              {.toggle = [this] { window.toggle(); },
               .open = [this] { window.open(); },
               .quit = [] { sharedApplication().terminate(); }})
    {}

    void open() override { window.open(); }
    void close() override { window.close(); }
    [[nodiscard]] bool isOpen() const override { return window.isOpen(); }

private:
    MenuBarWindow window;
    TrayIcon icon;
};

} // namespace

std::unique_ptr<MenuBarExtra> MenuBarExtra::create(QWidget& content, const QIcon& label)
{
    return std::make_unique<TrayMenuBarExtra>(content, label);
}

} // namespace orlimo
