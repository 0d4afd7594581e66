#include "app/MenuBarIcon.h"
#include "app/ModuleServices.h"
#include "app/guidance/GuidanceWindow.h"
#include "app/guidance/HelperView.h"
#include "app/panel/StatusMenuView.h"
#include "capture/Message.h"
#include "capture/Preferences.h"
#include "platform/preferences/UserDefaults.h"
#include "platform/services/Session.h"
#include "resources/translations/TranslationCatalogue.h"
#include "sample/SampleStore.h"
#include "tests/support/widgets/Palettes.h"

#include <QApplication>
#include <QDir>
#include <QTest>

#include <filesystem>
#include <iostream>
#include <map>

// Takes pictures of the windows as they stand on the display:
//
//   orlimo-pictures FOLDER LANGUAGE light|dark|black-on-white|white-on-black
//
// HOME must be a scratch folder: a message store is made in it. QT_SCALE_FACTOR says how many
// pixels there are to a point, and becomes part of the pictures' names.

namespace {

std::map<QString, QPalette> palettes()
{
    const auto highContrast = orlimo::highContrastPalettes();
    return {
        {QStringLiteral("light"), orlimo::lightPalette()},
        {QStringLiteral("dark"), orlimo::darkPalette()},
        {QStringLiteral("black-on-white"), highContrast.at(0)},
        {QStringLiteral("white-on-black"), highContrast.at(1)}};
}

void makeStore()
{
    const std::filesystem::path messages =
        std::filesystem::path(QDir::homePath().toStdString()) / "Library/Messages";
    std::filesystem::create_directories(messages);
    orlimo::sample::SampleStore store(messages / "chat.db");
    store.append({.text = "Your verification code is 482913."});
}

bool save(QWidget& window, const QString& file)
{
    window.show();
    const bool isSaved = QTest::qWaitForWindowExposed(&window) && window.grab().save(file);
    if (!isSaved) {
        std::cerr << "orlimo-pictures: cannot show the window or write " << file.toStdString()
                  << '\n';
    }
    return isSaved;
}

} // namespace

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QString scheme = arguments.value(3);
    if (arguments.size() != 4 || !palettes().contains(scheme)) {
        std::cerr << "Usage: orlimo-pictures FOLDER LANGUAGE "
                     "light|dark|black-on-white|white-on-black\n";
        return 2;
    }
    const QString& language = arguments.at(2);
    orlimo::installTranslations(*qApp, {language});
    QApplication::setPalette(palettes().at(scheme));

    makeStore();
    const orlimo::Services services = orlimo::makeServices(orlimo::detectSession(argc, argv));
    orlimo::writePreferenceDefaults(services.userDefaults);
    services.userDefaults.setBool(false, "fourDigitInclude");
    const auto message = orlimo::Message::create(orlimo::captureServices(services));
    message->registFileObserver();

    const QString ending =
        QStringLiteral("-%1-%2-%3x.png").arg(language, scheme).arg(qApp->devicePixelRatio());
    const QDir folder(arguments.at(1));
    orlimo::StatusMenuView menu(message, orlimo::menuServices(services));
    orlimo::GuidanceWindow guidance(
        new orlimo::HelperView(services.openUrl, services.symbols),
        QRect(QPoint(0, 0), orlimo::GuidanceWindow::contentSize));
    return save(menu, folder.filePath(QStringLiteral("window") + ending)) &&
                   save(guidance, folder.filePath(QStringLiteral("guidance") + ending))
               ? 0
               : 1;
}
