#include "platform/MenuBarExtra.h"
#include "platform/SharedApplication.h"
#include "platform/linux/MenuBarWindow.h"
#include "platform/linux/TrayIcon.h"

#include <optional>
#include <utility>

namespace orlimo {

namespace {

/// An icon in the tray and its window.
class TrayMenuBarExtra final : public MenuBarExtra
{
public:
    TrayMenuBarExtra(ContentBuilder builder, const QIcon& label)
        : makeContent(std::move(builder))
        , icon(
              label,
              {.toggle = [this] { window().toggle(); },
               .open = [this] { open(); },
               .quit = [] { sharedApplication().terminate(); }})
    {}

    void open() override { window().open(); }

    void close() override
    {
        if (menuBarWindow) {
            menuBarWindow->close();
        }
    }

    [[nodiscard]] bool isOpen() const override { return menuBarWindow && menuBarWindow->isOpen(); }

private:
    MenuBarWindow& window()
    {
        if (!menuBarWindow) {
            content = makeContent();
            menuBarWindow.emplace(*content, [this] { return icon.geometry(); });
        }
        return *menuBarWindow;
    }

    ContentBuilder makeContent;
    std::unique_ptr<QWidget> content;
    std::optional<MenuBarWindow> menuBarWindow;
    TrayIcon icon;
};

} // namespace

std::unique_ptr<MenuBarExtra> MenuBarExtra::create(ContentBuilder makeContent, const QIcon& label)
{
    return std::make_unique<TrayMenuBarExtra>(std::move(makeContent), label);
}

} // namespace orlimo
