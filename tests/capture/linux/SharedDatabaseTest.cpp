#include "capture/Database.h"
#include "platform/files/LibraryFolder.h"
#include "tests/capture/PrivateHome.h"
#include "tests/support/Await.h"
#include "tests/support/JoiningThread.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/process/OpenPipe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

namespace {

constexpr std::size_t threadCount = 16;

/// Standard output as a full pipe: the next line that is written blocks until it is drained.
class FullPipe
{
public:
    FullPipe()
    {
        (void)::fcntl(ends[0], F_SETFL, O_NONBLOCK);
        (void)::fcntl(ends[1], F_SETFL, O_NONBLOCK);
        const std::array<char, 4096> page{};
        while (::write(ends[1], page.data(), page.size()) > 0) {
            filling += page.size();
        }
        (void)::fcntl(ends[1], F_SETFL, 0);
        (void)::dup2(ends[1], STDOUT_FILENO);
    }

    /// Reads all that is there.
    void drain()
    {
        std::array<char, 4096> part{};
        ssize_t got = 0;
        while ((got = ::read(ends[0], part.data(), part.size())) > 0) {
            content.append(part.data(), static_cast<std::size_t>(got));
        }
    }

    /// What was written after the pipe was full.
    [[nodiscard]] std::string lines() const { return content.substr(filling); }

private:
    std::array<int, 2> ends = openPipe();
    std::size_t filling = 0;
    std::string content;
};

/// Whether all other threads of this process sleep.
bool otherThreadsSleep()
{
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::all_of(begin(tasks), end(tasks), [](const auto& task) {
        if (task.path().filename() == std::to_string(::getpid())) {
            return true;
        }
        std::array<char, 512> text{};
        const int file = ::open((task.path() / "stat").c_str(), O_RDONLY | O_CLOEXEC);
        (void)::read(file, text.data(), text.size() - 1);
        ::close(file);
        const std::string_view status(text.data());
        return status.substr(status.rfind(')') + 1).starts_with(" S");
    });
}

/// Has many threads request the shared reader while the first of them is still creating it, blocked
/// at its first log line.
[[noreturn]] void requestReaderOnManyThreads()
{
    switchToPrivateHome();
    std::filesystem::create_directories(libraryFolder().value_or("") / "Messages");
    FullPipe output;
    std::vector<Database*> readers(threadCount);
    std::atomic<std::size_t> started = 0;
    std::atomic<std::size_t> finished = 0;
    std::vector<JoiningThread> threads;
    threads.reserve(threadCount);
    for (Database*& reader : readers) {
        threads.emplace_back([&reader, &started, &finished] {
            ++started;
            reader = &Database::shared(libraryFolder);
            ++finished;
        });
    }
    const bool allWaited =
        await([&started] { return started == threadCount && otherThreadsSleep(); });
    const bool allReturned = await([&output, &finished] {
        output.drain();
        return finished == threadCount;
    });
    threads.clear();
    output.drain();
    const std::string lines = output.lines();
    (void)::write(STDERR_FILENO, lines.data(), lines.size());
    const bool isOne =
        std::count(readers.begin(), readers.end(), &Database::shared(libraryFolder)) ==
        static_cast<std::ptrdiff_t>(threadCount);
    ::_exit(allWaited && allReturned && isOne ? 0 : 1);
}

TEST(SharedDatabaseDeathTest, ConcurrentFirstUsesCreateOneReader)
{
    EXPECT_EXIT(
        requestReaderOnManyThreads(),
        testing::ExitedWithCode(0),
        testing::MatchesRegex("Database init\ndatabase connected!!\n"));
}

TEST(SharedDatabaseDeathTest, ReadsTheUsersStore)
{
    EXPECT_EXIT(
        {
            ::dup2(STDERR_FILENO, STDOUT_FILENO);
            switchToPrivateHome();
            StoreWriter writer(libraryFolder().value_or(""));
            writer.appendText("the user's own");
            const auto messages = Database::shared(libraryFolder).fetchMessages(10);
            ::_exit(messages.size() == 1 && messages[0].text == "the user's own" ? 0 : 1);
        },
        testing::ExitedWithCode(0),
        testing::MatchesRegex("Database init\ndatabase connected!!\n"));
}

} // namespace

} // namespace orlimo
