#include "app/CommandLine.h"
#include "app/LaunchTurns.h"
#include "app/MenuBarScene.h"
#include "app/OrlimoApp.h"
#include "platform/ApplicationIdentity.h"
#include "platform/SharedApplication.h"
#include "platform/StandardStreams.h"
#include "resources/ImageIcon.h"
#include "resources/translations/TranslationCatalogue.h"

#include <QApplication>

#include <iostream>
#include <string_view>

namespace {

QString fromIdentity(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void nameApplication()
{
    namespace identity = orlimo::identity;
    QApplication::setApplicationName(fromIdentity(identity::applicationName));
    QApplication::setApplicationVersion(fromIdentity(identity::version));
    QApplication::setDesktopFileName(fromIdentity(identity::applicationIdentifier));
    QApplication::setQuitOnLastWindowClosed(false);
}

int runApplication(int argc, char** argv, bool launchedAtLogin)
{
    nameApplication();
    const QApplication application(argc, argv);
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
