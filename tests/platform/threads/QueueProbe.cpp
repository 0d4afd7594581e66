// A program that posts work to the queues and destroys its application object.

#include "platform/threads/Queue.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/ThreadCreationBlocker.h"

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

/// The application object, which each command destroys.
using Application = std::optional<QCoreApplication>;

std::optional<bool> postBeforeAndAfterExit(Application& application)
{
    int runs = 0;
    mainQueue().async([&runs] { ++runs; });
    QCoreApplication::processEvents();
    for (int work = 0; work < 100; ++work) {
        mainQueue().async([&runs] { ++runs; });
    }
    application.reset();
    const auto token = std::make_shared<int>(0);
    mainQueue().async([token, &runs] { ++runs; });
    return runs == 1 && token.use_count() == 1;
}

/// Threads post to both queues before, while and after the application object is destroyed.
std::optional<bool> postConcurrently(Application& application)
{
    constexpr int numberOfThreads = 4;
    constexpr int postsOfEach = 2000;
    (void)mainQueue();
    (void)backgroundQueue();
    std::atomic<int> posts = 0;
    std::vector<JoiningThread> threads;
    for (int thread = 0; thread < numberOfThreads; ++thread) {
        threads.emplace_back([&posts] {
            for (int post = 0; post < postsOfEach; ++post) {
                mainQueue().async([] {});
                backgroundQueue().async([] { mainQueue().async([] {}); });
                ++posts;
            }
        });
    }
    while (posts < postsOfEach) {
        QCoreApplication::processEvents();
    }
    application.reset();
    threads.clear();
    return posts == numberOfThreads * postsOfEach;
}

std::optional<bool> finishBackgroundWork(Application& application)
{
    std::atomic<bool> begun = false;
    std::atomic<bool> finished = false;
    backgroundQueue().async([&] {
        begun = true;
        begun.notify_all();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        mainQueue().async([] {});
        finished = true;
    });
    begun.wait(false);
    application.reset();
    return finished;
}

/// Background work for which no thread can be started runs when one can.
std::optional<bool> postBeforeThreadsStart(Application& application)
{
    std::atomic<int> ran = 0;
    {
        const ThreadCreationBlocker blocker;
        if (!blocker.isPossible()) {
            return std::nullopt;
        }
        backgroundQueue().async([&ran] { ++ran; });
    }
    const int ranBefore = ran;
    backgroundQueue().async([&ran] { ++ran; });
    application.reset();
    return ranBefore == 0 && ran == 2;
}

/// Background work for which no thread was ever started does not delay the exit.
std::optional<bool> exitWithoutThreads(Application& application)
{
    const ThreadCreationBlocker blocker;
    if (!blocker.isPossible()) {
        return std::nullopt;
    }
    bool ran = false;
    backgroundQueue().async([&ran] { ran = true; });
    application.reset();
    return !ran;
}

} // namespace
} // namespace orlimo

/// Returns 0 for success, 77 where the system does not allow what the command needs.
int main(int argc, char* argv[])
{
    const std::map<std::string, std::optional<bool> (*)(orlimo::Application&)> commands{
        {"post-before-and-after-exit", orlimo::postBeforeAndAfterExit},
        {"post-concurrently", orlimo::postConcurrently},
        {"finish-background-work", orlimo::finishBackgroundWork},
        {"post-before-threads-start", orlimo::postBeforeThreadsStart},
        {"exit-without-threads", orlimo::exitWithoutThreads},
    };
    orlimo::Application application(std::in_place, argc, argv);
    const auto result = commands.at(argv[1])(application);
    return !result ? 77 : *result ? 0 : 1;
}
