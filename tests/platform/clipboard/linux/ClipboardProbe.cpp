// A program without a window that sets the clipboard as Orlimo does. Each line of standard input is
// a command, and each gets one line in response: "text TEXT" and "digits COUNT" set the clipboard,
// "platform" prints the name of Qt's platform.

#include "platform/clipboard/Pasteboard.h"
#include "platform/process/StandardStreams.h"
#include "platform/services/Session.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <iostream>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

/// 0123456789012…, so that a lost or repeated part is noticed.
std::string digits(std::size_t count)
{
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += static_cast<char>('0' + index % 10);
    }
    return text;
}

std::string responseTo(const std::string& line, Pasteboard& pasteboard)
{
    const std::string command = line.substr(0, line.find(' '));
    const std::string rest = line.size() > command.size() ? line.substr(command.size() + 1) : "";
    if (command == "platform") {
        return QGuiApplication::platformName().toStdString();
    }
    pasteboard.declareTypes({PasteboardType::string});
    pasteboard.setString(
        command == "digits" ? digits(std::stoul(rest)) : rest, PasteboardType::string);
    return "done";
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    orlimo::prepareStandardStreams();
    orlimo::Session session = orlimo::detectSession(argc, argv);
    const QGuiApplication application(session.arguments.count(), session.arguments.values());
    const auto pasteboard = session.makePasteboard();
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&pasteboard] {
        std::string line;
        if (std::getline(std::cin, line)) {
            // NOLINTNEXTLINE(performance-avoid-endl): the test waits for it
            std::cout << orlimo::responseTo(line, *pasteboard) << std::endl;
        } else {
            QGuiApplication::quit();
        }
    });
    return QGuiApplication::exec();
}
