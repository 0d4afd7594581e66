#include "app/CommandLine.h"
#include "app/LaunchTurns.h"
#include "app/MenuBarScene.h"
#include "app/OrlimoApp.h"
#include "platform/ApplicationIdentity.h"
#include "platform/SharedApplication.h"
#include "platform/StandardStreams.h"
#include "platform/ToQString.h"
#include "platform/ToolkitArguments.h"
#include "resources/ImageIcon.h"
#include "resources/translations/TranslationCatalogue.h"

#include <QApplication>

#include <iostream>

namespace {

void nameApplication()
{
    namespace identity = orlimo::identity;
    QApplication::setApplicationName(orlimo::toQString(identity::applicationName));
    QApplication::setApplicationVersion(orlimo::toQString(identity::version));
    QApplication::setDesktopFileName(orlimo::toQString(identity::applicationIdentifier));
    QApplication::setQuitOnLastWindowClosed(false);
}

int runApplication(int argc, char** argv, bool launchedAtLogin)
{
    nameApplication();
    orlimo::ToolkitArguments arguments(argc, argv);
    const QApplication application(arguments.count(), arguments.values());
    QApplication::setWindowIcon(orlimo::imageIcon(QStringLiteral("logo")));
    orlimo::installTranslations(*qApp);

    orlimo::OrlimoApp app;
    const auto scene = app.body();
    orlimo::LaunchTurns turns(app.appDelegate(), launchedAtLogin);
    return orlimo::sharedApplication().run(turns);
}

} // namespace

int main(int argc, char* argv[])
{
    using orlimo::CommandLine;
    orlimo::prepareStandardStreams();
    const CommandLine commandLine = CommandLine::parse(argc, argv);
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
    return runApplication(
        argc, argv, commandLine.request == CommandLine::Request::runLaunchedAtLogin);
}
