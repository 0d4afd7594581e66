// A program that does one thing which the tests need a process of their own for, with an
// application object that comes and goes.

#include "platform/LoginItemService.h"
#include "platform/UnifiedLog.h"
#include "platform/UserDatabase.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>

#include <array>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <syslog.h>

namespace orlimo {
namespace {

/// The application object.
class Application
{
public:
    Application() { application.emplace(count, arguments.data()); }

private:
    std::string name = "probe";
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    std::optional<QCoreApplication> application;
};

int readDefault(const std::string& key)
{
    const Application application;
    (void)std::puts(standardUserDefaults().boolForKey(key) ? "true" : "false");
    return 0;
}

int writeDefault(const std::string& key, const std::string& value)
{
    const Application application;
    standardUserDefaults().setBool(value == "true", key);
    return 0;
}

/// Answers each line of standard input with one line: the login item's status, or how a change of
/// it went.
int serveLoginItem()
{
    const auto say = [](const std::optional<ServiceError>& error) {
        return error ? error->localizedDescription : "done";
    };
    for (std::string command; std::getline(std::cin, command);) {
        LoginItemService& service = mainAppService();
        std::string answer;
        if (command == "status") {
            answer = std::to_string(static_cast<int>(service.status()));
        } else if (command == "register") {
            answer = say(service.registerItem());
        } else if (command == "unregister") {
            answer = say(service.unregisterItem());
        }
        std::cout << answer << std::endl; // NOLINT(performance-avoid-endl): the test waits for it
    }
    return 0;
}

int logErrors(int logMask)
{
    (void)::setlogmask(logMask);
    UnifiedLog::create("org.example.part", "main")->error("Failed to %s: %s", "begin", "100 %\nx");
    UnifiedLog::create("org.example.part", "main")->error("%s%s", "again", "");
    return 0;
}

/// What the user database says of whoever runs the process.
int sayHomeOfUser()
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
        {"home-of-user", sayHomeOfUser},
        {"read-default", [&] { return readDefault(arguments.at(1)); }},
        {"login-item", serveLoginItem},
        {"log-errors", [] { return logErrors(LOG_UPTO(LOG_DEBUG)); }},
        {"log-errors-masked", [] { return logErrors(LOG_UPTO(LOG_CRIT)); }},
        {"write-default", [&] { return writeDefault(arguments.at(1), arguments.at(2)); }},
    };
    return commands.at(arguments.at(0))();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    return orlimo::run({argv + 1, argv + argc});
}
