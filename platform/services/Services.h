#pragma once

#include "platform/clipboard/Pasteboard.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/desktop/SystemSymbol.h"
#include "platform/files/FileHandle.h"
#include "platform/files/VnodeSource.h"
#include "platform/loginitem/LaunchEvent.h"
#include "platform/loginitem/LoginItemService.h"
#include "platform/menubar/MenuBarExtra.h"
#include "platform/preferences/UserDefaults.h"
#include "platform/process/UserDatabase.h"
#include "platform/threads/Queue.h"
#include "platform/threads/UptimeClock.h"

#include <QIcon>
#include <QRect>
#include <QRectF>
#include <QUrl>
#include <QWidget>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace orlimo {

struct Session;

/// Everything that the program asks of its system. Built once, in `main`, and handed down from
/// there: no module names a system's implementation, and tests give modules fakes. What is referred
/// to lives to the end of the process. Main thread, but for what says otherwise where it is
/// declared.
struct Services
{
    UserDefaults& userDefaults;
    Pasteboard& pasteboard;
    LoginItemService& loginItem;
    Queue& mainQueue;
    Queue& backgroundQueue;
    UptimeClock clock;

    std::function<std::optional<std::filesystem::path>()> libraryFolder;
    FileOpener openFile;
    VnodeSourceFactory makeVnodeSource;
    std::function<std::optional<UserEntry>()> userEntry;
    std::function<bool(const std::filesystem::path& folder)> canListDirectory;

    std::function<std::optional<LaunchEvent>()> currentLaunchEvent;
    std::function<void(std::string_view operation, std::string_view reason)> logLoginItemError;

    /// Asked for at each use; a fatal stop where Qt's application object does not exist.
    std::function<SharedApplication&()> application;
    std::function<std::unique_ptr<MenuBarExtra>(
        MenuBarExtra::ContentBuilder makeContent, const QIcon& label, UptimeClock clock)>
        makeMenuBarExtra;
    std::function<bool(const QUrl&)> openUrl;
    std::function<std::optional<QRect>()> mainScreenFrame;
    std::function<QRectF(const QRectF&)> fromSystemCoordinates;
    std::function<void(QWidget&)> orderFrontRegardless;
    SystemSymbols symbols;
};

/// The services of the system that the program was built for, in `session`. Called once, after Qt's
/// application object was made.
[[nodiscard]] Services makeServices(const Session& session);

} // namespace orlimo
