#pragma once

#include "app/panel/StatusMenuView.h"
#include "tests/app/RecordingApplication.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <QList>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// The one descendant of that type with that name. A test failure, and the end of the program,
/// where there is none.
template <class View> View& named(const QWidget& ancestor, const char* name)
{
    auto* view = ancestor.findChild<View*>(QLatin1String(name));
    if (view == nullptr) {
        ADD_FAILURE() << "there is no " << name;
        std::abort();
    }
    return *view;
}

/// A message store of the test's own, and views that work on preferences, a pasteboard, a login
/// item and an application which record their calls.
class ViewTestBase : public MessageTestBase
{
protected:
    [[nodiscard]] PanelServices panelServices() { return menuServices().panel; }

    [[nodiscard]] MenuServices menuServices()
    {
        return {
            .panel =
                {.userDefaults = preferences,
                 .pasteboard = pasteboard,
                 .setLaunchAtLogin =
                     [this](bool enabled) {
                         loginItem.emplace_back(enabled ? "enable" : "disable");
                     },
                 .symbols = {.draw = systemSymbol, .size = systemSymbolSize}},
            .application = [this]() -> SharedApplication& { return application; },
            .openUrl =
                [this](const QUrl& url) {
                    opened.append(url);
                    return true;
                },
            .website = "https://orlimo.example/"};
    }

    /// The menu-bar window's content, shown while the newest message holds `code`; without its log
    /// lines.
    [[nodiscard]] std::unique_ptr<QWidget> shownMenu(const std::string& code = "482913")
    {
        if (!code.empty()) {
            store.appendText("Your code is " + code + ".");
        }
        return shownMenuOn(menuServices());
    }

    /// The same on other services, while the newest message is what it is.
    [[nodiscard]] std::unique_ptr<QWidget> shownMenuOn(const MenuServices& services)
    {
        auto message = watching();
        const OutputCapture swallowed;
        auto menu = std::make_unique<StatusMenuView>(std::move(message), services);
        showActive(*menu);
        return menu;
    }

    MemoryUserDefaults preferences;
    RecordingPasteboard pasteboard;
    /// Each change of the login item so far: "enable" or "disable".
    std::vector<std::string> loginItem;
    RecordingApplication application;
    /// Each address that was opened.
    QList<QUrl> opened;
};

} // namespace orlimo
