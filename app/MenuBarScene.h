#pragma once

#include "capture/Message.h"
#include "platform/services/Services.h"

#include <memory>

namespace orlimo {

/// The menu-bar extra in window style: `MenuBarIcon` as its label, `StatusMenuView` as its content,
/// which scrolls on a screen that is lower than it. The content is made when the window first
/// opens: the preference defaults are stored by then. Main thread.
class MenuBarScene
{
public:
    MenuBarScene(std::shared_ptr<Message> controller, const Services& services);

    [[nodiscard]] MenuBarExtra& menuBarExtra() { return *extra; }

private:
    std::unique_ptr<MenuBarExtra> extra;
};

} // namespace orlimo
