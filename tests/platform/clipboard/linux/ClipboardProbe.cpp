// A program without a window that sets the clipboard as Orlimo does. Each line of standard input is
// a command, and each gets one line in response: "text TEXT" and "digits COUNT" set the clipboard,
// "platform" prints the name of Qt's platform.

#include "platform/clipboard/Pasteboard.h"
#include "platform/desktop/QtArguments.h"
#include "platform/process/StandardStreams.h"

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

std::string put(const std::string& text)
{
    generalPasteboard().declareTypes({PasteboardType::string});
    generalPasteboard().setString(text, PasteboardType::string);
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

std::string responseTo(const std::string& line)
{
    const std::string command = line.substr(0, line.find(' '));
    const std::string rest = line.size() > command.size() ? line.substr(command.size() + 1) : "";
    if (command == "text") {
        return put(rest);
    }
    if (command == "digits") {
        return put(digits(std::stoul(rest)));
    }
    return command == "platform" ? QGuiApplication::platformName().toStdString() : "what?";
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    orlimo::prepareStandardStreams();
    orlimo::QtArguments arguments(argc, argv);
    const QGuiApplication application(arguments.count(), arguments.values());
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &input, [] {
        std::string line;
        if (std::getline(std::cin, line)) {
            orlimo::say(orlimo::responseTo(line));
        } else {
            QGuiApplication::quit();
        }
    });
    return QGuiApplication::exec();
}
