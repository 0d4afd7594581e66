// A program that does one thing which the tests need a process of their own for, with an
// application object that comes and goes.

#include "platform/LoginItemService.h"
#include "platform/Queue.h"
#include "platform/UnifiedLog.h"
#include "platform/UserDatabase.h"
#include "platform/UserDefaults.h"
#include "tests/support/JoiningThread.h"

#include <QCoreApplication>

#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <syslog.h>

namespace orlimo {
namespace {

/// The application object, which the work under test outlives.
class Application
{
public:
    Application() { application.emplace(count, arguments.data()); }
    void takeDown() { application.reset(); }

private:
    std::string name = "probe";
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    std::optional<QCoreApplication> application;
};

int succeedIf(bool condition)
{
    return condition ? 0 : 1;
}

/// Work offered to the main queue after the application object has gone is dropped at once.
int offerAfterwards()
{
    Application application;
    bool ranInTime = false;
    mainQueue().async([&ranInTime] { ranInTime = true; });
    QCoreApplication::processEvents();
    application.takeDown();

    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    bool ranLate = false;
    mainQueue().async([token, &ranLate] { ranLate = true; });
    token.reset();
    return succeedIf(ranInTime && !ranLate && kept.expired());
}

/// Work that still waits when the application object goes is not run.
int leaveWaiting()
{
    Application application;
    bool ran = false;
    for (int work = 0; work < 100; ++work) {
        mainQueue().async([&ran] { ran = true; });
    }
    application.takeDown();
    return succeedIf(!ran);
}

/// Threads offer to both queues before, while and after the application object goes.
int offerMeanwhile()
{
    constexpr int numberOfThreads = 4;
    constexpr int offersOfEach = 2000;
    Application application;
    (void)mainQueue();
    (void)backgroundQueue();
    std::atomic<int> offers = 0;
    std::vector<JoiningThread> threads;
    threads.reserve(numberOfThreads);
    for (int thread = 0; thread < numberOfThreads; ++thread) {
        threads.emplace_back([&offers] {
            for (int offer = 0; offer < offersOfEach; ++offer) {
                mainQueue().async([] {});
                backgroundQueue().async([] { mainQueue().async([] {}); });
                ++offers;
            }
        });
    }
    while (offers < offersOfEach) {
        QCoreApplication::processEvents();
    }
    application.takeDown();
    threads.clear();
    return succeedIf(offers == numberOfThreads * offersOfEach);
}

/// Background work that has begun is finished before the application object is gone.
int finishBackgroundWork()
{
    Application application;
    std::atomic<bool> begun = false;
    std::atomic<bool> finished = false;
    backgroundQueue().async([&] {
        begun = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        mainQueue().async([] {});
        finished = true;
    });
    while (!begun) {
        std::this_thread::yield();
    }
    application.takeDown();
    return succeedIf(finished);
}

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
        {"offer-afterwards", offerAfterwards},
        {"leave-waiting", leaveWaiting},
        {"offer-meanwhile", offerMeanwhile},
        {"finish-background-work", finishBackgroundWork},
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
