#include "capture/Database.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"

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
/// with 0 if all get the same reader, of the store in `library`.
[[noreturn]] void requestReaderOnManyThreads(const std::filesystem::path& library)
{
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    StoreWriter(library).appendText("the user's own");
    std::vector<Database*> readers(16);
    std::atomic<std::size_t> started = 0;
    std::atomic<int> creations = 0;
    const auto slowLibraryFolder = [&] {
        ++creations;
        while (started < readers.size()) {
            std::this_thread::yield();
        }
        std::this_thread::sleep_for(50ms); // the others are about to request it, too
        return library;
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
    const TemporaryFolder library;
    EXPECT_EXIT(
        requestReaderOnManyThreads(library.path()),
        testing::ExitedWithCode(0),
        testing::MatchesRegex("Database init\ndatabase connected!!\n"));
}

} // namespace

} // namespace orlimo
