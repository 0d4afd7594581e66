// A program without a window that sets the clipboard as Orlimo does. Each line of standard input is
// a command, and each gets one line in response: "text TEXT" and "digits COUNT" set the clipboard,
// "platform" prints the name of Qt's platform.

#include "platform/clipboard/Pasteboard.h"
#include "platform/process/StandardStreams.h"
#include "platform/services/Session.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

void say(const std::string& line)
{
    (void)std::puts(line.c_str());
    (void)std::fflush(stdout);
}

std::string put(const std::string& text, Pasteboard& pasteboard)
{
    pasteboard.declareTypes({PasteboardType::string});
    pasteboard.setString(text, PasteboardType::string);
    return "done";
}

/// 0123456789012…, so that a lost or repeated part is noticed.
std::string digits(std::size_t count)
{
    std::string text;
    text.reserve(count);
    for (std::size_t place = 0; place < count; ++place) {
        text += static_cast<char>('0' + place % 10);
    }
    return text;
}

std::string responseTo(const std::string& line, Pasteboard& pasteboard)
{
    const std::string command = line.substr(0, line.find(' '));
    const std::string rest = line.size() > command.size() ? line.substr(command.size() + 1) : "";
    if (command == "text") {
        return put(rest, pasteboard);
    }
    if (command == "digits") {
        return put(digits(std::stoul(rest)), pasteboard);
    }
    return command == "platform" ? QGuiApplication::platformName().toStdString() : "what?";
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
            orlimo::say(orlimo::responseTo(line, *pasteboard));
        } else {
            QGuiApplication::quit();
        }
    });
    return QGuiApplication::exec();
}
