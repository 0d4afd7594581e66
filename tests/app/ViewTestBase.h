#pragma once

#include "app/panel/MenuServices.h"
#include "app/panel/PanelServices.h"
#include "app/panel/StatusMenuView.h"
#include "tests/app/RecordingApplication.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/MessageTestBase.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/support/widgets/QtPrinting.h"

#include <QList>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
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
    [[nodiscard]] PanelServices panelServices();
    [[nodiscard]] MenuServices menuServices();

    /// The menu-bar window's content, shown while the newest message holds `code`; without its log
    /// lines.
    [[nodiscard]] std::unique_ptr<QWidget> shownMenu(const std::string& code = "482913");

    MemoryUserDefaults preferences;
    RecordingPasteboard pasteboard;
    /// Each change of the login item so far: "enable" or "disable".
    std::vector<std::string> loginItem;
    RecordingApplication application;
    /// Each address that was opened.
    QList<QUrl> opened;
};

} // namespace orlimo
