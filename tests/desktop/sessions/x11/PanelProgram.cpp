// A panel that shows status notifier items, of which nothing can be seen: it does with its one item
// what its standard input asks, a line each, and answers each with a line. With the argument
// "without a host" it is at first only the watcher that panels bring along.

#include "tests/desktop/sessions/StatusNotifierWatcher.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>

#include <unistd.h>

namespace orlimo {
namespace {

void say(const std::string& line)
{
    (void)std::puts(line.c_str());
    (void)std::fflush(stdout);
}

std::string executeCommand(StatusNotifierWatcher& watcher, const std::string& command)
{
    constexpr std::string_view choose = "choose ";
    if (command.starts_with(choose)) {
        return watcher.choose(QString::fromStdString(command.substr(choose.size())));
    }
    const std::map<std::string, std::function<std::string()>> commands{
        {"items", [&] { return std::to_string(watcher.items().size()); }},
        {"activate", [&] { return watcher.activate(); }},
        {"icon name", [&] { return watcher.iconName(); }},
        {"icon sizes", [&] { return watcher.iconSizes(); }},
        {"menu", [&] { return watcher.menu(); }},
        {"host comes",
         [&] {
             watcher.setHost(true);
             return "done";
         }},
        {"host goes",
         [&] {
             watcher.setHost(false);
             return "done";
         }},
    };
    return commands.at(command)();
}

int run(bool withHost)
{
    StatusNotifierWatcher watcher(QDBusConnection::sessionBus(), withHost);
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &watcher, [&watcher] {
        std::string command;
        if (std::getline(std::cin, command)) {
            say(executeCommand(watcher, command));
        } else {
            QCoreApplication::quit();
        }
    });
    say("ready");
    return QCoreApplication::exec();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return orlimo::run(argc < 2);
}
