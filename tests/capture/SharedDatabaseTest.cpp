#include "capture/Database.h"
#include "platform/files/LibraryFolder.h"
#include "tests/capture/PrivateHome.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/StoreWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <unistd.h>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// Has many threads request the shared reader while the first of them is still creating it. Exits
/// with 0 if all get the same reader, of the user's own store.
[[noreturn]] void requestReaderOnManyThreads()
{
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    switchToPrivateHome();
    StoreWriter(libraryFolder().value_or("")).appendText("the user's own");
    std::vector<Database*> readers(16);
    std::atomic<std::size_t> started = 0;
    std::atomic<int> creations = 0;
    const auto slowLibraryFolder = [&] {
        ++creations;
        while (started < readers.size()) {
            std::this_thread::yield();
        }
        std::this_thread::sleep_for(50ms); // the others are about to request it, too
        return libraryFolder();
    };
    std::vector<JoiningThread> threads;
    for (Database*& reader : readers) {
        threads.emplace_back([&] {
            ++started;
            reader = &Database::shared(slowLibraryFolder);
        });
    }
    threads.clear();
    const bool isOne = creations == 1 && std::ranges::count(readers, readers[0]) == 16;
    const auto messages = readers[0]->fetchMessages(10);
    ::_exit(isOne && messages.size() == 1 && messages[0].text == "the user's own" ? 0 : 1);
}

TEST(SharedDatabaseDeathTest, ConcurrentFirstUsesCreateOneReaderOfTheUsersStore)
{
    EXPECT_EXIT(
        requestReaderOnManyThreads(),
        testing::ExitedWithCode(0),
        testing::MatchesRegex("Database init\ndatabase connected!!\n"));
}

} // namespace

} // namespace orlimo
