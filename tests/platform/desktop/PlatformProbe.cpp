// Does one thing for which the tests need a process of their own.

#include "platform/loginitem/LoginItemService.h"

#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {
namespace {

/// Responds to each line of standard input with one line: the login item's status, or the result of
/// changing it.
int serveLoginItem()
{
    const auto say = [](const std::optional<ServiceError>& error) {
        return error ? error->localizedDescription : "done";
    };
    for (std::string command; std::getline(std::cin, command);) {
        LoginItemService& service = mainAppService();
        std::string response;
        if (command == "status") {
            response = std::to_string(static_cast<int>(service.status()));
        } else if (command == "register") {
            response = say(service.registerItem());
        } else if (command == "unregister") {
            response = say(service.unregisterItem());
        }
        std::cout << response << std::endl; // NOLINT(performance-avoid-endl): the test waits for it
    }
    return 0;
}

int run(const std::vector<std::string>& arguments)
{
    const std::map<std::string, std::function<int()>> commands{
        {"login-item", serveLoginItem},
    };
    return commands.at(arguments.at(0))();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    return orlimo::run({argv + 1, argv + argc});
}
