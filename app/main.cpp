#include "app/CommandLine.h"
#include "app/LaunchLifecycle.h"
#include "app/MenuBarScene.h"
#include "app/ModuleServices.h"
#include "app/OrlimoApp.h"
#include "app/guidance/WindowCloseObserver.h"
#include "login/LaunchAtLogin.h"
#include "platform/ApplicationIdentity.h"
#include "platform/desktop/ColorScheme.h"
#include "platform/desktop/FontPreloading.h"
#include "platform/desktop/SystemArguments.h"
#include "platform/instance/ApplicationInstance.h"
#include "platform/process/StandardStreams.h"
#include "platform/process/ToQString.h"
#include "platform/services/Services.h"
#include "platform/services/Session.h"
#include "resources/translations/TranslationCatalogue.h"

#include <QApplication>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

namespace {

void nameApplication()
{
    namespace identity = orlimo::identity;
    QApplication::setApplicationName(orlimo::toQString(identity::applicationName));
    QApplication::setApplicationVersion(orlimo::toQString(identity::version));
    QApplication::setDesktopFileName(orlimo::toQString(identity::applicationIdentifier));
    QApplication::setQuitOnLastWindowClosed(false);
}

/// By then the icon has its place, and the start nothing left to do.
constexpr std::chrono::milliseconds fontPreloadDelay{500};

/// Runs to the end of the program. `instance` is asked for what later starts want; none when they
/// are none of its business.
int runApplication(
    int argc,
    char** argv,
    bool launchedAtLogin,
    std::unique_ptr<orlimo::ApplicationInstance> instance)
{
    nameApplication();
    orlimo::Session session = orlimo::detectSession(argc, argv);
    const QApplication application(session.arguments.count(), session.arguments.values());
    orlimo::installTranslations(*qApp);

    const orlimo::Services services = orlimo::makeServices(session);
    orlimo::LaunchAtLogin::install(orlimo::loginServices(services));

    orlimo::OrlimoApp app(services);
    const auto scene = app.body();
    orlimo::followColorScheme();
    const auto openOnLaunch = [&scene, &services] {
        // What was asked meanwhile may have been to quit.
        if (!services.application().isTerminating()) {
            scene->menuBarExtra().openIfNoTray();
        }
    };
    std::optional<orlimo::WindowCloseObserver> guidanceObserver;
    QTimer fontPreloadTimer;
    fontPreloadTimer.setSingleShot(true);
    fontPreloadTimer.callOnTimeout(orlimo::preloadFonts);
    orlimo::LaunchLifecycle lifecycle(app.appDelegate(), launchedAtLogin, [&] {
        if (instance != nullptr) {
            instance->onActivation([&scene] { scene->menuBarExtra().openOnRequest(); });
        }
        // One window at a time: without access to the store the guidance comes first.
        QWidget* const guidance = app.appDelegate().secondaryWindow.get();
        if (!launchedAtLogin && guidance != nullptr && guidance->isVisible()) {
            guidanceObserver.emplace(*guidance, openOnLaunch);
        } else if (!launchedAtLogin) {
            openOnLaunch();
        }
        fontPreloadTimer.start(fontPreloadDelay);
    });
    const int status = services.application().run(lifecycle);
    // From here on a later start is the first one.
    instance.reset();
    return status;
}

/// Runs unless the program already runs in this session; that one is shown instead.
int runSingleInstance(int argc, char** argv, bool launchedAtLogin)
{
    using orlimo::ApplicationInstance;
    auto instance = ApplicationInstance::create(launchedAtLogin);
    switch (instance->claim()) {
    case ApplicationInstance::Claim::first:
    case ApplicationInstance::Claim::unmanaged:
        break;
    case ApplicationInstance::Claim::activatedOther:
        if (!launchedAtLogin) {
            std::cerr << "orlimo: already running in this session; its window opens\n"
                      << std::flush;
        }
        return 0;
    case ApplicationInstance::Claim::otherUnresponsive:
        std::cerr << "orlimo: already running in this session, but it does not answer\n"
                  << std::flush;
        return 1;
    }
    return runApplication(argc, argv, launchedAtLogin, std::move(instance));
}

} // namespace

int main(int argc, char* argv[])
{
    using orlimo::CommandLine;
    orlimo::prepareStandardStreams();
    const CommandLine commandLine = CommandLine::parse(argc, argv, orlimo::systemArgumentCount);
    switch (commandLine.request) {
    case CommandLine::Request::print:
        std::cout << commandLine.text << std::flush;
        return 0;
    case CommandLine::Request::refuse:
        std::cerr << commandLine.text << std::flush;
        return 2;
    case CommandLine::Request::run:
    case CommandLine::Request::runLaunchedAtLogin:
        break;
    }
    const bool launchedAtLogin = commandLine.request == CommandLine::Request::runLaunchedAtLogin;
    return commandLine.sideBySide ? runApplication(argc, argv, launchedAtLogin, nullptr)
                                  : runSingleInstance(argc, argv, launchedAtLogin);
}
