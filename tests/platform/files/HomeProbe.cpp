// A program that reads and stores what belongs to its user, for tests that need another process or
// another home than their own.

#include "platform/preferences/UserDefaults.h"
#include "platform/process/UserDatabase.h"

#include <QCoreApplication>

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace orlimo {
namespace {

int readDefault(const std::string& key)
{
    (void)std::puts(standardUserDefaults().boolForKey(key) ? "true" : "false");
    return 0;
}

int writeDefault(const std::string& key, const std::string& value)
{
    standardUserDefaults().setBool(value == "true", key);
    return 0;
}

/// What the user database says of whoever runs the process.
int printHomeOfUser()
{
    const auto entry = currentUserEntry();
    if (entry) {
        (void)std::puts(("home " + entry->homeDirectory.value_or("absent")).c_str());
    } else {
        (void)std::puts("no entry");
    }
    return 0;
}

int run(const std::vector<std::string>& arguments)
{
    const std::map<std::string, std::function<int()>> commands{
        {"home-of-user", printHomeOfUser},
        {"read-default", [&] { return readDefault(arguments.at(1)); }},
        {"write-default", [&] { return writeDefault(arguments.at(1), arguments.at(2)); }},
    };
    return commands.at(arguments.at(0))();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return orlimo::run({argv + 1, argv + argc});
}
