// A program that logs, and that reads and stores what belongs to its user, for tests that need
// another process or another home than their own.

#include "platform/preferences/UserDefaults.h"
#include "platform/process/LogLine.h"
#include "platform/process/UserDatabase.h"

#include <QCoreApplication>

#include <cstdio>
#include <string>
#include <vector>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const std::string& command = arguments.at(0);
    if (command == "write-default") {
        orlimo::standardUserDefaults().setBool(arguments.at(2) == "true", arguments.at(1));
    } else if (command == "read-default") {
        const bool value = orlimo::standardUserDefaults().boolForKey(arguments.at(1));
        (void)std::puts(value ? "true" : "false");
    } else if (command == "home-of-user") {
        const auto entry = orlimo::currentUserEntry();
        (void)std::puts(
            entry ? ("home " + entry->homeDirectory.value_or("absent")).c_str() : "no entry");
    } else if (command == "log") {
        orlimo::writeLogLine(arguments.at(1));
    } else {
        return 2;
    }
    return 0;
}
