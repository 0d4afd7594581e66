// A program that offers work to the queues and takes its application object down.

#include "platform/threads/Queue.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ThreadCreationBlocker.h"

#include <QCoreApplication>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orlimo {
namespace {

/// The application object, which the work under test outlives.
class Application
{
public:
    Application() { application.emplace(count, arguments.data()); }
    void destroyApplication() { application.reset(); }

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
int enqueueAfterExit()
{
    Application application;
    bool ranInTime = false;
    mainQueue().async([&ranInTime] { ranInTime = true; });
    QCoreApplication::processEvents();
    application.destroyApplication();

    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    bool ranLate = false;
    mainQueue().async([token, &ranLate] { ranLate = true; });
    token.reset();
    return succeedIf(ranInTime && !ranLate && kept.expired());
}

/// Work that still waits when the application object goes is not run.
int exitWithPendingWork()
{
    Application application;
    bool ran = false;
    for (int work = 0; work < 100; ++work) {
        mainQueue().async([&ran] { ran = true; });
    }
    application.destroyApplication();
    return succeedIf(!ran);
}

/// Threads offer to both queues before, while and after the application object goes.
int enqueueConcurrently()
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
    application.destroyApplication();
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
    application.destroyApplication();
    return succeedIf(finished);
}

/// The status that says that the host does not let the probe do what it is to do.
constexpr int notPossibleHere = 77;

/// Background work for which no thread can be started waits until one can.
int enqueueBeforeThreadsStart()
{
    Application application;
    std::atomic<int> ran = 0;
    {
        const ThreadCreationBlocker limit;
        if (!limit.isPossible()) {
            return notPossibleHere;
        }
        backgroundQueue().async([&ran] { ++ran; });
    }
    if (ran != 0) {
        return 1;
    }
    backgroundQueue().async([&ran] { ++ran; });
    application.destroyApplication();
    return succeedIf(ran == 2);
}

/// Background work for which no thread was ever started does not hold the end up.
int exitWithoutThreads()
{
    Application application;
    const ThreadCreationBlocker limit;
    if (!limit.isPossible()) {
        return notPossibleHere;
    }
    bool ran = false;
    backgroundQueue().async([&ran] { ran = true; });
    application.destroyApplication();
    return succeedIf(!ran);
}

int run(const std::string& command)
{
    const std::map<std::string, std::function<int()>> commands{
        {"offer-afterwards", enqueueAfterExit},
        {"leave-waiting", exitWithPendingWork},
        {"offer-meanwhile", enqueueConcurrently},
        {"finish-background-work", finishBackgroundWork},
        {"offer-before-there-are-threads", enqueueBeforeThreadsStart},
        {"leave-without-threads", exitWithoutThreads},
    };
    return commands.at(command)();
}

} // namespace
} // namespace orlimo

int main(int argc, char* argv[])
{
    return argc == 2 ? orlimo::run(argv[1]) : 2;
}
