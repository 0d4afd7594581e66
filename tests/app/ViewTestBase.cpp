#include "tests/app/ViewTestBase.h"

#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/WidgetWindow.h"

namespace orlimo {

PanelServices ViewTestBase::panelServices()
{
    return {
        .userDefaults = preferences,
        .pasteboard = pasteboard,
        .setLaunchAtLogin =
            [this](bool enabled) { loginItem.emplace_back(enabled ? "enable" : "disable"); },
        .symbols = {.draw = systemSymbol, .size = systemSymbolSize},
    };
}

MenuServices ViewTestBase::menuServices()
{
    return {
        .panel = panelServices(),
        .application = [this]() -> SharedApplication& { return application; },
        .openUrl =
            [this](const QUrl& url) {
                opened.append(url);
                return true;
            },
        .website = "https://orlimo.example/",
    };
}

std::unique_ptr<QWidget> ViewTestBase::shownMenu(const std::string& code)
{
    if (!code.empty()) {
        store.appendText("Your code is " + code + ".");
    }
    auto message = watching();
    const OutputCapture swallowed;
    auto menu = std::make_unique<StatusMenuView>(std::move(message), menuServices());
    showActive(*menu);
    return menu;
}

} // namespace orlimo
